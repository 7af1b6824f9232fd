#include "device/ReportDispatch.h"

#include <QtTest>

using mevo::DispatchFlags;
using mevo::DispatchStep;
using mevo::InputReport;

namespace {

InputReport keyReport(int key, int state, int byte4 = 0)
{
    return {0x01, 0x70, static_cast<unsigned char>(key), static_cast<unsigned char>(state),
            static_cast<unsigned char>(byte4)};
}

/// The steps as a text such as "dialog 1, main 21, session".
QString stepsFor(const InputReport &report, const DispatchFlags &flags)
{
    QStringList steps;
    for (const DispatchStep &step : mevo::dispatchKeyReport(report, flags)) {
        switch (step.kind) {
        case DispatchStep::Kind::MicDialogCall:
            steps.append(QStringLiteral("dialog %1").arg(step.index));
            break;
        case DispatchStep::Kind::MainCall:
            steps.append(QStringLiteral("main %1").arg(step.index));
            break;
        case DispatchStep::Kind::OfflineWarning:
            steps.append(QStringLiteral("offline"));
            break;
        case DispatchStep::Kind::KeyToSession:
            steps.append(QStringLiteral("session"));
            break;
        case DispatchStep::Kind::KeyToTranslation:
            steps.append(QStringLiteral("translation"));
            break;
        case DispatchStep::Kind::KeyRefused:
            steps.append(QStringLiteral("refused"));
            break;
        case DispatchStep::Kind::StartStopRecordTimer:
            steps.append(QStringLiteral("timer"));
            break;
        }
    }
    return steps.join(QLatin1String(", "));
}

/// Flags by their words; everything else is a session at rest.
DispatchFlags flagsOf(const QString &words)
{
    DispatchFlags flags;
    for (const QString &word : words.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (word == QLatin1String("latched")) {
            flags.micLatched = true;
        } else if (word == QLatin1String("delimit")) {
            flags.delimitTranslation = true;
        } else if (word == QLatin1String("typing")) {
            flags.voiceTypeMode = true;
        } else if (word == QLatin1String("translating")) {
            flags.voiceTranslateMode = true;
        } else if (word == QLatin1String("online")) {
            flags.online = true;
        } else if (word == QLatin1String("handling")) {
            flags.resultIdle = false;
        } else if (word == QLatin1String("keydown")) {
            flags.keyDownBusy = true;
        } else if (word == QLatin1String("keyup")) {
            flags.keyUpBusy = true;
        } else {
            flags.quickReleaseCount = word.mid(5).toInt(); // "quick2"
        }
    }
    return flags;
}

} // namespace

class TestReportDispatch : public QObject
{
    Q_OBJECT

private slots:
    void steps_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("flags");
        QTest::addColumn<QString>("press");
        QTest::addColumn<QString>("release");
        const auto row = [](int key, const char *flags, const char *press, const char *release) {
            QTest::addRow("key %d, %s", key, flags)
                << key << QString::fromLatin1(flags) << QString::fromLatin1(press)
                << QString::fromLatin1(release);
        };
        for (const int key : {1, 3}) {
            row(key, "typing online", "session", "session");
            row(key, "", "dialog 1, main 21, session", "dialog 1, main 21, session");
            row(key, "delimit", "translation", "dialog 1, main 21");
            row(key, "delimit typing", "translation", "");
            row(key, "typing keydown", "refused, main 22", "refused, main 22");
            row(key, "typing keyup quick1", "refused, main 22", "refused, main 22");
            row(key, "typing handling quick2", "refused, main 22, timer, main 22",
                "refused, main 22, timer, main 22");
            row(key, "handling", "dialog 1, main 21, refused, main 22",
                "dialog 1, main 21, refused, main 22");
            row(key, "typing quick3", "session", "session");
        }
        for (const int key : {6, 14}) {
            const QByteArray mode = "dialog " + QByteArray::number(key) + ", main 21";
            row(key, "online", mode + ", session", "session");
            row(key, "", "offline, " + mode + ", session", "offline, session");
            row(key, "online typing", mode + ", session", "session");
            row(key, "delimit", "translation", "offline");
            row(key, "delimit online", "translation", "");
            row(key, "keydown quick5", "offline, " + mode + ", refused, main 22, timer, main 22",
                "offline, refused, main 22, timer, main 22");
        }
        row(2, "online", "dialog 2, session", "dialog 2, session");
        row(2, "", "offline, dialog 2, session", "offline, dialog 2, session");
        row(2, "translating", "dialog 2, session", "dialog 2, session");
        row(2, "translating online", "dialog 2, session", "dialog 2, session");
        row(2, "delimit online", "translation", "dialog 2");
        row(2, "online handling", "dialog 2, refused, main 22", "dialog 2, refused, main 22");
        row(8, "", "session", "session");
        row(8, "delimit", "translation", "");
        row(8, "keyup", "refused, main 22", "refused, main 22");
        row(16, "", "session", "session");
        row(16, "delimit", "", "");
        row(16, "keydown quick2", "refused, main 22, timer, main 22", "refused, main 22, timer, main 22");
        for (const int key : {0, 4, 5, 7, 9, 10, 11, 12, 13, 15, 17, 255}) {
            row(key, "", "", "");
            row(key, "handling delimit", "", "");
        }
    }
    void steps()
    {
        QFETCH(int, key);
        QFETCH(QString, flags);
        QFETCH(QString, press);
        QFETCH(QString, release);
        QCOMPARE(stepsFor(keyReport(key, 1), flagsOf(flags)), press);
        QCOMPARE(stepsFor(keyReport(key, 0), flagsOf(flags)), release);
        // An unheard-of state is no press, and the session ignores it by itself.
        QCOMPARE(stepsFor(keyReport(key, 2), flagsOf(flags)), release);
        QCOMPARE(stepsFor(keyReport(key, 1, 1), flagsOf(flags)), QString());
        QCOMPARE(stepsFor(keyReport(key, 1), flagsOf(flags + QStringLiteral(" latched"))), QString());
        InputReport other = keyReport(key, 1);
        other[1] = 0x20;
        QCOMPARE(stepsFor(other, flagsOf(flags)), QString());
    }
};

QTEST_APPLESS_MAIN(TestReportDispatch)
#include "tst_report_dispatch.moc"
