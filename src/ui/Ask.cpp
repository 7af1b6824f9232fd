#include "ui/Ask.h"

#include "platform/WindowSystem.h"
#include "ui/ClearPlace.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QVector>

namespace mevo {

namespace {
QVector<QMessageBox *> standing;
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

int ask(QWidget *parent, const Question &question)
{
    if (askHook) {
        return askHook(question);
    }
    const WindowId inUse = windowInUse();
    QMessageBox box(question.warning ? QMessageBox::Warning : QMessageBox::Question, question.title,
                    question.text, QMessageBox::NoButton, parent);
    QList<QAbstractButton *> buttons;
    for (int i = 0; i < question.buttons.size(); ++i) {
        const Answer meaning =
            std::size_t(i) < question.meanings.size() ? question.meanings[std::size_t(i)] : Answer::Accept;
        QPushButton *button = box.addButton(question.buttons[i], roleOf(meaning));
        buttons.append(button);
        if (i == 0) {
            box.setDefaultButton(button);
        }
        if (meaning == Answer::Back) {
            box.setEscapeButton(button);
        }
    }
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    placeQuestion(box, parent);
    standing.append(&box);
    box.exec();
    standing.removeOne(&box);
    // The question belonged to a bar that takes no focus, so that it would go to nobody.
    if (inUse != 0 && questionWindows != nullptr) {
        questionWindows->activate(inUse);
    }
    return buttons.indexOf(box.clickedButton());
}

void closeQuestions()
{
    for (QMessageBox *box : qAsConst(standing)) {
        box->done(-1);
    }
}

} // namespace mevo
