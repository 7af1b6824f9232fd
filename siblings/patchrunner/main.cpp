// The updater: exchanges the program's folder beside it for the version that the program has fetched.

#include "patchrunner/FailureText.h"
#include "patchrunner/UpdateRun.h"

#include <QApplication>
#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QLocale>
#include <QMessageBox>

#include <cstdio>

namespace {

QFile *logFile = nullptr;

void writeLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    const QByteArray line = (QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + QLatin1Char(' ') +
                             message + QLatin1Char('\n'))
                                .toUtf8();
    if (logFile != nullptr) {
        logFile->write(line);
        logFile->flush();
    }
    std::fputs(line.constData(), stderr);
}

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

} // namespace

int main(int argc, char *argv[])
{
    using mevo::patchrunner::Outcome;

    mevo::patchrunner::Report report;
    {
        const QCoreApplication application(argc, argv);
        const QString base = QCoreApplication::applicationDirPath();
        QFile log(base + QStringLiteral("/PatchRunner.log")); // of the last run
        if (log.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            logFile = &log;
        }
        qInstallMessageHandler(writeLog);
        report = mevo::patchrunner::runUpdate(base);
        if (report.outcome == Outcome::Done) {
            qInfo("The update is done");
        } else {
            qWarning().noquote() << "The update is not installed:" << report.detail;
        }
        logFile = nullptr;
    }
    if (report.outcome == Outcome::Done) {
        return 0;
    }
    // The old version runs already: nobody waits for this.
    if (hasDisplay()) {
        const QApplication application(argc, argv);
        const auto text = mevo::patchrunner::failureText(report.outcome, QLocale::system().name());
        QMessageBox box(QMessageBox::Warning, text.title, text.text, QMessageBox::Ok);
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
        box.setAttribute(Qt::WA_ShowWithoutActivating);
        box.exec();
    }
    return 1;
}
