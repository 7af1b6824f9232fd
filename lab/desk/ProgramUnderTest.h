#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace mevo::lab {

/// The program on the desk, with everything that it writes to its standard outputs.
class ProgramUnderTest
{
public:
    ProgramUnderTest();
    ~ProgramUnderTest();

    /// False when it cannot be started; errorText() tells why.
    bool start(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment);
    /// Asks it to end, and kills it when it does not within `timeoutMs`. False when it had to be killed.
    bool stop(int timeoutMs);
    bool running() const { return m_process.state() != QProcess::NotRunning; }
    /// The exit code, 128 + signal after a crash. Meaningful when it has run and is not running.
    int exitCode() const;
    /// 0 when it does not run.
    qint64 processId() const { return m_process.processId(); }
    QString errorText() const { return m_process.errorString(); }
    /// Everything it has written so far.
    QByteArray log() const { return m_log; }

private:
    QProcess m_process;
    QByteArray m_log;
};

} // namespace mevo::lab
