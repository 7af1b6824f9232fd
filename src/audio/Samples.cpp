#include "audio/Samples.h"

namespace mevo {

QByteArray leftChannel(const char *interleaved, int size)
{
    const int length = size > 0 ? size / 2 : 0;
    QByteArray left(length, '\0');
    char *out = left.data();
    for (int i = 0; i + 2 <= length - 1; i += 2) {
        out[i] = interleaved[2 * i];
        out[i + 1] = interleaved[2 * i + 1];
    }
    return left;
}

} // namespace mevo
