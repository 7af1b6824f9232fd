#pragma once

#include "support/Texts.h"

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>

/// Plays PCM into a sink through a player of the sound server's own.
class Player : public QProcess
{
public:
    Player(const QString &sink, int channels, const QByteArray &pcm)
    {
        start("pacat"_s, {"--playback"_s, "-d"_s, sink, "--raw"_s, "--rate=16000"_s, "--format=s16le"_s,
                          "--channels=%1"_s.arg(channels), "--latency-msec=40"_s});
        write(pcm);
        closeWriteChannel();
    }
    bool hasEnded() const { return state() == QProcess::NotRunning; }
};

inline QByteArray pactl(const QString &line)
{
    QProcess process;
    process.start("pactl"_s, line.split(u' '));
    process.waitForFinished(10000);
    return process.readAllStandardOutput();
}

/// The sound server of the desk, which can be killed and started again.
class SoundServer
{
public:
    ~SoundServer()
    {
        m_again.terminate();
        m_again.waitForFinished(10000);
    }
    void signal(int number) const
    {
        const auto again = static_cast<int>(m_again.processId());
        kill(again != 0 ? again : qEnvironmentVariableIntValue("MEVO_DESK_PULSE_PID"), number);
    }
    bool isThere() const { return pactl("info"_s).contains("Server Name"); }
    void die()
    {
        signal(SIGKILL);
        if (m_again.state() != QProcess::NotRunning) {
            m_again.waitForFinished(10000);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!isThere(), 15000);
    }
    void startAgain()
    {
        QFile::remove(qEnvironmentVariable("MEVO_DESK_DIR") + "/run/pulse.sock"_s);
        m_again.start("env"_s, {"-u"_s, "PULSE_SERVER"_s, "pulseaudio"_s, "-n"_s, "-F"_s,
                                qEnvironmentVariable("MEVO_DESK_DIR") + "/default.pa"_s, "--daemonize=no"_s,
                                "--exit-idle-time=-1"_s, "--use-pid-file=no"_s, "--disable-shm=yes"_s,
                                "--realtime=no"_s, "--high-priority=no"_s});
        QTRY_VERIFY_WITH_TIMEOUT(isThere(), 15000);
    }

private:
    QProcess m_again;
};
