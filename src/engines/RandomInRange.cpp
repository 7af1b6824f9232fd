#include "engines/RandomInRange.h"

#include <QTime>

int RandomInRange(int low, int high)
{
    if (high <= low) {
        return low;
    }
    static mevo::RandomRange range(static_cast<quint32>(QTime::currentTime().msecsSinceStartOfDay() / 1000));
    return range.draw(low, high);
}
