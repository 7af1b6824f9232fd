#include "audio/Samples.h"

namespace mevo {

QByteArray leftChannel(const char *interleaved, int size)
{
    const int length = size > 0 ? size / 2 : 0;
    QByteArray left(length, '\0');
    char *out = left.data();
    const char *in = interleaved;
    for (int i = 0; i + 2 <= length - 1; i += 2, in += 4) {
        out[i] = in[0];
        out[i + 1] = in[1];
    }
    return left;
}

} // namespace mevo
