#include "ui/Ask.h"

#include <QMessageBox>
#include <QPushButton>
#include <QVector>

namespace mevo {

namespace {
QVector<QMessageBox *> standing;
}

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
    standing.append(&box);
    box.exec();
    standing.removeOne(&box);
    return buttons.indexOf(box.clickedButton());
}

void closeQuestions()
{
    for (QMessageBox *box : qAsConst(standing)) {
        box->done(-1);
    }
}

} // namespace mevo
