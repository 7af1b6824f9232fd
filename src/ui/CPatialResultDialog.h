#pragma once

#include <QDialog>

class QLineEdit;

/// The strip that shows partial results while the user speaks. It never takes the focus.
class CPatialResultDialog : public QDialog
{
    Q_OBJECT

public:
    explicit CPatialResultDialog(QWidget *parent = nullptr);

    void setText(const QString &text);
    QString text() const { return m_text; }

public Q_SLOTS:
    void on_lineEdit_PatialResult_textChanged(QString text);

private:
    QLineEdit *m_line;
    QString m_text;
};
