#include "ui/Ask.h"

#include <QMessageBox>
#include <QPushButton>

namespace mevo {

std::function<int(const Question &)> askHook;

int ask(QWidget *parent, const Question &question)
{
    if (askHook) {
        return askHook(question);
    }
    QMessageBox box(question.warning ? QMessageBox::Warning : QMessageBox::Question, question.title,
                    question.text, QMessageBox::NoButton, parent);
    QList<QAbstractButton *> buttons;
    for (const QString &text : question.buttons) {
        buttons.append(box.addButton(text, QMessageBox::ActionRole));
    }
    if (!buttons.isEmpty()) {
        box.setDefaultButton(static_cast<QPushButton *>(buttons.first()));
    }
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    box.exec();
    return buttons.indexOf(box.clickedButton());
}

} // namespace mevo
