#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace mevo {

/// A question to the user: a title, a text, and buttons of which one is the default.
struct Question
{
    QString title;
    QString text;
    QStringList buttons; ///< in order; the first one is the default
    bool warning = false;
};

/// Asks and waits; the index of the button pressed, or -1 when the question was closed. A test
/// replaces `askHook` to answer by itself.
int ask(QWidget *parent, const Question &question);
extern std::function<int(const Question &)> askHook;

/// Asks beside everything else, without taking the focus, and does not wait: `answered` gets the same index
/// once there is an answer, and never when `parent` ends before.
void askBeside(QWidget *parent, const Question &question, const std::function<void(int)> &answered);

} // namespace mevo
