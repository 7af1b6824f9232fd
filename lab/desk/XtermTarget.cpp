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
    std::unique_ptr<Desktop> desktop = Desktop::open();
    if (!desktop)
        return nullptr;
    std::unique_ptr<XtermTarget> target(new XtermTarget(QStringLiteral("xterm"), std::move(desktop)));
    // Raw, so that control characters are text; tee shows it as well, for whoever looks at the screen.
    const QString noteInput = QStringLiteral("stty raw -echo; : >\"$1\"; exec tee -a \"$0\"");
    const QStringList arguments{QStringLiteral("-u8"),
                                QStringLiteral("-fa"),
                                QStringLiteral("monospace"),
                                QStringLiteral("-fs"),
                                QStringLiteral("12"),
                                QStringLiteral("-T"),
                                QStringLiteral("xterm"),
                                QStringLiteral("-geometry"),
                                QStringLiteral("80x24+40+40"),
                                QStringLiteral("-e"),
                                QStringLiteral("sh"),
                                QStringLiteral("-c"),
                                noteInput,
                                target->textFile(),
                                readyFile(target->folder())};
    if (!target->launch(QStringLiteral("xterm"), arguments))
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
