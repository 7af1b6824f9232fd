#pragma once

#include <QDialog>

class QTextBrowser;
class QTimer;

/// The tip window: shows an engine's message beside the main bar. It deletes itself on close; its owner
/// keeps a QPointer to it.
class QToolTips : public QDialog
{
    Q_OBJECT

public:
    explicit QToolTips(QWidget *parent = nullptr);

    /// Shows a text, standing 10 pixels to the left of `bar` (global), its bottom at the bar's top, as
    /// far as the screen allows.
    void showText(const QString &text, const QRect &bar);
    QString text() const;

public Q_SLOTS:
    void onMove() {}
    void onStay() {}
    void onClose() {}
    void on_checkBox_ShowTipsDlg_clicked(bool) {}

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QTextBrowser *m_browser;
    QTimer *m_hide;
};
