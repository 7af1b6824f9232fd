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
    QStringList buttons; ///< in order
    bool warning = false;
    int defaultButton = 0;
};

/// Asks and waits; the index of the button pressed, or -1 when the question was closed. A test
/// replaces `askHook` to answer by itself.
int ask(QWidget *parent, const Question &question);
/// Asks without holding anything up, in a box that comes without the focus; `answered` is told what ask()
/// would answer. Nothing is told when `parent` goes first.
void askAside(QWidget *parent, const Question &question, std::function<void(int)> answered);
extern std::function<int(const Question &)> askHook;

} // namespace mevo
