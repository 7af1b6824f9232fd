#include "output/PostingPlan.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::PostBatch;

class TestPostingPlan : public QObject
{
    Q_OBJECT

    /// The batches of a text: what comes before each ("|" keys are bound or translated, "‖" settled), then
    /// its characters; "*" for each key that is bound.
    static QString batches(const QString &text, int slotCount, const mevo::TypingHabits &habits)
    {
        mevo::ScratchSlots scratch(slotCount);
        mevo::PostingPlan plan(text, scratch, habits);
        QString seen;
        int from = 0;
        while (!plan.atEnd()) {
            const PostBatch batch = plan.next();
            seen += batch.after == PostBatch::After::Settled      ? "‖"_s
                    : batch.after == PostBatch::After::Translated ? "|"_s
                                                                  : QString();
            seen += QString(int(batch.rebind.size()), QLatin1Char('*'));
            seen += text.mid(from, batch.strokes.back().end - from);
            from = batch.strokes.back().end;
        }
        return seen;
    }

private Q_SLOTS:
    void batchesAreCut_data()
    {
        const Rows<QString, QString, QString> row; // programs, text, cut
        row("as many as there are keys", "XTerm", "abcdabef", "|****abcdab|**ef");
        row("any program takes all of them at once", "Mousepad", "1上上𠀀2", "|****1上上𠀀2");
        row("an office is waited for before a pair", "libreoffice-writer", "12𠀀😀2𠀀", "|****12‖𠀀😀2‖𠀀");
        row("a pair comes first", "Soffice", "𠀀1", "‖**𠀀1");
        row("an office is asked between the same key twice, and behind a line end", "libreoffice",
            "上上\n\n上", "|*上|上\n‖\n‖上");
        row("a change of keys within it", "libreoffice", "1112345", "|****1|1|1234|*5");
    }

    void batchesAreCut()
    {
        const auto [programs, text, cut] = rowOf<QString, QString, QString>();
        QCOMPARE(batches(text, 4, mevo::typingHabits({programs})), cut);
    }

    /// The keys are taken away before a batch is sent, and fewer of them are left.
    void aBatchComesAgain()
    {
        mevo::ScratchSlots scratch(4);
        mevo::PostingPlan plan("abcdefgh"_s, scratch);
        QCOMPARE(plan.next().strokes.back().end, 4);
        QCOMPARE(plan.next().strokes.back().end, 8);
        scratch = mevo::ScratchSlots(3);
        plan.again();
        const PostBatch batch = plan.next();
        QCOMPARE(batch.rebind.size(), std::size_t(3));
        QCOMPARE(batch.struck(), (std::vector<int>{0, 1, 2}));
        QCOMPARE(batch.strokes.back().end, 7);
        QCOMPARE(plan.next().strokes.back().end, 8);
        QVERIFY(plan.atEnd());
    }

    void whatIsTyped()
    {
        const mevo::TypingHabits kate = mevo::typingHabits({"kate"_s, "Kate"_s});
        QCOMPARE(mevo::typableLength("ab😀c"_s, kate), 2);
        QCOMPARE(mevo::typableLength("ab😀c"_s, {}), 5);
        const QStringList java{"sun-awt-X11-XFramePeer"_s, "jetbrains-idea"_s};
        QVERIFY(mevo::typingHabits(java).oneState && !kate.oneState);
        QString broken = "a\x01\r\nb"_s;
        broken += QChar(0xd83d); // half of a pair
        broken += "é\t😀"_s;
        std::vector<mevo::KeySymbol> symbols;
        for (const mevo::PostUnit &unit : mevo::postUnits(broken)) {
            symbols.push_back(unit.symbol);
        }
        QCOMPARE(symbols,
                 (std::vector<mevo::KeySymbol>{0x1000061, 0xff0d, 0x1000062, 0xe9, 0xff09, 0x101f600}));
    }
};

QTEST_GUILESS_MAIN(TestPostingPlan)
#include "tst_posting_plan.moc"
