#include "service/CountingDay.h"

namespace mevo {

bool isDayOver(const QString &began, const QDateTime &now)
{
    QString text = began.left(19); // a fraction of a second or a zone may follow
    text.replace(QLatin1Char('T'), QLatin1Char(' '));
    const QDateTime start = QDateTime::fromString(text, QLatin1String(recordTimeFormat));
    const qint64 seconds = start.secsTo(now);
    if (!start.isValid() || seconds < 0) {
        return true;
    }
    // Hours that have ended, counted so that the full hour still belongs to the one before it.
    const qint64 hours = (seconds + 3599) / 3600 - 1;
    return hours >= 24;
}

} // namespace mevo
