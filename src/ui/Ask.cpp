#include "ui/Ask.h"

#include <QMessageBox>
#include <QPushButton>

namespace mevo {

std::function<int(const Question &)> askHook;

namespace {

/// The buttons in the order of the question.
QList<QAbstractButton *> fill(QMessageBox &box, const Question &question)
{
    QList<QAbstractButton *> buttons;
    for (const QString &text : question.buttons) {
        buttons.append(box.addButton(text, QMessageBox::ActionRole));
    }
    if (!buttons.isEmpty()) {
        box.setDefaultButton(static_cast<QPushButton *>(buttons.first()));
    }
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    return buttons;
}

QMessageBox::Icon iconOf(const Question &question)
{
    return question.warning ? QMessageBox::Warning : QMessageBox::Question;
}

} // namespace

int ask(QWidget *parent, const Question &question)
{
    if (askHook) {
        return askHook(question);
    }
    QMessageBox box(iconOf(question), question.title, question.text, QMessageBox::NoButton, parent);
    const QList<QAbstractButton *> buttons = fill(box, question);
    box.exec();
    return buttons.indexOf(box.clickedButton());
}

void askBeside(QWidget *parent, const Question &question, const std::function<void(int)> &answered)
{
    if (askHook) {
        answered(askHook(question));
        return;
    }
    auto *box =
        new QMessageBox(iconOf(question), question.title, question.text, QMessageBox::NoButton, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    const QList<QAbstractButton *> buttons = fill(*box, question);
    QObject::connect(box, &QMessageBox::finished, parent,
                     [box, buttons, answered] { answered(buttons.indexOf(box->clickedButton())); });
    box->setModal(false);
    // Nobody has called it: the keys that the user is typing are not for it.
    box->setAttribute(Qt::WA_ShowWithoutActivating);
    box->show();
}

} // namespace mevo
