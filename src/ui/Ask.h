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
/// Closes the questions that stand, unanswered.
void closeQuestions();
extern std::function<int(const Question &)> askHook;

} // namespace mevo
