#pragma once

#include "ui/FirstStart.h"

#include <QDialog>

class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QScrollArea;

/// Tells a new user what works and what is missing, leads to what helps, and has a line to try a dictation
/// in.
class FirstStartDialog : public QDialog
{
    Q_OBJECT

public:
    explicit FirstStartDialog(QWidget *parent = nullptr);

    /// What it shows; nothing is built anew while that stays the same.
    void setFacts(const mevo::FirstStartFacts &facts);

Q_SIGNALS:
    void helpWanted(mevo::FirstStartHelp help);

private:
    static QLabel *makeMark(mevo::FirstStartLine::State state);
    void showRule();
    /// As large as its content, or as the screen lets it be, and on the screen. The content scrolls then.
    void fit();

    QScrollArea *m_area;
    QGridLayout *m_lines;
    QWidget *m_rule;
    QLineEdit *m_trial;
    QStringList m_shown; ///< the lines' texts
};
