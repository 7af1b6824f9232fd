#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace lab {

/// Offline recognition of English: a whole utterance of 16 kHz 16-bit mono PCM to its words. One decoder,
/// used by one thread at a time.
class SpeechDecoder
{
public:
    SpeechDecoder();
    ~SpeechDecoder();
    /// Whether the model is installed.
    bool isReady() const;
    /// The words in lower case; empty when nothing was heard.
    QString recognise(const QByteArray &pcm);

private:
    struct Handles;
    std::unique_ptr<Handles> m_handles;
};

} // namespace lab
