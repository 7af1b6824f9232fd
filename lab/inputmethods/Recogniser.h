#pragma once

#include "recognisers/SpeechDecoder.h"

#include <QByteArray>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>

class QObject;

namespace lab {

/// Recognises one sentence after the other beside the event loop. The model is loaded at the first chance.
class Recogniser
{
public:
    Recogniser();
    ~Recogniser();

    /// Calls `done` from the event loop of `context`, in the order of the calls; an empty text means that
    /// nothing was said.
    void recognise(const QByteArray &pcm, QObject *context, std::function<void(const QString &)> done);

private:
    QThreadPool m_worker;
    std::shared_ptr<std::unique_ptr<SpeechDecoder>> m_decoder;
};

/// Words as a sentence: with a capital at its begin and a full stop.
QString asSentence(const QString &words);

} // namespace lab
