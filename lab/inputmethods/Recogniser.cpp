#include "inputmethods/Recogniser.h"

#include "inputmethods/Microphone.h"

#include <QObject>

namespace lab {

namespace {
constexpr int quiet = 500; ///< samples below are silence, in which the decoder would hear words
}

Recogniser::Recogniser()
    : m_decoder(std::make_shared<std::unique_ptr<SpeechDecoder>>())
{
    m_worker.setMaxThreadCount(1);
    m_worker.start([decoder = m_decoder] { *decoder = std::make_unique<SpeechDecoder>(); });
}

Recogniser::~Recogniser()
{
    m_worker.waitForDone();
}

void Recogniser::recognise(const QByteArray &pcm, QObject *context, std::function<void(const QString &)> done)
{
    m_worker.start([decoder = m_decoder, pcm, context, done = std::move(done)] {
        const QString text =
            Microphone::peakOf(pcm) < quiet ? QString() : asSentence((*decoder)->recognise(pcm));
        QMetaObject::invokeMethod(
            context, [done, text] { done(text); }, Qt::QueuedConnection);
    });
}

QString asSentence(const QString &words)
{
    const QString plain = words.simplified();
    return plain.isEmpty() ? plain : plain.left(1).toUpper() + plain.mid(1) + QLatin1Char('.');
}

} // namespace lab
