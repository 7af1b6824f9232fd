#pragma once

#include <QObject>
#include <QTimer>

#include <memory>

namespace mevo {

class SoundInput;
class SoundInputs;

/// Listens to the default microphone for its level alone: nothing is kept or sent. It listens while it lives;
/// where there is nothing to listen to, or no longer, it looks again each second.
class MicrophoneMeter : public QObject
{
    Q_OBJECT

public:
    /// Greatest level that is told.
    static constexpr int highestLevel = 24;

    /// `inputs` must outlive it.
    explicit MicrophoneMeter(SoundInputs &inputs, QObject *parent = nullptr);
    ~MicrophoneMeter() override;

Q_SIGNALS:
    /// The level of the last moment, 0 to highestLevel.
    void heard(int level);

private:
    void open();
    void read();
    void close();
    void lookAgain();

    SoundInputs &m_inputs;
    std::unique_ptr<SoundInput> m_input;
    QTimer m_again;
    bool m_told = false; ///< that there is nothing to listen to
};

} // namespace mevo
