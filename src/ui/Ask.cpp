#include "ui/Ask.h"

#include "platform/WindowSystem.h"
#include "ui/ClearPlace.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVector>

namespace mevo {

namespace {
QVector<QPointer<QDialog>> standing;
}

std::function<int(const Question &)> askHook;
WindowSystem *questionWindows = nullptr;

namespace {

QMessageBox::ButtonRole roleOf(Answer meaning)
{
    switch (meaning) {
    case Answer::Yes:
        return QMessageBox::YesRole;
    case Answer::Back:
        return QMessageBox::RejectRole;
    case Answer::No:
        return QMessageBox::NoRole;
    case Answer::Accept:
        break;
    }
    return QMessageBox::AcceptRole;
}

/// The bar and the talk window stand over everything, a question not excepted: it is placed clear of them.
void placeQuestion(QMessageBox &box, const QWidget *parent)
{
    const QScreen *screen = parent != nullptr ? parent->screen() : QGuiApplication::primaryScreen();
    std::vector<QRect> taken;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        if (window != &box && window->isVisible()) {
            taken.push_back(window->geometry());
        }
    }
    box.adjustSize();
    box.move(clearPlace(screen->availableGeometry(), box.sizeHint(), taken));
}

WindowId windowInUse()
{
    if (questionWindows == nullptr) {
        return 0;
    }
    const WindowId front = questionWindows->foregroundWindow();
    return front != 0 ? front : questionWindows->focusedWindow();
}

} // namespace

namespace {

const QString asideName = QStringLiteral("QuestionAside");

/// The buttons in their order.
QList<QAbstractButton *> fill(QMessageBox &box, const Question &question)
{
    box.setIcon(question.warning ? QMessageBox::Warning : QMessageBox::Question);
    box.setWindowTitle(question.title);
    box.setTextFormat(Qt::PlainText); // parts of it may be a stranger's
    box.setText(question.text);
    QList<QAbstractButton *> buttons;
    for (int i = 0; i < question.buttons.size(); ++i) {
        const Answer meaning =
            std::size_t(i) < question.meanings.size() ? question.meanings[std::size_t(i)] : Answer::Accept;
        QPushButton *button = box.addButton(question.buttons[i], roleOf(meaning));
        buttons.append(button);
        if (i == question.defaultButton) {
            box.setDefaultButton(button);
        }
        if (meaning == Answer::Back) {
            box.setEscapeButton(button);
        }
    }
    if (!question.meanings.empty() && box.escapeButton() == nullptr) {
        // A box that is closed has not been answered; alone, a button would count as pressed.
        QPushButton *closed = box.addButton(QString(), QMessageBox::RejectRole);
        closed->hide();
        box.setEscapeButton(closed);
    }
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    return buttons;
}

} // namespace

int ask(QWidget *parent, const Question &question)
{
    if (askHook) {
        return askHook(question);
    }
    const WindowId inUse = windowInUse();
    const QPointer<QMessageBox> box(new QMessageBox(parent));
    const QList<QAbstractButton *> buttons = fill(*box, question);
    placeQuestion(*box, parent);
    runDialog(box.data());
    int answer = -1;
    if (!box.isNull()) {
        answer = buttons.indexOf(box->clickedButton());
        delete box;
    }
    // The question belonged to a bar that takes no focus, so that it would go to nobody.
    if (inUse != 0 && questionWindows != nullptr) {
        questionWindows->activate(inUse);
    }
    return answer;
}

bool runDialog(const QPointer<QDialog> &dialog)
{
    standing.append(dialog);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    standing.removeAll(dialog); // a dialog that has gone is null here, and so are others that have
    return accepted && !dialog.isNull();
}

void closeQuestions()
{
    const QVector<QPointer<QDialog>> all = standing;
    for (const QPointer<QDialog> &dialog : all) {
        if (!dialog.isNull()) {
            dialog->done(-1);
        }
    }
}

void raiseQuestions()
{
    for (const QPointer<QDialog> &dialog : standing) { // the one that was asked last ends up in front
        if (!dialog.isNull()) {
            dialog->raise();
            dialog->activateWindow();
        }
    }
}

void askAside(QWidget *parent, const Question &question, std::function<void(int)> answered)
{
    if (askHook) {
        QTimer::singleShot(
            0, parent, [answer = askHook(question), answered = std::move(answered)] { answered(answer); });
        return;
    }
    auto *box = new QMessageBox(parent);
    const QList<QAbstractButton *> buttons = fill(*box, question);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setAttribute(Qt::WA_ShowWithoutActivating); // what is being typed elsewhere must not press a button
    box->setModal(false);
    box->setObjectName(asideName);
    QObject::connect(box, &QMessageBox::finished, box, [box, buttons, answered = std::move(answered)] {
        answered(buttons.indexOf(box->clickedButton()));
    });
    placeBeside(*box, *parent);
    box->show();
}

void placeBeside(QWidget &window, const QWidget &parent)
{
    window.adjustSize();
    window.move(besidePlace(parent.screen()->availableGeometry(), window.size(), parent.frameGeometry()));
}

void raiseAside(QWidget *parent, const QString &title)
{
    const auto boxes = parent->findChildren<QMessageBox *>(asideName, Qt::FindDirectChildrenOnly);
    for (QMessageBox *box : boxes) {
        if (box->windowTitle() == title) {
            box->raise();
            box->activateWindow();
        }
    }
}

void moveQuestions(QWidget *from, QWidget *to)
{
    const auto boxes = from->findChildren<QMessageBox *>(asideName, Qt::FindDirectChildrenOnly);
    for (QMessageBox *box : boxes) {
        const bool stands = box->isVisible();
        const QPoint place = box->pos();
        box->setParent(to, box->windowFlags()); // which hides it
        box->move(place);
        box->setVisible(stands);
    }
}

} // namespace mevo
