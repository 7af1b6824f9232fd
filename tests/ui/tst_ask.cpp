// Questions and file dialogs whose parent goes while they stand, and how they are closed.

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
        QTest::addColumn<int>("kind");
        QTest::newRow("question") << 0;
        QTest::newRow("file") << 1;
        QTest::newRow("new file") << 2;
        QTest::newRow("folder") << 3;
    }
    void aParentThatGoesTakesItsDialogAlong()
    {
        QFETCH(int, kind);
        auto parent = std::make_unique<QWidget>();
        parent->show();
        bool stood = false;
        whileItStands([&](QWidget *dialog) {
            stood = dialog != nullptr;
            parent.reset();
        });
        const QString title = QStringLiteral("title");
        switch (kind) {
        case 0:
            QCOMPARE(ask(parent.get(), {title, title, {title}}), -1);
            break;
        case 1:
            QCOMPARE(pickFile(parent.get(), title), QString());
            break;
        case 2:
            QCOMPARE(pickNewFile(parent.get(), title, title, QString()), QString());
            break;
        default:
            QCOMPARE(pickFolder(parent.get(), title, QDir::tempPath()), QString());
        }
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
        const QString text = QStringLiteral("text");
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
        const QString text = QStringLiteral("text");
        ask(&parent, {text, text, {text}});
        QVERIFY(came);
        raiseQuestions(); // there is none
    }

    void howAQuestionIsClosed_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Escape") << 0;
        QTest::newRow("close box") << 1;
        QTest::newRow("all at once") << 2;
    }
    void howAQuestionIsClosed()
    {
        QFETCH(int, way);
        QWidget parent;
        parent.show();
        whileItStands([way](QWidget *box) {
            QVERIFY(box != nullptr);
            switch (way) {
            case 0:
                QTest::keyClick(box, Qt::Key_Escape);
                break;
            case 1:
                box->close();
                break;
            default:
                closeQuestions();
            }
        });
        const QString text = QStringLiteral("text");
        const Question question{text, text, {text, text}, false, {Answer::Yes, Answer::No}};
        QCOMPARE(ask(&parent, question), -1);
    }
};

QTEST_MAIN(tst_ask)
#include "tst_ask.moc"
