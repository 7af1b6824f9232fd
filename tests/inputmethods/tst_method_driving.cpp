#include "inputmethods/MethodDriving.h"
#include "support/Rows.h"

#include <QtTest>

namespace {

using mevo::MicClick;
using mevo::WindowLeave;
using mevo::WindowStart;

/// Facts as letters, of which each test says what they stand for.
struct Letters
{
    explicit Letters(QString letters)
        : m_letters(std::move(letters))
    {
    }
    bool operator()(char letter) const { return m_letters.contains(QLatin1Char(letter)); }

private:
    QString m_letters;
};

} // namespace

class TestMethodDriving : public QObject
{
    Q_OBJECT

private slots:
    void xunFeiWindowIsBroughtUp_data()
    {
        const Rows<QString, int> add; // facts (F found, 3 third generation, X XP-class), expected
        const auto row = [&](const char *facts, WindowStart expected) {
            add(facts, QString::fromLatin1(facts), int(expected));
        };
        row("", WindowStart::Nothing); // the older one comes up by itself
        row("F", WindowStart::Nothing);
        row("X", WindowStart::Open);
        row("XF", WindowStart::Nothing);
        row("3", WindowStart::OpenToType);
        row("3X", WindowStart::Open);
        row("3F", WindowStart::Nothing);
        row("3XF", WindowStart::Nothing);
    }

    void xunFeiWindowIsBroughtUp()
    {
        const auto [facts, expected] = rowOf<QString, int>();
        const Letters is(facts);
        QCOMPARE(int(mevo::startOfXunFeiWindow({is('F'), is('3'), is('X')})), expected);
    }

    void windowsAreLeft_data()
    {
        // index, facts (W there, S started by us, 3 third generation), atChoice, withoutKeys
        const Rows<int, QString, int, int> add;
        const auto row = [&](const char *name, int index, const char *facts, WindowLeave atChoice,
                             WindowLeave withoutKeys) {
            add(name, index, QString::fromLatin1(facts), int(atChoice), int(withoutKeys));
        };
        row("XunFei", 1, "WS", WindowLeave::Close, WindowLeave::Close);
        row("XunFei, the user's own", 1, "W", WindowLeave::Nothing, WindowLeave::Nothing);
        row("XunFei, gone", 1, "S", WindowLeave::Nothing, WindowLeave::Nothing);
        row("XunFei's third", 1, "WS3", WindowLeave::EndProgram, WindowLeave::Nothing);
        row("XunFei's third, the user's own", 1, "W3", WindowLeave::Nothing, WindowLeave::Nothing);
        row("Sogou", 2, "WS", WindowLeave::Close, WindowLeave::Close);
        row("Sogou beside XunFei's third", 2, "WS3", WindowLeave::Close, WindowLeave::Nothing);
        row("custom", 3, "WS", WindowLeave::Nothing, WindowLeave::Close);
        row("none", -1, "WS", WindowLeave::Nothing, WindowLeave::Close);
    }

    void windowsAreLeft()
    {
        const auto [index, facts, atChoice, withoutKeys] = rowOf<int, QString, int, int>();
        const Letters is(facts);
        QCOMPARE(int(mevo::leaveAtChoice(index, is('W'), is('S'), is('3'))), atChoice);
        QCOMPARE(int(mevo::leaveWithoutKeys(is('W'), is('S'), is('3'))), withoutKeys);
    }

    void microphoneIsClicked_data()
    {
        // index (A set up, P path known, W window there, S started by us, R runs, 3 third generation),
        // facts, expected
        const Rows<int, QString, int> add;
        const auto row = [&](const char *name, int index, const char *facts, MicClick expected) {
            add(name, index, QString::fromLatin1(facts), int(expected));
        };
        row("XunFei is started", 1, "AP", MicClick::StartXunFei);
        row("not before it is set up", 1, "P", MicClick::Nothing);
        row("not without a path", 1, "A", MicClick::Nothing);
        row("not while it comes up", 1, "APSR", MicClick::Nothing);
        row("again when it was ended by others", 1, "APS", MicClick::StartXunFei);
        row("XunFei is closed", 1, "APWSR", MicClick::Close);
        row("the third by force", 1, "APWSR3", MicClick::EndProgram);
        row("the user's own is left alone", 1, "APWR", MicClick::Nothing);
        row("the user's own third, too", 1, "APWR3", MicClick::Nothing);
        row("Sogou is started", 2, "AP", MicClick::StartOther);
        row("Sogou stays", 2, "APWSR", MicClick::Nothing);
        row("Sogou stays beside XunFei's third", 2, "APWSR3", MicClick::Nothing);
        row("custom is started", 3, "AP", MicClick::StartOther);
        row("custom runs", 3, "APWRS", MicClick::Nothing);
    }

    void microphoneIsClicked()
    {
        const auto [index, facts, expected] = rowOf<int, QString, int>();
        const Letters is(facts);
        QCOMPARE(int(mevo::clickOnMicrophone({index, is('A'), is('P'), is('W'), is('S'), is('R'), is('3')})),
                 expected);
    }
};

QTEST_GUILESS_MAIN(TestMethodDriving)
#include "tst_method_driving.moc"
