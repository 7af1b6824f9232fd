#pragma once

#include <QByteArray>
#include <QString>

namespace mevo {

/// What the first frame of a session tells the service beside the first block.
struct XunFeiSessionRequest
{
    QString appId;
    QString voiceType;              ///< one of the language codes, else the accent of Chinese
    bool punctuation = false;       ///< the service adds punctuation
    bool dynamicCorrection = false; ///< later results may replace earlier ones
};

/// Frames of XunFei's dictation protocol (version 2), each one JSON text. Blocks are 16 kHz 16-bit mono PCM.
QByteArray xunFeiFirstFrame(const XunFeiSessionRequest &request, const QByteArray &block);
QByteArray xunFeiMiddleFrame(const QByteArray &block);
/// Ends the utterance; carries no samples.
QByteArray xunFeiLastFrame();

} // namespace mevo
