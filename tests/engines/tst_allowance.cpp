#include "engines/Allowance.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::AllowanceStep;

namespace {

} // namespace

class TestAllowance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCheck_data()
    {
        // selected (engines in force: B, X, T; I an input method before them), exhausted (engines whose use
        // is at the limit), marked (before), xpClass, step, marks (after)
        const Rows<QString, QString, QString, bool, AllowanceStep, QString> row;
        const auto on = AllowanceStep::GoOn;
        const auto tencent = AllowanceStep::UseTencent;
        const auto ask = AllowanceStep::AskUser;
        row("Baidu, nothing used up", "B", "", "", false, on, "");
        row("Baidu, the others used up", "B", "XT", "", false, on, "");
        row("Baidu used up", "B", "B", "", false, tencent, "");
        row("Baidu used up, Tencent's number too", "B", "BT", "", false, tencent, "");
        row("Baidu used up, Tencent marked", "B", "B", "T", false, ask, "BT");
        row("Baidu used up, on XP", "B", "B", "", true, ask, "B");
        row("XunFei", "X", "", "", false, on, "");
        row("XunFei used up", "X", "X", "", false, tencent, "");
        row("XunFei used up, Tencent marked", "X", "X", "T", false, ask, "XT");
        row("XunFei used up, on XP", "X", "X", "", true, ask, "X");
        row("Tencent", "T", "BX", "", false, on, "");
        row("Tencent used up", "T", "T", "", false, ask, "T");
        row("Tencent used up, on XP", "T", "T", "", true, ask, "T");
        row("two, the second has some left", "BX", "B", "", false, on, "B");
        row("two, both used up", "BX", "BX", "", false, tencent, "");
        row("two, Tencent has some left", "BT", "B", "", false, on, "B");
        row("two, Tencent used up", "BT", "BT", "", false, ask, "BT");
        row("none", "", "BXT", "", false, on, "");
        row("an input method", "IB", "B", "", false, on, "");
    }

    void theCheck()
    {
        const auto [selected, exhausted, marked, xpClass, step, expectedMarks] =
            rowOf<QString, QString, QString, bool, AllowanceStep, QString>();
        MainState state;
        RecorderState recorder;
        recorder.BaiDuNoStreamApi = selected.contains(QLatin1Char('B'));
        recorder.UseXunFeiWebApi = selected.contains(QLatin1Char('X'));
        recorder.UseTXASRApi = selected.contains(QLatin1Char('T'));
        state.LocalEnableASR3 = selected.contains(QLatin1Char('I'));
        state.BDSR1DMaxUsageQuantity = state.XFSR1DMaxUsageQuantity = state.TXSR1DMaxUsageQuantity = 5;
        state.BDSR1DUsedQuantity = exhausted.contains(QLatin1Char('B')) ? 5 : 4;
        state.XFSR1DUsedQuantity = exhausted.contains(QLatin1Char('X')) ? 6 : 4;
        state.TXSR1DUsedQuantity = exhausted.contains(QLatin1Char('T')) ? 5 : 4;
        state.TencentQuotaHit = marked.contains(QLatin1Char('T'));
        const auto marks = [&] {
            return QString(state.BaiduQuotaHit ? "B"_s : ""_s) + (state.XunFeiQuotaHit ? "X"_s : ""_s) +
                   (state.TencentQuotaHit ? "T"_s : ""_s);
        };
        QCOMPARE(mevo::checkAllowances(state, recorder, xpClass), step);
        QCOMPARE(marks(), expectedMarks);

        state.BaiduQuotaHit = state.XunFeiQuotaHit = state.TencentQuotaHit = true;
        mevo::unmarkAllowances(state);
        for (const char engine : {'B', 'X', 'T'}) {
            QCOMPARE(marks().contains(QLatin1Char(engine)), exhausted.contains(QLatin1Char(engine)));
        }
        state.BDSR1DReadQuantity = state.BDSR1DUsedQuantity;
        state.XFSR1DReadQuantity = state.XFSR1DUsedQuantity;
        state.TXSR1DReadQuantity = state.TXSR1DUsedQuantity;
        state.BDFY1MReadQuantity = 8;
        state.BDFY1MUsedQuantity = 9; // one has not been told
        mevo::beginAllowanceDay(state);
        QVERIFY(marks().isEmpty() && state.BDSR1DUsedQuantity == 0 && state.XFSR1DUsedQuantity == 0 &&
                state.TXSR1DUsedQuantity == 0 && state.BDFY1MUsedQuantity == 1);
    }

    void aHiddenDialectGivesWayToMandarin()
    {
        EngineState state;
        state.TXCurrentVoiceType = "16k_zh_dialect"_s;
        QVERIFY(mevo::leaveHiddenDialect(state).writes.empty());
        state.ShowTecentZhDialect = false;
        const mevo::EngineChange change = mevo::leaveHiddenDialect(state);
        QCOMPARE(state.TXCurrentVoiceType, "16k_zh"_s);
        QVERIFY(change.rebuild && !change.persistEngine);
        QCOMPARE(QByteArray(change.writes.at(0).key), QByteArray("TXCurrentVoiceType"));
        state.TXCurrentVoiceType = "16k_en"_s;
        QVERIFY(mevo::leaveHiddenDialect(state).writes.empty());
    }
};

QTEST_APPLESS_MAIN(TestAllowance)
#include "tst_allowance.moc"
