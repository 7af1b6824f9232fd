#include "ui/Ask.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace mevo {

std::function<int(const Question &)> askHook;

namespace {

constexpr int titleBarHeight = 40; ///< about, whatever the window manager

/// The buttons in their order.
QList<QAbstractButton *> fill(QMessageBox &box, const Question &question)
{
    box.setIcon(question.warning ? QMessageBox::Warning : QMessageBox::Question);
    box.setWindowTitle(question.title);
    box.setText(question.text);
    QList<QAbstractButton *> buttons;
    for (const QString &text : question.buttons) {
        QPushButton *button = box.addButton(text, QMessageBox::ActionRole);
        if (buttons.size() == question.defaultButton) {
            box.setDefaultButton(button);
        }
        buttons.append(button);
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
    QMessageBox box(parent);
    const QList<QAbstractButton *> buttons = fill(box, question);
    box.exec();
    return buttons.indexOf(box.clickedButton());
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
    QObject::connect(box, &QMessageBox::finished, parent, [box, buttons, answered = std::move(answered)] {
        answered(buttons.indexOf(box->clickedButton()));
    });
    // Above its parent, which stays in reach while the box stands; below it where there is no room.
    box->adjustSize();
    const QRect bar = parent->frameGeometry();
    const int above = bar.top() - box->height() - titleBarHeight;
    box->move(bar.center().x() - box->width() / 2, above >= 0 ? above : bar.bottom() + 1);
    box->show();
}

} // namespace mevo
