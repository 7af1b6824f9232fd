#include "ui/translation/CTransTipDialog.h"

#include "translation/TranslationLanguages.h"
#include "ui/OwnWidget.h"
#include "ui/Picture.h"
#include "ui/ScreenWatch.h"
#include "ui/translation/SendChoices.h"
#include "ui/translation/TransFace.h"
#include "ui/translation/TransPlace.h"
#include "ui/translation/TransWindowHost.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDebug>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr int translateSoonMs = 1; ///< the change of the text has ended by then
constexpr int readSoonMs = 200;
constexpr int lookAgainMs = 100; ///< while a recognised text is being dealt with

std::vector<QRect> workAreas()
{
    std::vector<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        screens.push_back(screen->availableGeometry());
    }
    return screens;
}

} // namespace

mevo::WindowId CTransTipDialog::LastForeground = 0;
mevo::WindowId CTransTipDialog::LastOtherForeground = 0;

CTransTipDialog::CTransTipDialog(mevo::TransWindowHost &host, QWidget *parent)
    : QDialog(parent,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , m_host(host)
    , m_face(std::make_unique<mevo::TransFace>(this))
{
    setObjectName(QStringLiteral("CTransTipDialog"));
    setWindowTitle(QStringLiteral("TransTip")); // seen by nobody; tools find the window by it
    setAccessibleName(tr("翻译窗口"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_translateSoon.setSingleShot(true);
    m_translateSoon.callOnTimeout(this, &CTransTipDialog::TansTimerTimeout);
    m_sendLater.setSingleShot(true);
    m_sendLater.callOnTimeout(this, &CTransTipDialog::onIntervelSendResultTimeout);

    fillLists();
    loadSettings();
    m_face->label_SourceLan->installEventFilter(this);
    m_face->label_DestLan->installEventFilter(this);
    m_face->textEdit_SourceLan->installEventFilter(this);
    m_face->textEdit_SourceLan->viewport()->installEventFilter(this);
    showPair();
    showBackground();
    QMetaObject::connectSlotsByName(this);
    m_constructed = true;
    HandleGetForeWin();
    mevo::watchScreens(this, [this] { keepOnScreen(); });
}

CTransTipDialog::~CTransTipDialog() = default;

void CTransTipDialog::placeAt(const QRect &bar)
{
    move(mevo::transWindowMiddle(workAreas(), bar, size()));
}

void CTransTipDialog::keepOnScreen()
{
    const QPoint place = mevo::transWindowInside(workAreas(), geometry());
    if (place != pos()) {
        move(place);
    }
}

// Texts in, translations out.

void CTransTipDialog::showRecText(QString text)
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    HandleGetForeWin();
    const mevo::SpokenText sentence{text, m_host.sentenceSession()};
    if (!DialogClosing && m_turns.takeSentence(sentence)) {
        showSentence(sentence);
    }
}

void CTransTipDialog::showSentence(const mevo::SpokenText &sentence)
{
    showSource(sentence.text, Origin::Spoken, sentence.session.pressWindow);
    m_session = sentence.session;
}

void CTransTipDialog::showSource(const QString &text, Origin origin, mevo::WindowId own)
{
    if (m_readTimer != -1) {
        readNow(); // what is shown, before something else is
    }
    if (origin == Origin::Copied && m_spoken && m_turns.isBusy()) {
        m_host.keepText(m_face->textEdit_SourceLan->toPlainText()); // its answer comes too late
    }
    m_own = own;
    const QScopedValueRollback<Origin> setting(m_origin, origin);
    m_face->textEdit_SourceLan->setPlainText(text);
}

void CTransTipDialog::on_textEdit_SourceLan_textChanged()
{
    const QString failed = std::exchange(m_failedSentence, QString());
    if (!failed.isEmpty() && m_origin != Origin::Typed) { // else the user corrects it
        m_host.keepText(failed);
    }
    SelectedText.clear();
    m_spoken = m_origin == Origin::Spoken;
    if (m_origin == Origin::Typed) {
        m_own = 0;
    }
    m_turns.textChanged(m_face->textEdit_SourceLan->document()->isEmpty());
    m_translateSoon.start(translateSoonMs);
}

void CTransTipDialog::TansTimerTimeout()
{
    if (DialogClosing || m_unsentTaken) {
        return;
    }
    if (!m_turns.beginRequest()) {
        if (const std::optional<mevo::SpokenText> next = m_turns.nextSentence()) {
            showSentence(*next);
        }
        return;
    }
    const bool spoken = m_spoken;
    const QString text = m_face->textEdit_SourceLan->toPlainText();
    const QPointer<CTransTipDialog> self(this);
    const QPair<bool, QString> answer = m_host.translate(text, DelimitMode ? DestLan_Delimit : DestLan,
                                                         DelimitMode ? SourceLan_Delimit : SourceLan);
    if (self.isNull() || DialogClosing || m_unsentTaken) {
        return; // the wait has let the user close the window, or leave the program
    }
    const bool current = m_turns.endRequest();
    m_translateSoon.start(translateSoonMs); // for what has come meanwhile
    if (!answer.first) {
        qInfo() << "Translation: no answer that can be shown";
        if (current && spoken) {
            translationFailed(text);
        }
    } else if (current) {
        showTranslation(answer.second, spoken);
    }
}

/// Nobody translates the sentence any more; until another text comes, it can be seen and corrected.
void CTransTipDialog::translationFailed(const QString &sentence)
{
    if (SendTransResult2ScreenMode == mevo::sendAtOnce) {
        m_host.keepText(sentence); // nobody looks at the window
    } else {
        m_failedSentence = sentence;
    }
}

void CTransTipDialog::showTranslation(const QString &text, bool spoken)
{
    if (spoken && m_spokenUnsent && SendTransResult2ScreenMode != mevo::sendByHand && m_host.resultIdle()) {
        sendTranslation(Sent::ByItself); // the sentence before this one, which else would never be typed
    }
    keepUnsentTranslation();
    if (m_readTimer != -1 && m_translatedSession) {
        readNow(); // while a text is being typed, only its end is read
    }
    m_face->textEdit_DestLan->setPlainText(text);
    m_translatedSession = spoken ? std::make_optional(m_session) : std::nullopt;
    m_translatedOwn = m_own;
    qInfo("Translation: shown, %d characters", text.size()); // never the text itself
    m_spokenUnsent = spoken;
    switch (mevo::afterTranslation(SendTransResult2ScreenMode, m_host.resultIdle())) {
    case mevo::AfterTranslation::SendNow:
        sendTranslation(Sent::ByItself);
        break;
    case mevo::AfterTranslation::HideFirst:
        hide();
        m_sendLater.start(lookAgainMs);
        break;
    case mevo::AfterTranslation::Wait:
        m_sendLater.start(SendTransResult2ScreenMode * 1000); // one at a time, so that nothing is typed twice
        break;
    }
    if (m_readTimer != -1) {
        killTimer(m_readTimer);
    }
    m_readTimer = startTimer(readSoonMs, Qt::CoarseTimer);
}

/// Another text takes the place of a translation that would have been typed by itself: the cursor is in the
/// source pane, a question has the keyboard, or typing it now would replace what is selected.
void CTransTipDialog::keepUnsentTranslation()
{
    const QString text = m_face->textEdit_DestLan->toPlainText();
    if (std::exchange(m_spokenUnsent, false) && SendTransResult2ScreenMode != mevo::sendByHand &&
        !text.isEmpty()) {
        m_host.keepText(text);
    }
}

void CTransTipDialog::onIntervelSendResultTimeout()
{
    if (SendTransResult2ScreenMode == mevo::sendByHand) {
        return; // by the button alone, however long it stands there
    }
    if (m_host.resultIdle()) {
        sendTranslation(Sent::ByItself);
    } else {
        m_sendLater.start(lookAgainMs);
    }
}

void CTransTipDialog::on_pushButton_TransSend_clicked()
{
    sendTranslation(Sent::ByHand);
}

/// By itself it goes where the text came from, whatever the user does there by then; by hand to where the
/// user works now.
void CTransTipDialog::sendTranslation(Sent how)
{
    if (SourceHasFocus) {
        return; // the user is typing here
    }
    m_sendLater.stop();
    m_spokenUnsent = false;
    setFocus(Qt::OtherFocusReason);
    const mevo::WindowId front = windowToReturnTo(how);
    m_host.neverTakeFocus();
    const bool atOnce = SendTransResult2ScreenMode == mevo::sendAtOnce;
    if (atOnce) {
        hide();
    }
    const QString text = m_face->textEdit_DestLan->toPlainText();
    if (!text.isEmpty()) {
        const bool byHand = how == Sent::ByHand;
        m_host.typeText({text, front, byHand ? 0 : m_translatedOwn, m_translatedSession, byHand});
    }
    if (!atOnce) {
        show();
    }
}

void CTransTipDialog::trigerSendMenu(QAction *action)
{
    SendTransResult2ScreenMode = action->data().toInt();
    write("SendTransResult2ScreenMode", SendTransResult2ScreenMode);
    m_face->pushButton_TransSendSet->setText(action->text());
    if (m_sendLater.isActive()) {
        m_sendLater.start(SendTransResult2ScreenMode * 1000); // what waits is meant as well
    }
    if (SendTransResult2ScreenMode == mevo::sendAtOnce) {
        m_host.tell(tr("立即上屏"), tr("如关闭立即上屏功能，请重新打开翻译窗口并关闭"));
    }
}

QStringList CTransTipDialog::takeUnsent()
{
    QStringList unsent;
    for (const mevo::SpokenText &spoken : takeUntold()) {
        unsent.append(spoken.text);
    }
    return unsent;
}

std::vector<mevo::SpokenText> CTransTipDialog::takeUntold()
{
    std::vector<mevo::SpokenText> untold;
    const auto add = [&untold](const QString &text, const mevo::SessionContext &session) {
        if (!text.isEmpty()) { // as is a pane that was cleared
            untold.push_back({text, session});
        }
    };
    m_unsentTaken = true;
    m_translateSoon.stop();
    m_sendLater.stop();
    if (std::exchange(m_spokenUnsent, false)) {
        add(m_face->textEdit_DestLan->toPlainText(), m_translatedSession.value_or(m_session));
    }
    add(std::exchange(m_failedSentence, QString()), m_session);
    if (std::exchange(m_spoken, false) && m_turns.isBusy()) {
        add(m_face->textEdit_SourceLan->toPlainText(), m_session);
    }
    for (const mevo::SpokenText &sentence : m_turns.takeWaiting()) {
        add(sentence.text, sentence.session);
    }
    return untold;
}

// The windows of other programs, and who has the keyboard.

void CTransTipDialog::HandleGetForeWin()
{
    LastForeground = m_host.foregroundWindow();
    if (LastForeground != 0 && !mevo::isOwnWindow(LastForeground)) {
        LastOtherForeground = LastForeground;
    }
}

mevo::WindowId CTransTipDialog::windowToReturnTo(Sent how)
{
    HandleGetForeWin();
    const bool leaves = how == Sent::ByHand ? mevo::isOwnWindow(LastForeground) : LastForeground == winId();
    return leaves ? LastOtherForeground : 0;
}

// Selections in other windows.

void CTransTipDialog::ProcessResult(char *)
{
    if (!DelimitMode || DialogClosing) {
        return;
    }
    m_host.copySelection(false, windowToReturnTo(Sent::ByHand),
                         [this](const QString &text, mevo::WindowId from) {
                             if (text.isEmpty()) {
                                 on_pushButton_SelectDelimit_clicked();
                             } else {
                                 showSource(text, Origin::Copied, from);
                             }
                         });
}

void CTransTipDialog::on_pushButton_SelectDelimit_clicked()
{
    if (!SelectedText.isEmpty()) {
        showSource(QString(SelectedText), Origin::Copied); // which clears the member
        return;
    }
    keepUnsentTranslation();
    showSource(QString(), Origin::Copied);
    m_face->textEdit_DestLan->clear();
    m_host.clearClipboard();
    m_face->checkBox_Delimit_Translation->setChecked(true);
    const QPointer<CTransTipDialog> self(this);
    enterDelimitMode(true);
    if (self.isNull() || DialogClosing) {
        return; // a session that ended there was waited for
    }
    setFocus(Qt::OtherFocusReason);
    const mevo::WindowId front = windowToReturnTo(Sent::ByHand);
    m_host.neverTakeFocus();
    m_host.copySelection(true, front, [this](const QString &text, mevo::WindowId from) {
        m_copied = text;
        m_copiedFrom = from;
        onSelectDelimitTimeout();
    });
}

void CTransTipDialog::onSelectDelimitTimeout()
{
    m_host.neverTakeFocus();
    showSource(std::exchange(m_copied, QString()), Origin::Copied, std::exchange(m_copiedFrom, 0));
}

void CTransTipDialog::on_checkBox_Delimit_Translation_clicked(bool checked)
{
    const QPointer<CTransTipDialog> self(this);
    enterDelimitMode(checked);
    if (!self.isNull() && !DialogClosing && checked) {
        m_host.tell(tr("禁用语音"), tr("进入划词翻译状态下，语音输入将被禁止！"));
    }
}

void CTransTipDialog::enterDelimitMode(bool on)
{
    DelimitMode = on;
    showPair();
    showBackground();
    m_host.setDelimitTranslation(on); // last: it may wait, and the window close meanwhile
}

void CTransTipDialog::on_textEdit_SourceLan_selectionChanged()
{
    SelectedText = m_face->textEdit_SourceLan->textCursor().selection().toPlainText();
}

void CTransTipDialog::on_textEdit_DestLan_selectionChanged()
{
    SelectedText = m_face->textEdit_DestLan->textCursor().selection().toPlainText();
}

void CTransTipDialog::on_pushButton_ClearTransSource_clicked()
{
    m_failedSentence.clear();
    m_face->textEdit_SourceLan->clear();
    m_host.clearClipboard();
    SelectedText.clear();
}

void CTransTipDialog::on_pushButton_ClearTransDest_clicked()
{
    m_face->textEdit_DestLan->clear();
    m_host.clearClipboard();
    SelectedText.clear();
}

// Reading aloud.

void CTransTipDialog::on_pushButton_SourceLan_tts_clicked()
{
    readAloud(mevo::Pane::Source);
}

void CTransTipDialog::on_pushButton_DestLan_tts_clicked()
{
    readAloud(mevo::Pane::Destination);
}

void CTransTipDialog::readAloud(mevo::Pane pane)
{
    const bool source = pane == mevo::Pane::Source;
    const QTextEdit *const edit = source ? m_face->textEdit_SourceLan : m_face->textEdit_DestLan;
    const QString selected = std::exchange(SelectedText, QString());
    mevo::PaneReading reading;
    reading.online = OnlineTTSFirst;
    reading.voice = {TTS_Speed, TTS_Tone, TTS_Volume, TTS_Reader};
    reading.language =
        source ? (DelimitMode ? SourceLan_Delimit : SourceLan) : (DelimitMode ? DestLan_Delimit : DestLan);
    m_host.readAloud(pane, selected.isEmpty() ? edit->toPlainText() : selected, reading);
}

/// Reads by itself what the settings ask for, whose time has come.
void CTransTipDialog::readNow()
{
    killTimer(m_readTimer);
    m_readTimer = -1;
    if (AutoReadSourceResult) {
        on_pushButton_SourceLan_tts_clicked();
    }
    if (AutoReadDestResult) {
        on_pushButton_DestLan_tts_clicked();
    }
}

// The end.

void CTransTipDialog::on_pushButton_TransClose_clicked()
{
    if (DialogClosing) {
        return;
    }
    std::vector<mevo::SpokenText> untold;
    if (SendTransResult2ScreenMode == mevo::sendByHand) {
        m_spokenUnsent = false; // the user has seen it, and has not sent it
        for (const QString &sentence : takeUnsent()) {
            m_host.keepText(sentence); // nothing is typed by itself
        }
    } else {
        untold = takeUntold();
    }
    m_face->textEdit_SourceLan->clear();
    m_face->textEdit_DestLan->clear();
    m_host.clearClipboard();
    m_host.closing(untold);
    retire();
    m_host.closed();
}

void CTransTipDialog::retire()
{
    DialogClosing = true;
    m_translateSoon.stop();
    m_sendLater.stop();
    if (m_readTimer != -1) {
        killTimer(m_readTimer);
        m_readTimer = -1;
    }
    m_host.stopReading();
    close();
}

void CTransTipDialog::closeEvent(QCloseEvent *event)
{
    if (DialogClosing) {
        QDialog::closeEvent(event);
        return;
    }
    event->ignore(); // what a window manager asks for is what the button does
    on_pushButton_TransClose_clicked();
}

void CTransTipDialog::reject()
{
    if (DialogClosing) {
        QDialog::reject();
        return;
    }
    // The escape key ends the typing in the source pane, no more.
    const mevo::WindowId front = windowToReturnTo(Sent::ByItself);
    setFocus(Qt::OtherFocusReason);
    if (front != 0) {
        m_host.giveFocusTo(front);
    }
}

// What is seen, and the mouse.

void CTransTipDialog::showPair()
{
    QLabel *const labels[] = {m_face->label_SourceLan, m_face->label_DestLan};
    const QString names[] = {mevo::languageLabel(DelimitMode ? SourceLan_Delimit : SourceLan),
                             mevo::languageLabel(DelimitMode ? DestLan_Delimit : DestLan)};
    const auto widthOf = [&](int one) {
        labels[one]->ensurePolished(); // its letters are bold
        return labels[one]->fontMetrics().horizontalAdvance(names[one]);
    };
    for (const int one : {0, 1}) {
        // A long name has the room that the other one leaves.
        const int room = std::max(mevo::languageNameWidth, 2 * mevo::languageNameWidth - widthOf(1 - one));
        labels[one]->setText(labels[one]->fontMetrics().elidedText(names[one], Qt::ElideRight, room));
    }
}

void CTransTipDialog::showBackground()
{
    if (!ShowSetTransLan) {
        m_background = mevo::picture(QStringLiteral(":/rec/transbk.png"));
    } else {
        m_background = mevo::picture(DelimitMode ? QStringLiteral(":/rec/transbk_set_delimit.png")
                                                 : QStringLiteral(":/rec/transbk_set.png"));
    }
    setFixedSize(mevo::transWindowWidth,
                 ShowSetTransLan ? mevo::transWindowHeightOpen : mevo::transWindowHeight);
    update();
}

void CTransTipDialog::on_checkBox_ShowSetTransLan_clicked(bool checked)
{
    ShowSetTransLan = checked;
    m_face->settings->setVisible(checked);
    showBackground();
    keepOnScreen();
}

void CTransTipDialog::paintEvent(QPaintEvent *)
{
    QPainter(this).drawPixmap(0, 0, m_background);
}

bool CTransTipDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_face->textEdit_SourceLan) {
        if (event->type() == QEvent::FocusIn) {
            // A window that is shown tells its last pane so even without the keyboard.
            SourceHasFocus = m_face->textEdit_SourceLan->hasFocus();
        } else if (event->type() == QEvent::FocusOut &&
                   static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason) {
            SourceHasFocus = false;
            m_host.neverTakeFocus();
        }
    } else if (watched == m_face->textEdit_SourceLan->viewport()) {
        if (event->type() == QEvent::MouseButtonPress) {
            HandleGetForeWin();
            m_host.takeFocus();
        }
    } else if (event->type() == QEvent::MouseButtonPress) {
        swapLanguages();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void CTransTipDialog::mousePressEvent(QMouseEvent *event)
{
    m_dragging = event->button() == Qt::LeftButton;
    m_dragFrom = event->globalPos();
}

void CTransTipDialog::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragging && (event->buttons() & Qt::LeftButton)) {
        move(pos() + event->globalPos() - m_dragFrom);
        m_dragFrom = event->globalPos();
    }
}

void CTransTipDialog::mouseReleaseEvent(QMouseEvent *)
{
    m_dragging = false;
}

void CTransTipDialog::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_readTimer) {
        QDialog::timerEvent(event);
        return;
    }
    readNow();
}
