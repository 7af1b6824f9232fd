// Questions and file dialogs whose parent goes while they stand, and how they are closed.

#include "support/Rows.h"
#include "ui/Ask.h"
#include "ui/PickFile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPointer>
#include <QtTest>

using namespace mevo;

namespace {

/// Runs while a dialog stands.
void whileItStands(const std::function<void(QWidget *)> &action)
{
    QTimer::singleShot(0, qApp, [action] { action(QApplication::activeModalWidget()); });
}

} // namespace

class tst_ask : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aParentThatGoesTakesItsDialogAlong_data()
    {
        const Rows<std::function<bool(QWidget *)>> row; // opens it; whether it ends as if nobody had answered
        const QString title = "title"_s;
        row("question", [=](QWidget *parent) { return ask(parent, {title, title, {title}}) == -1; });
        row("file", [=](QWidget *parent) { return pickFile(parent, title).isEmpty(); });
        row("new file", [=](QWidget *parent) { return pickNewFile(parent, title, title, {}).isEmpty(); });
        row("folder", [=](QWidget *parent) { return pickFolder(parent, title, QDir::tempPath()).isEmpty(); });
    }
    void aParentThatGoesTakesItsDialogAlong()
    {
        const auto [opens] = rowOf<std::function<bool(QWidget *)>>();
        auto parent = std::make_unique<QWidget>();
        parent->show();
        bool stood = false;
        whileItStands([&](QWidget *dialog) {
            stood = dialog != nullptr;
            parent.reset();
        });
        QVERIFY(opens(parent.get()));
        QVERIFY(stood && parent == nullptr);
        closeQuestions(); // nothing that has gone is among them
    }

    /// A question asked aside that has been moved to another window stands where it stood, and is answered.
    void aQuestionMovesToAnotherWindow()
    {
        QWidget to;
        to.show();
        auto from = std::make_unique<QWidget>();
        from->show();
        const QString text = "text"_s;
        QList<int> answers;
        askAside(from.get(), {text, text, {text}, false, {Answer::Accept}},
                 [&answers](int answer) { answers.append(answer); });
        const QPointer<QMessageBox> box = from->findChild<QMessageBox *>();
        QVERIFY(box != nullptr && box->isVisible());
        from->hide(); // which takes nothing along
        QVERIFY(box->isVisible());
        const QPoint place = box->pos();
        moveQuestions(from.get(), &to);
        from.reset();
        QVERIFY(!box.isNull() && box->isVisible() && !box->isModal());
        QCOMPARE(box->pos(), place);
        QCOMPARE(box->parentWidget(), &to);
        QCOMPARE(answers, QList<int>());
        box->buttons().first()->click();
        QCOMPARE(answers, QList<int>{0});
        QTRY_VERIFY(box.isNull());
    }

    void aQuestionThatStandsComesForward()
    {
        QWidget parent;
        QWidget other; // no window that the question holds up
        other.setWindowModality(Qt::NonModal);
        parent.show();
        bool came = false;
        whileItStands([&](QWidget *box) {
            QVERIFY(box != nullptr);
            other.show();
            other.activateWindow();
            QTRY_VERIFY(other.isActiveWindow());
            raiseQuestions();
            QTRY_VERIFY(box->isActiveWindow());
            came = true;
            closeQuestions();
        });
        const QString text = "text"_s;
        ask(&parent, {text, text, {text}});
        QVERIFY(came);
        raiseQuestions(); // there is none
    }

    void howAQuestionIsClosed_data()
    {
        const Rows<std::function<void(QWidget *)>> row;
        row("Escape", [](QWidget *box) { QTest::keyClick(box, Qt::Key_Escape); });
        row("close box", [](QWidget *box) { box->close(); });
        row("all at once", [](QWidget *) { closeQuestions(); });
    }
    void howAQuestionIsClosed()
    {
        const auto [closes] = rowOf<std::function<void(QWidget *)>>();
        QWidget parent;
        parent.show();
        whileItStands(closes);
        const QString text = "text"_s;
        const Question question{text, text, {text, text}, false, {Answer::Yes, Answer::No}};
        QCOMPARE(ask(&parent, question), -1);
    }
};

QTEST_MAIN(tst_ask)
#include "tst_ask.moc"
