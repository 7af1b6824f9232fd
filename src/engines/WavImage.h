#pragma once

#include <QByteArray>

namespace mevo {

/// 16 kHz 16-bit mono PCM as a WAV file. Two lengths of the header are not those of the format: RIFF's is
/// the PCM length + 32, and that of the data chunk holds the low 16 bits only, so that it is wrong for
/// more than about 2 s. The service reads to the end of the file and takes both.
QByteArray wavImage(const QByteArray &pcm);

} // namespace mevo
