#include "ui/MicTipDialog.h"

#include "audio/LevelMeter.h"
#include "session/SessionMachine.h"
#include "session/VoiceModes.h"
#include "state/MainState.h"
#include "ui/Picture.h"
#include "ui/TipWindowHost.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int longPressMs = 300;
constexpr int highestLevelPicture = 6;
MicTipDialog *theDialog = nullptr;

/// One status button: its mode, its pictures and its texts.
struct StatusButton
{
    const char *name;
    QRect geometry;
    const char *picture;
    std::atomic<bool> SessionState::*mode;
    const char *onText;
    const char *hoverText;
    void (MicTipDialog::*slot)();
};

const StatusButton statusButtons[] = {
    {"pushButton_VoiceStatus", QRect(QPoint(3, 5), QPoint(15, 17)), ":/rec/VoiceStatus.png",
     &SessionState::VoiceTypeMode, QT_TRANSLATE_NOOP("MicTipDialog", "语音打字模式已打开"),
     QT_TRANSLATE_NOOP("MicTipDialog", "点击进入语音打字模式"),
     &MicTipDialog::pushButton_VoiceStatus_clicked},
    {"pushButton_CommandStatus", QRect(QPoint(32, 5), QPoint(44, 17)), ":/rec/CommandStatus.png",
     &SessionState::VoiceCommandWordMode, QT_TRANSLATE_NOOP("MicTipDialog", "语音命令词模式已打开"),
     QT_TRANSLATE_NOOP("MicTipDialog", "点击进入语音命令词模式"),
     &MicTipDialog::pushButton_CommandStatus_clicked},
    // "搜素" is how the text has always read.
    {"pushButton_SearchStatus", QRect(QPoint(62, 5), QPoint(74, 17)), ":/rec/SearchStatus.png",
     &SessionState::VoiceSearchMode, QT_TRANSLATE_NOOP("MicTipDialog", "语音搜索模式已打开"),
     QT_TRANSLATE_NOOP("MicTipDialog", "点击进入语音搜素模式"),
     &MicTipDialog::pushButton_SearchStatus_clicked},
};

QString statusStyle(const QString &picture)
{
    return QStringLiteral("QPushButton{border-image: url(%1);}"
                          "QPushButton:hover{border-image: url(:/rec/StatusMouseHover.png);}"
                          "QPushButton:pressed{border-image: url(:/rec/StatusMouseHover.png);}")
        .arg(picture);
}

} // namespace

MicTipDialog::MicTipDialog(MainState &state, mevo::TipWindowHost &host, QWidget *parent)
    : QDialog(parent,
              Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , m_state(state)
    , m_host(host)
{
    theDialog = this;
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(QStringLiteral("MicTip"));
    setAccessibleName(tr("麦克风"));
    setFixedSize(149, 170);
    setStyleSheet(QStringLiteral(
        "QToolTip { font: 16pt;color: #ffffff; background-color: #2a82da; border: 1px solid white; }"));
    for (std::size_t i = 0; i < std::size(statusButtons); ++i) {
        const StatusButton &row = statusButtons[i];
        auto *button = new QPushButton(this);
        button->setObjectName(QLatin1String(row.name));
        button->setGeometry(row.geometry);
        button->setFocusPolicy(Qt::NoFocus);
        button->setAccessibleName(tr(row.hoverText));
        button->installEventFilter(this);
        connect(button, &QPushButton::clicked, this, row.slot);
        m_buttons[i] = button;
    }
    setPicture(QLatin1String(mevo::pictures::micIdle));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    move(screen.left() + screen.width() - 449, screen.top() + screen.height() - 199);
}

MicTipDialog::~MicTipDialog()
{
    theDialog = nullptr;
}

MicTipDialog *MicTipDialog::instance()
{
    return theDialog;
}

void MicTipDialog::setPicture(const QString &picture)
{
    if (picture == m_picture) {
        return;
    }
    m_picture = picture;
    // The level changes with every block of sound, and reading a picture costs more than all the rest.
    auto cached = m_pictures.find(picture);
    if (cached == m_pictures.end()) {
        cached = m_pictures.insert(picture, mevo::picture(picture));
    }
    m_pixmap = *cached;
    update();
}

void MicTipDialog::setButtonsVisible(bool visible)
{
    for (QPushButton *button : m_buttons) {
        button->setVisible(visible);
    }
}

void MicTipDialog::UpdataMicWin(QString rec)
{
    if (rec == QLatin1String(mevo::pictures::micIdle)) {
        setButtonsVisible(true);
    }
    setPicture(rec);
}

void MicTipDialog::endLatch()
{
    if (m_state.MicLatched.exchange(false)) {
        setButtonsVisible(true);
        UpdataMicWin(QLatin1String(mevo::pictures::micIdle));
    }
}

void MicTipDialog::showLongPress()
{
    LongPressed = true;
    show();
    setPicture(QLatin1String(mevo::pictures::micActive));
}

void MicTipDialog::showMicVolume(QByteArray mVoiceBuffer, int iVolumeValue)
{
    if (iVolumeValue < 1) {
        return;
    }
    MicVolumePeak = mevo::meterPeak(mVoiceBuffer, iVolumeValue, MicVolumeGain);
    const int level = mevo::meterLevel(MicVolumePeak, m_host.isXpClass());
    if (level != MicVolumeLevel) {
        setPicture(QStringLiteral(":/rec/%1Recorder%2.png")
                       .arg(m_state.MicLatched ? QStringLiteral("Right_") : QString())
                       .arg(std::min(level, highestLevelPicture)));
    }
    MicVolumeLevel = mevo::meterLevel(MicVolumePeak, false);
}

void MicTipDialog::UpdateStatusButtons()
{
    if (!m_state.VoiceCommandWordMode && !m_state.VoiceSearchMode) {
        m_state.VoiceTypeMode = true;
    }
    for (std::size_t i = 0; i < std::size(statusButtons); ++i) {
        const StatusButton &row = statusButtons[i];
        const bool on = m_state.*row.mode;
        m_buttons[i]->setStyleSheet(
            statusStyle(on ? QLatin1String(row.picture) : QStringLiteral(":/rec/DisableStatus.png")));
        m_buttons[i]->setToolTip(on ? tr(row.onText) : QString());
        if (on && isVisible()) {
            QToolTip::showText(pos(), tr(row.onText), this, QRect(), 3000);
        }
    }
}

void MicTipDialog::CallMicDlgFunctionSlot(int iFuncIndex)
{
    switch (mevo::changeModeByKey(m_state, iFuncIndex)) {
    case mevo::ModeChange::None:
        return;
    case mevo::ModeChange::TranslationOpened:
        Q_EMIT CreateTransDlgSignal();
        break;
    case mevo::ModeChange::Changed:
        break;
    }
    UpdateStatusButtons();
}

void MicTipDialog::chooseMode(std::atomic<bool> SessionState::*mode, const char *name)
{
    mevo::enterMode(m_state, mode);
    qInfo("Voice mode: %s, by a click", name);
    UpdateStatusButtons();
}

void MicTipDialog::pushButton_VoiceStatus_clicked()
{
    chooseMode(&SessionState::VoiceTypeMode, "typing");
}

void MicTipDialog::pushButton_CommandStatus_clicked()
{
    chooseMode(&SessionState::VoiceCommandWordMode, "command");
}

void MicTipDialog::pushButton_SearchStatus_clicked()
{
    chooseMode(&SessionState::VoiceSearchMode, "search");
}

void MicTipDialog::pushButton_TransStatus_clicked()
{
    m_state.VoiceTranslateMode = true;
    Q_EMIT CreateTransDlgSignal();
    UpdateStatusButtons();
}

void MicTipDialog::emitReport(int key, bool pressed)
{
    std::fill(std::begin(m_report), std::end(m_report), char(0));
    m_report[0] = 1;
    m_report[1] = static_cast<char>(mevo::keyReportMarker);
    m_report[2] = static_cast<char>(key);
    m_report[3] = pressed ? 1 : 0;
    m_report[15] = 1;
    Q_EMIT returnMouseKeyResult(m_report);
}

bool MicTipDialog::MicStart()
{
    if (m_state.deviceOpen() && !m_host.sendMicrophoneLatch(true)) {
        return false;
    }
    emitReport(mevo::KeyVoiceTyping, true);
    if (m_state.Recording) {
        return true;
    }
    if (m_state.DeviceConnected) {
        m_host.sendMicrophoneLatch(false); // the press was not taken, as after presses that were too short
    }
    return false;
}

void MicTipDialog::micStop(int latchReports)
{
    if (m_state.DeviceConnected) {
        m_host.flushUsageCounters();
        for (int i = 0; i < latchReports; ++i) {
            m_host.sendMicrophoneLatch(false);
        }
    }
    emitReport(mevo::KeyVoice, false);
}

void MicTipDialog::Mic_Longpressed()
{
    m_host.saveFocusWindow();
    m_longPress->stop();
    LongPressed = true; // the start asks for the window as that of a long press
    LongPressed = MicStart();
}

void MicTipDialog::endLatchedSession()
{
    if (!m_state.Recording) {
        return; // it has ended, and its text is on the way: that takes the latch off
    }
    const QPointer<MicTipDialog> self(this);
    const int latch = m_latches;
    LongPressed = false; // the press that opened the window stands for one, whichever button it was
    micStop();           // recognition may wait in an event loop
    // Without a text nothing else would take the latch off, which keeps the device's keys away.
    if (!self.isNull() && latch == m_latches) {
        endLatch();
    }
}

void MicTipDialog::toggleLatch()
{
    if (!m_state.MicLatched) {
        ++m_latches;
        m_host.saveFocusWindow();
        m_state.MicLatched = true;
        if (MicStart()) {
            setButtonsVisible(false);
        } else {
            m_state.MicLatched = false; // nothing was started, and a latch keeps the device's keys away
        }
        return;
    }
    if (m_state.KeyUpHeld) {
        return;
    }
    m_state.MicLatched = false;
    LongPressed = false;
    micStop(2); // the device wants to hear it twice
}

void MicTipDialog::mousePressEvent(QMouseEvent *event)
{
    if (m_state.ClickCanASR && event->button() == Qt::RightButton) {
        m_latchedAt = event->globalPos();
        toggleLatch();
        return;
    }
    if (event->button() != Qt::LeftButton || (m_state.ClickCanASR && m_state.MicLatched)) {
        return;
    }
    m_dragFrom = event->globalPos();
    MouseDown = true;
    if (!m_state.ClickCanASR) {
        return;
    }
    setPicture(QLatin1String(mevo::pictures::micActive));
    LongPressed = false;
    if (m_longPress == nullptr) {
        m_longPress = new QTimer(this);
        connect(m_longPress, &QTimer::timeout, this, &MicTipDialog::Mic_Longpressed);
    }
    m_longPress->start(longPressMs);
}

void MicTipDialog::mouseMoveEvent(QMouseEvent *event)
{
    // A hand that holds a button trembles; that is no wish to end the session.
    constexpr int tremble = 4;
    if (m_state.ClickCanASR && m_state.MicLatched) {
        const bool ofTheClick = event->buttons() == Qt::RightButton;
        if (!ofTheClick || (event->globalPos() - m_latchedAt).manhattanLength() >= tremble) {
            endLatchedSession();
        }
        return;
    }
    if (m_state.ClickCanASR && MouseDown && LongPressed) {
        if ((event->globalPos() - m_dragFrom).manhattanLength() < tremble) {
            return;
        }
        LongPressed = false;
        micStop();
        return;
    }
    if (!MouseDown || !(event->buttons() & Qt::LeftButton)) {
        return;
    }
    move(pos() + event->globalPos() - m_dragFrom);
    m_dragFrom = event->globalPos();
    if (m_state.ClickCanASR) {
        LongPressed = false;
        if (m_longPress != nullptr) {
            m_longPress->stop();
        }
    }
}

void MicTipDialog::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_state.ClickCanASR) {
        MouseDown = false;
        return;
    }
    if (m_state.MicLatched || event->button() != Qt::LeftButton) {
        return;
    }
    MouseDown = false;
    if (m_longPress != nullptr) {
        m_longPress->stop();
    }
    if (LongPressed) {
        LongPressed = false;
        micStop();
    }
}

void MicTipDialog::enterEvent(QEvent *event)
{
    QDialog::enterEvent(event);
    if (!m_state.MicLatched) {
        setPicture(QLatin1String(mevo::pictures::micActive));
    }
}

void MicTipDialog::leaveEvent(QEvent *event)
{
    QDialog::leaveEvent(event);
    if (!m_state.MicLatched) {
        setPicture(QLatin1String(mevo::pictures::micIdle));
    }
}

void MicTipDialog::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    QToolTip::hideText(); // it lies over the bar's buttons and takes their clicks
    // A latched session would have nothing left to end it by. Later, for who hides the window may be in the
    // middle of a key's handling.
    QTimer::singleShot(0, this, [this] {
        if (!isVisible() && m_state.MicLatched && m_state.Recording) {
            endLatchedSession();
        }
    });
}

bool MicTipDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Enter) {
        const auto *enter = static_cast<QEnterEvent *>(event);
        for (std::size_t i = 0; i < std::size(statusButtons); ++i) {
            if (watched == m_buttons[i]) {
                QToolTip::showText(enter->globalPos(), tr(statusButtons[i].hoverText), this);
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

void MicTipDialog::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_pixmap);
}
