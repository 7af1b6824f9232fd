#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class QDialog;
class QWidget;

namespace mevo {

class WindowSystem;

/// What a button of a question means. Escape and the close box answer as Back does.
enum class Answer { Yes, Back, No, Accept };

/// A question to the user: a title, a text, and buttons of which one is the default.
struct Question
{
    QString title;
    QString text;
    QStringList buttons; ///< in order
    bool warning = false;
    std::vector<Answer> meanings = {}; ///< of the buttons; those that have none accept
    int defaultButton = 0;
};

/// Asks and waits; the index of the button pressed, or -1 when the question was closed and none of its
/// buttons means that. The window that had the focus gets it back. A test replaces `askHook` to answer by
/// itself.
int ask(QWidget *parent, const Question &question);
/// Runs a dialog as a question runs: whether it was accepted. Its parent may go meanwhile and take the dialog
/// along, which is no.
bool runDialog(const QPointer<QDialog> &dialog);
/// Closes the questions and dialogs that stand, unanswered.
void closeQuestions();
/// Brings the question or dialog that stands to the front and gives it the focus.
void raiseQuestions();
/// Asks without holding anything up, in a box that comes without the focus; `answered` is told what ask()
/// would answer. Nothing is told when `parent` goes first.
void askAside(QWidget *parent, const Question &question, std::function<void(int)> answered);
/// Places a window that stands for a while above its parent, which stays in reach, or else beside it; on the
/// parent's screen.
void placeBeside(QWidget &window, const QWidget &parent);
/// Brings the questions of askAside() with this title that stand over `parent` to the front and gives them
/// the focus.
void raiseAside(QWidget *parent, const QString &title);
/// Questions of askAside() that stand over `from` go on over `to`: `from` is about to go, and they have not
/// been answered.
void moveQuestions(QWidget *from, QWidget *to);
extern std::function<int(const Question &)> askHook;

/// Tells which window has the focus and gives it back; null while there is nobody to ask.
extern WindowSystem *questionWindows;

} // namespace mevo
