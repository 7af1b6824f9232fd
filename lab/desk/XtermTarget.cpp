#include "desk/XtermTarget.h"

#include "receiver/WaitUntil.h"

#include <QDir>
#include <QFile>

namespace mevo::lab {

namespace {

constexpr int readyTimeoutMs = 60000;

QString readyFile(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("ready"));
}

} // namespace

std::unique_ptr<TargetWindow> XtermTarget::start()
{
    return start(QStringLiteral("xterm"),
                 {QStringLiteral("-u8"), QStringLiteral("-fa"), QStringLiteral("monospace"),
                  QStringLiteral("-fs"), QStringLiteral("12"), QStringLiteral("-T"), QStringLiteral("xterm"),
                  QStringLiteral("-geometry"), QStringLiteral("80x24+40+40"), QStringLiteral("-e")});
}

std::unique_ptr<TargetWindow> XtermTarget::startLxterminal()
{
    return start(QStringLiteral("lxterminal"), {QStringLiteral("--no-remote"), QStringLiteral("-t"),
                                                QStringLiteral("lxterminal"), QStringLiteral("-e")});
}

std::unique_ptr<TargetWindow> XtermTarget::start(const QString &program, const QStringList &options)
{
    std::unique_ptr<Desktop> desktop = Desktop::open();
    if (!desktop)
        return nullptr;
    std::unique_ptr<XtermTarget> target(new XtermTarget(program, std::move(desktop)));
    const QString script = QDir(target->folder()).filePath(QStringLiteral("note-input"));
    QFile file(script);
    // Raw, so that control characters are text; tee shows it as well, for whoever looks at the screen.
    if (!file.open(QIODevice::WriteOnly) ||
        file.write("#!/bin/sh\nstty raw -echo; : >ready; exec tee -a text.txt\n") < 0 ||
        !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        return nullptr;
    file.close();
    // Which words a terminal takes behind -e differs; one that is the path of a program they all take.
    if (!target->launch(program, options + QStringList{script}))
        return nullptr;
    return target;
}

bool XtermTarget::waitReady()
{
    return waitUntil([this] { return QFile::exists(readyFile(folder())); }, readyTimeoutMs) && focus();
}

QString XtermTarget::peek()
{
    return QString::fromUtf8(textFileContent());
}

bool XtermTarget::clear()
{
    return QFile::resize(textFile(), 0);
}

} // namespace mevo::lab
