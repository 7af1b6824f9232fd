#pragma once

#include <QDialog>

class QLineEdit;

/// The strip that shows partial results while the user speaks. It never takes the focus, is as wide as its
/// text and stays on the screen that it was placed on: there it moves left, and shows the text's end when
/// the screen is too narrow for all of it.
class CPatialResultDialog : public QDialog
{
    Q_OBJECT

public:
    explicit CPatialResultDialog(QWidget *parent = nullptr);

    /// Puts the top left corner at a point of the desktop, or as near as the screen allows.
    void placeAt(const QPoint &point);
    void setText(const QString &text);
    QString text() const { return m_text; }

public Q_SLOTS:
    void on_lineEdit_PatialResult_textChanged(QString text);

private:
    void resizeWidth(int width);

    QLineEdit *m_line;
    QString m_text;
    QPoint m_place;
};
