#include "base/DiagnosticLog.h"

#include "base/ApplicationFiles.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QTextStream>

#include <cstdlib>

namespace mevo {

namespace {

/// A level's bit and its names in the short and in the long form.
struct Level
{
    QtMsgType type;
    int bit;
    const char *shortName;
    const char *longName;
};

constexpr Level levels[] = {
    {QtDebugMsg, LogDebug, "Debug", "Debug"},
    {QtInfoMsg, LogInfo, "Info", "Info"},
    {QtWarningMsg, LogWarning, "Warning", "Warning"},
    {QtCriticalMsg, LogCritical, "Critial", "Critical"}, // kept: tools search for the short spelling
    {QtFatalMsg, LogFatal, "Fatal", "Fatal"},
};

int theMask = 0;
bool thePosition = false;
QtMessageHandler previousHandler = nullptr;

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    static QMutex mutex;
    if (previousHandler != nullptr) {
        previousHandler(type, context, message);
    }
    const QMutexLocker lock(&mutex);
    const QDateTime now = QDateTime::currentDateTime();
    const QString line = logLine(type, context, message, now, theMask, thePosition);
    if (type == QtFatalMsg) {
        std::abort();
    }
    appendToLog(appFile(QStringLiteral("log")), now.date(), line);
}

} // namespace

QString logLine(QtMsgType type, const QMessageLogContext &context, const QString &message,
                const QDateTime &time, int mask, bool withPosition)
{
    for (const Level &level : levels) {
        if (level.type != type || (mask & level.bit) == 0) {
            continue;
        }
        const QString stamp = time.toString(QStringLiteral("[ yyyy-MM-dd HH:mm:ss:zzz ]"));
        // Joined rather than filled in: a message may hold "%1" itself.
        if (!withPosition) {
            return stamp + QLatin1String(":\t ") + QLatin1String(level.shortName) + QLatin1String(":\t") +
                   message;
        }
        return stamp + QLatin1String(":\t(") + QString::fromUtf8(context.file) + QLatin1String(",(") +
               QString::number(context.line) + QLatin1String("),: ") + QString::fromUtf8(context.function) +
               QLatin1String(")  ") + QLatin1String(level.longName) + QLatin1String(":\t") + message;
    }
    return {};
}

QString logFilePath(const QString &logFolder, const QDate &day)
{
    const QString date = day.toString(QStringLiteral("yyyy-MM-dd"));
    return QStringLiteral("%1/%2/%2.log").arg(logFolder, date);
}

void appendToLog(const QString &logFolder, const QDate &day, const QString &line)
{
    const QString path = logFilePath(logFolder, day);
    QDir().mkpath(path.left(path.lastIndexOf(QLatin1Char('/'))));
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append)) {
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << line << "\r\n";
    stream.flush();
}

void installDiagnosticLog(int mask, int withPosition)
{
    theMask = mask;
    thePosition = withPosition != 0;
    const QtMessageHandler before = qInstallMessageHandler(handle);
    if (before != handle) { // else a message would go round in a circle
        previousHandler = before;
    }
}

} // namespace mevo
