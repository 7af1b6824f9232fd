// The editor of the command words as the bar opens it.

#include "base/ApplicationFiles.h"
#include "commands/CommandTable.h"
#include "support/Texts.h"
#include "ui/MicTipDialog.h"
#include "ui/commands/CommandWordDialog.h"
#include "window/Program.h"

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

namespace {

QList<CommandWordDialog *> editors()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QList<CommandWordDialog *> found;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *editor = qobject_cast<CommandWordDialog *>(window)) {
            found.append(editor);
        }
    }
    return found;
}

QPushButton *button(const QWidget *in, const char *name)
{
    auto *found = in->findChild<QPushButton *>(QLatin1String(name));
    if (found == nullptr) {
        qFatal("%s is not there", name);
    }
    return found;
}

} // namespace

class TestCommandEditorHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBarsButtonOpensOne()
    {
        Started program;
        program.window->show();
        QPushButton *open = button(program.window.get(), "pushBuutton_CommandWord");
        open->click();
        QCOMPARE(editors().size(), 1);
        const QPointer<CommandWordDialog> first = editors().first();
        QVERIFY(first->isVisible());
        program.window->DeviceConnected = false;
        program.window->setWndTopMostTimeout();
        QVERIFY(program.window->isVisible()); // the bar is not touched meanwhile
        program.window->DeviceConnected = true;

        open->click(); // one that is seen is made anew
        QCOMPARE(editors().size(), 1);
        QVERIFY(first.isNull());
        const QPointer<CommandWordDialog> second = editors().first();
        second->close(); // by its frame: it comes back
        open->click();
        QCOMPARE(editors().first(), second.data());
        QVERIFY(second->isVisible());

        QCoreApplication::processEvents();
        button(second, "pushButton_Close")->click();
        QVERIFY(editors().isEmpty());
        open->click();
        QCOMPARE(editors().size(), 1);
    }

    void theTalkWindowDoesNotCoverIt()
    {
        Started program;
        MicTipDialog *talk = program.window->micTip();
        talk->show();
        talk->move(talk->x(), 500); // leaves room above it on a small screen
        button(program.window.get(), "pushBuutton_CommandWord")->click();
        const QRect editor = editors().first()->geometry();
        QVERIFY2(!editor.intersects(talk->geometry()),
                 qPrintable("editor at %1, %2, %3 x %4, talk window at %5, %6"_s.arg(editor.x())
                                .arg(editor.y())
                                .arg(editor.width())
                                .arg(editor.height())
                                .arg(talk->x())
                                .arg(talk->y())));
    }

    /// The editor that stands is the only one to have the rows.
    void oneWhoseDraftCannotBeWrittenStays()
    {
        Started program;
        QPushButton *open = button(program.window.get(), "pushBuutton_CommandWord");
        open->click();
        const QPointer<CommandWordDialog> editor = editors().first();
        QCoreApplication::processEvents();
        button(editor, "pushButton_AddCmdWord")->click();
        editor->findChild<QLineEdit *>("lineEdit_CommandWord"_s)->setText("w"_s);
        const mevo::CommandTable tables;
        const QString draft = tables.typedPath(mevo::CommandType::Web) + ".draft"_s;
        QFile::remove(draft);
        QVERIFY(QDir().mkpath(draft + "/full"_s));
        open->click();
        QCOMPARE(editors(), QList<CommandWordDialog *>{editor.data()});
        QVERIFY(editor->isVisible());
        QVERIFY(QDir(draft).removeRecursively());
        open->click();
        QCOMPARE(editors().size(), 1);
        QVERIFY(editor.isNull());
        const auto kept = tables.readDraft(mevo::CommandType::Web); // behind rows that come with the program
        QVERIFY(kept && std::any_of(kept->begin(), kept->end(), [](const mevo::CommandRow &row) {
                    return row.CommandWords == QLatin1String("w");
                }));
        tables.removeDraft(mevo::CommandType::Web);
    }
};

QTEST_MAIN(TestCommandEditorHands)
#include "tst_command_editor_hands.moc"
