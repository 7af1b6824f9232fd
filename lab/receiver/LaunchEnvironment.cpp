#include "receiver/LaunchEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace mevo::lab {

namespace {

constexpr int lddTimeoutMs = 60000;

QString preloadFix()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    return QDir::cleanPath(folder.filePath(QStringLiteral("../lib/libmevolab-preload-fix.so")));
}

QByteArray ldd(const QString &program)
{
    QProcess process;
    process.start(QStringLiteral("ldd"), {program});
    if (!process.waitForFinished(lddTimeoutMs))
        return {};
    return process.readAllStandardOutput();
}

} // namespace

QStringList sanitizerRuntimes(const QByteArray &lddOutput)
{
    QStringList runtimes;
    for (const QByteArray &line : lddOutput.split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' ');
        const bool sanitizer = words.at(0).startsWith("libasan.so") || words.at(0).startsWith("libtsan.so");
        if (sanitizer && words.size() >= 3 && words.at(1) == "=>")
            runtimes.append(QString::fromLocal8Bit(words.at(2)));
    }
    return runtimes;
}

QProcessEnvironment launchEnvironment(const QByteArray &root, const QString &program,
                                      QProcessEnvironment base)
{
    if (!QFileInfo::exists(preloadFix()))
        qWarning("%s is missing", qUtf8Printable(preloadFix()));
    QStringList preload = sanitizerRuntimes(ldd(program));
    preload.append(preloadFix());
    preload.append(QStringLiteral("libumockdev-preload.so.0"));
    base.insert(QStringLiteral("UMOCKDEV_DIR"), QString::fromLocal8Bit(root));
    base.insert(QStringLiteral("LD_PRELOAD"), preload.join(QLatin1Char(':')));
    return base;
}

} // namespace mevo::lab
