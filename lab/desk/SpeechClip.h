#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace mevo::lab {

/// The voices that can speak a sentence: "rms", "kal16" (English), "mandarin".
QStringList voices();

/// Speaks `text` into a WAV file. False with a reason when the voice is unknown or its program fails.
bool speakIntoFile(const QString &text, const QString &voice, const QString &file, QString *reason);

/// Plays a clip into the virtual microphone and waits for its end, with the event loop running. `file` is a
/// WAV file, or headerless 16 kHz mono 16-bit samples when it ends in .raw or .pcm. False with a reason.
bool playIntoMicrophone(const QString &file, QString *reason);

} // namespace mevo::lab
