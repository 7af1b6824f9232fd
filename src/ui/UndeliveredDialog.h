#pragma once

#include "output/UndeliveredTexts.h"

#include <QDialog>

class QListWidget;
class QPushButton;

/// The list of the texts that no window has taken. It never takes the focus, so that the window which has it
/// can be the one to type a text into.
class UndeliveredDialog : public QDialog
{
    Q_OBJECT

public:
    explicit UndeliveredDialog(QWidget *parent = nullptr);

    /// Shows these texts; the selection stays at its place where it can.
    void setTexts(const std::vector<mevo::UndeliveredText> &texts);

Q_SIGNALS:
    /// The user wants the text at this index typed into the window that has the focus.
    void typeWanted(int index);
    void copyWanted(int index);
    void removeWanted(int index);
    void removeAllWanted();

private:
    QPushButton *addButton(const char *name, const QString &text);
    int selected() const;

    QListWidget *m_list;
    QPushButton *m_buttons[3] = {}; ///< those that act on the selected text
};
