#include "desk/ProgramUnderTest.h"

#include "receiver/WaitUntil.h"

#include <QFileInfo>

namespace mevo::lab {

namespace {

constexpr int killTimeoutMs = 5000;

} // namespace

ProgramUnderTest::ProgramUnderTest()
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput,
                     [this] { m_log += m_process.readAllStandardOutput(); });
}

ProgramUnderTest::~ProgramUnderTest()
{
    if (running()) {
        m_process.kill();
        m_process.waitForFinished(killTimeoutMs);
    }
}

bool ProgramUnderTest::start(const QString &program, const QStringList &arguments,
                             const QProcessEnvironment &environment)
{
    m_process.setProcessEnvironment(environment);
    const QString home = environment.value(QStringLiteral("MEVO_HOME"));
    if (!home.isEmpty())
        m_process.setWorkingDirectory(home); // it keeps there what it reads aloud
    m_process.start(program.contains(QLatin1Char('/')) ? QFileInfo(program).absoluteFilePath() : program,
                    arguments);
    return m_process.waitForStarted();
}

bool ProgramUnderTest::stop(int timeoutMs)
{
    if (!running())
        return true;
    m_process.terminate();
    if (waitUntil([this] { return !running(); }, timeoutMs))
        return true;
    m_process.kill();
    m_process.waitForFinished(killTimeoutMs);
    return false;
}

int ProgramUnderTest::exitCode() const
{
    // After a crash QProcess gives the signal's number.
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : 128 + m_process.exitCode();
}

} // namespace mevo::lab
