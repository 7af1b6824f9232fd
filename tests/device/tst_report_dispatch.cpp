#include "device/ReportDispatch.h"
#include "support/Rows.h"

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
    using Kind = DispatchStep::Kind;
    static const QMap<Kind, const char *> names{
        {Kind::MicDialogCall, "dialog "},        {Kind::MainCall, "main "},
        {Kind::OfflineWarning, "offline"},       {Kind::KeyToSession, "session"},
        {Kind::KeyToTranslation, "translation"}, {Kind::KeyRefused, "refused"},
        {Kind::StartStopRecordTimer, "timer"}};
    QStringList steps;
    for (const DispatchStep &step : mevo::dispatchKeyReport(report, flags)) {
        const QString name = QLatin1String(names[step.kind]);
        steps.append(name.endsWith(u' ') ? name + QString::number(step.index) : name);
    }
    return steps.join(QLatin1String(", "));
}

/// Flags by their words; everything else is a session at rest.
DispatchFlags flagsOf(const QString &words)
{
    const auto has = [&words](const char *word) { return words.contains(QLatin1String(word)); };
    DispatchFlags flags;
    flags.micLatched = has("latched");
    flags.delimitTranslation = has("delimit");
    flags.voiceTypeMode = has("typing");
    flags.voiceTranslateMode = has("translating");
    flags.online = has("online");
    flags.resultIdle = !has("handling");
    flags.keyDownBusy = has("keydown");
    flags.keyUpBusy = has("keyup");
    flags.quickReleaseCount = words.section(QLatin1String("quick"), 1).left(1).toInt(); // "quick2"
    return flags;
}

} // namespace

class TestReportDispatch : public QObject
{
    Q_OBJECT

private slots:
    void steps_data()
    {
        const Rows<int, QString, QString, QString>
            table; // key, flags, what a press does, what a release does
        const auto row = [&table](int key, const char *flags, const char *press, const char *release) {
            table("key " + QByteArray::number(key) + ", " + flags, key, flags, press, release);
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
        const auto [key, flags, press, release] = rowOf<int, QString, QString, QString>();
        QCOMPARE(stepsFor(keyReport(key, 1), flagsOf(flags)), press);
        QCOMPARE(stepsFor(keyReport(key, 0), flagsOf(flags)), release);
        // An unheard-of state is no press, and the session ignores it by itself.
        QCOMPARE(stepsFor(keyReport(key, 2), flagsOf(flags)), release);
        QCOMPARE(stepsFor(keyReport(key, 1, 1), flagsOf(flags)), QString());
        QCOMPARE(stepsFor(keyReport(key, 1), flagsOf(flags + " latched"_s)), QString());
        InputReport other = keyReport(key, 1);
        other[1] = 0x20;
        QCOMPARE(stepsFor(other, flagsOf(flags)), QString());
    }
};

QTEST_APPLESS_MAIN(TestReportDispatch)
#include "tst_report_dispatch.moc"
