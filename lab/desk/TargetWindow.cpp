#include "desk/TargetWindow.h"

#include "desk/BrowserTarget.h"
#include "desk/EditorTarget.h"
#include "desk/OfficeTarget.h"
#include "desk/XtermTarget.h"
#include "receiver/WaitUntil.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <algorithm>
#include <iterator>

namespace mevo::lab {

namespace {

constexpr int windowTimeoutMs = 60000; // a cold start of the big ones on a busy machine
constexpr int focusTimeoutMs = 20000;
constexpr int endTimeoutMs = 3000;
constexpr int settleMs = 150;

bool isFound(const char *program)
{
    return !QStandardPaths::findExecutable(QLatin1String(program)).isEmpty();
}

struct TargetKind
{
    const char *name;
    std::unique_ptr<TargetWindow> (*start)();
    bool (*isInstalled)();
};
constexpr TargetKind targetKinds[] = {
    {"xterm", XtermTarget::start, [] { return isFound("xterm"); }},
    {"mousepad", EditorTarget::startMousepad, [] { return isFound("mousepad"); }},
    {"featherpad", EditorTarget::startFeatherpad, [] { return isFound("featherpad"); }},
    {"kate", EditorTarget::startKate, [] { return isFound("kate"); }},
    {"gnome-text-editor", EditorTarget::startGnomeTextEditor, [] { return isFound("gnome-text-editor"); }},
    {"lxterminal", XtermTarget::startLxterminal, [] { return isFound("lxterminal"); }},
    {"chromium", BrowserTarget::start, [] { return isFound("chromium"); }},
    {"libreoffice", OfficeTarget::start, [] { return OfficeTarget::isInstalled(); }},
    {"libreoffice-gtk3", OfficeTarget::startGtk3, [] { return OfficeTarget::isGtk3Installed(); }},
};
constexpr int kindsOfEveryDesk = 3; ///< the further ones have to be installed by hand

} // namespace

QStringList TargetWindow::kinds()
{
    QStringList names;
    for (int i = 0; i < kindsOfEveryDesk; ++i)
        names.append(QLatin1String(targetKinds[i].name));
    return names;
}

QStringList TargetWindow::furtherKinds()
{
    QStringList names;
    for (const TargetKind &kind : targetKinds) {
        const QString name = QLatin1String(kind.name);
        if (!kinds().contains(name) && kind.isInstalled())
            names.append(name);
    }
    return names;
}

std::unique_ptr<TargetWindow> TargetWindow::start(const QString &kind)
{
    const auto *row =
        std::find_if(std::begin(targetKinds), std::end(targetKinds),
                     [&kind](const TargetKind &target) { return kind == QLatin1String(target.name); });
    if (row == std::end(targetKinds)) {
        qWarning("no target window %s", qUtf8Printable(kind));
        return nullptr;
    }
    std::unique_ptr<TargetWindow> target = row->start();
    if (target && !target->waitReady()) {
        qWarning("%s takes no keys", qUtf8Printable(kind));
        return nullptr;
    }
    return target;
}

TargetWindow::TargetWindow(QString kind, std::unique_ptr<Desktop> desktop)
    : m_kind(std::move(kind))
    , m_desktop(std::move(desktop))
{
}

TargetWindow::~TargetWindow()
{
    stop();
}

bool TargetWindow::hasFocus() const
{
    return m_desktop->hasFocus(m_window);
}

bool TargetWindow::focus()
{
    return m_desktop->focus(m_window, focusTimeoutMs);
}

QString TargetWindow::text(int minLength, int timeoutMs)
{
    QString seen = peek();
    waitUntil(
        [&] {
            seen = peek();
            return seen.size() >= minLength;
        },
        timeoutMs, 20);
    QElapsedTimer still;
    still.start();
    waitUntil(
        [&] {
            const QString now = peek();
            if (now != seen)
                still.restart();
            seen = now;
            return still.elapsed() >= settleMs;
        },
        std::max(timeoutMs, 10 * settleMs), 20);
    return seen;
}

void TargetWindow::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(endTimeoutMs)) {
        m_process.kill();
        m_process.waitForFinished(endTimeoutMs);
    }
}

bool TargetWindow::launch(const QString &program, const QStringList &arguments,
                          const QMap<QString, QString> &further)
{
    QFile(textFile()).open(QIODevice::WriteOnly);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The target is a stranger: it sees the real machine, its own settings, and no input method.
    environment.remove(QStringLiteral("LD_PRELOAD"));
    environment.remove(QStringLiteral("UMOCKDEV_DIR"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder());
    environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    environment.insert(QStringLiteral("GTK_IM_MODULE"), QStringLiteral("gtk-im-context-simple"));
    environment.insert(QStringLiteral("QT_IM_MODULE"), QStringLiteral("none"));
    for (auto variable = further.begin(); variable != further.end(); ++variable)
        environment.insert(variable.key(), variable.value());
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(folder());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(m_folder.filePath(QStringLiteral("errors.log")));
    m_process.start(program, arguments);
    if (!m_process.waitForStarted()) {
        qWarning("cannot start %s: %s", qUtf8Printable(program), qUtf8Printable(m_process.errorString()));
        return false;
    }
    const bool appeared = waitUntil(
        [this] {
            m_window = m_desktop->windowOfProcess(m_process.processId()).value_or(0);
            return m_window != 0 || m_process.state() == QProcess::NotRunning;
        },
        windowTimeoutMs, 20);
    if (!appeared || m_window == 0)
        qWarning("%s shows no window", qUtf8Printable(program));
    return m_window != 0;
}

QByteArray TargetWindow::textFileContent() const
{
    QFile file(textFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace mevo::lab
