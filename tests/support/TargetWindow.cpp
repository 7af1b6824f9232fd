#include "support/TargetWindow.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QTest>

namespace {

/// Waits for a condition of the desktop, looking every few milliseconds.
template <typename Condition>
bool waitUntil(Condition condition, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QTest::qWait(10);
    }
    return true;
}

} // namespace

TargetWindow::TargetWindow(Kind kind, mevo::WindowSystem &windows)
    : m_kind(kind)
    , m_windows(windows)
{
}

TargetWindow::~TargetWindow()
{
    stop();
}

QString TargetWindow::filePath() const
{
    return m_folder.filePath(QStringLiteral("target.txt"));
}

bool TargetWindow::start()
{
    QFile file(filePath());
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.close();
    static int serial = 0;
    const QString title = QStringLiteral("target-%1").arg(++serial);
    QString wantedClass;
    switch (m_kind) {
    case Xterm:
        m_process.start(QStringLiteral("xterm"),
                        {QStringLiteral("-u8"), QStringLiteral("-T"), title, QStringLiteral("-e"),
                         QStringLiteral("sh"), QStringLiteral("-c"),
                         QStringLiteral("stty raw -echo; exec cat > '%1'").arg(filePath())});
        break;
    case Mousepad:
        wantedClass = QStringLiteral("Mousepad");
        m_process.start(QStringLiteral("mousepad"), {QStringLiteral("--disable-server"), filePath()});
        break;
    case Featherpad:
        wantedClass = QStringLiteral("featherpad");
        m_process.start(QStringLiteral("featherpad"), {QStringLiteral("--standalone"), filePath()});
        break;
    }
    const bool appeared = waitUntil(
        [&] {
            m_topLevel = m_kind == Xterm ? m_windows.findWindow(QString(), title)
                                         : m_windows.findWindow(wantedClass, QString());
            return m_topLevel != 0;
        },
        20000);
    return appeared && focus();
}

bool TargetWindow::focus()
{
    m_windows.activate(m_topLevel);
    const bool active = waitUntil([this] { return m_windows.foregroundWindow() == m_topLevel; }, 5000);
    // The server's focus follows a moment after, and the program then moves it to a widget inside.
    mevo::WindowId before = 0;
    const QString title = m_windows.windowTitle(m_topLevel);
    waitUntil(
        [&] {
            m_focused = m_windows.focusedWindow();
            const bool settled =
                m_focused != 0 && m_focused == before && m_windows.windowTitle(m_focused) == title;
            before = m_focused;
            return settled;
        },
        3000);
    return active && m_focused != 0;
}

QString TargetWindow::read()
{
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString TargetWindow::waitForText(const QString &expected, int timeoutMs)
{
    if (m_kind == Xterm) {
        waitUntil([&] { return read() == expected; }, timeoutMs);
        return read();
    }
    QString seen;
    waitUntil(
        [&] {
            focus();
            QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("ctrl+s")});
            waitUntil([&] { return read() != seen; }, 500);
            seen = read();
            if (seen.endsWith(QLatin1Char('\n')) && !expected.endsWith(QLatin1Char('\n'))) {
                seen.chop(1); // the editor ends its last line
            }
            return seen == expected;
        },
        timeoutMs);
    return seen;
}

void TargetWindow::stop()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(3000)) {
            m_process.kill();
            m_process.waitForFinished(3000);
        }
    }
}
