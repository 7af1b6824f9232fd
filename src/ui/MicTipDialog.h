#pragma once

#include "session/KeyReport.h"

#include <QDialog>
#include <QHash>
#include <QPixmap>

#include <atomic>

struct MainState;
struct SessionState;
class QPushButton;
class QTimer;

namespace mevo {
class TipWindowHost;
}

/// The small picture that shows the microphone and its level during a session, with three buttons for
/// the voice modes. Where the device record allows it, it is a talk button as well: a long press talks,
/// a right click latches. It never takes the focus.
class MicTipDialog : public QDialog
{
    Q_OBJECT

public:
    MicTipDialog(MainState &state, mevo::TipWindowHost &host, QWidget *parent = nullptr);
    ~MicTipDialog() override;

    /// The one instance, null when there is none.
    static MicTipDialog *instance();

    /// Shows the voice mode flags on the buttons. With neither commands nor search on, typing is on.
    void UpdateStatusButtons();
    /// Ends the latch, when it is set, and shows the buttons again.
    void endLatch();
    /// Shows the window as a long press of its own does.
    void showLongPress();
    /// Path of the picture shown now.
    QString picture() const { return m_picture; }
    int level() const { return MicVolumeLevel; }

Q_SIGNALS:
    /// A key report of 16 bytes; the buffer holds until the next one.
    void returnMouseKeyResult(char *report);
    void CallParentTimer();
    void CreateTransDlgSignal();
    void CallMainFunctionSignal(int iFuncIndex);

public Q_SLOTS:
    /// Changes the voice mode for a key: 1 type, 2 translate, 6 command, 14 search.
    void CallMicDlgFunctionSlot(int iFuncIndex);
    /// Shows a picture, a path below ":/rec/".
    void UpdataMicWin(QString rec);
    void Mic_Longpressed();
    /// Shows the peak of a block of samples; `iVolumeValue` is its length in bytes.
    void showMicVolume(QByteArray mVoiceBuffer, int iVolumeValue);
    void pushButton_VoiceStatus_clicked();
    void pushButton_CommandStatus_clicked();
    void pushButton_TransStatus_clicked();
    void pushButton_SearchStatus_clicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setPicture(const QString &picture);
    void setButtonsVisible(bool visible);
    /// False when the device refused its latch or the press was not taken: then nothing has started.
    bool MicStart();
    void micStop(int latchReports = 1);
    void chooseMode(std::atomic<bool> SessionState::*mode, const char *name);
    void emitReport(int key, bool pressed);
    void toggleLatch();
    void endLatchedSession();

    MainState &m_state;
    mevo::TipWindowHost &m_host;
    QTimer *m_longPress = nullptr;
    QPushButton *m_buttons[3] = {};
    QPixmap m_pixmap;
    QHash<QString, QPixmap> m_pictures; ///< those shown so far
    QString m_picture;
    QPoint m_dragFrom;
    QPoint m_latchedAt;
    int m_latches = 0; ///< latches begun so far
    bool LongPressed = false;
    bool MouseDown = true;
    int MicVolumePeak = 0;
    int MicVolumeGain = 20;
    int MicVolumeLevel = 0;
    char m_report[mevo::keyReportSize] = {};
};
