#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class QAudioInput;
class QIODevice;

namespace mevo {

/// Listens to the default microphone for its level alone: nothing is kept or sent. It listens while it lives;
/// one that cannot be opened is silent.
class MicrophoneMeter : public QObject
{
    Q_OBJECT

public:
    /// Greatest level that is told.
    static constexpr int highestLevel = 24;

    explicit MicrophoneMeter(QObject *parent = nullptr);
    ~MicrophoneMeter() override;

Q_SIGNALS:
    /// The level of the last moment, 0 to highestLevel.
    void heard(int level);

private:
    void read();

    std::unique_ptr<QAudioInput> m_input;
    QPointer<QIODevice> m_device; ///< belongs to the input, which deletes it when the sound server dies
};

} // namespace mevo
