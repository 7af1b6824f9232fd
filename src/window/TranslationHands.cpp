#include "window/TranslationHands.h"

#include "output/SendPlan.h"
#include "translation/OnlineReading.h"
#include "translation/Trans.h"
#include "translation/WXTextSpeech.h"
#include "ui/Ask.h"
#include "ui/CompanionWindow.h"
#include "ui/MicTipDialog.h"
#include "ui/OwnWidget.h"
#include "ui/translation/CTransTipDialog.h"
#include "window/MainWindow.h"
#include "window/SelectionCopy.h"

#include <QApplication>
#include <QDebug>
#include <QScopedValueRollback>
#include <QTimer>

#include <utility>

namespace mevo {

TranslationHands::TranslationHands(MainWindow &window)
    : m_window(window)
{
}

TranslationHands::~TranslationHands() = default;

bool TranslationHands::exists() const
{
    return !m_dialog.isNull();
}

bool TranslationHands::isVisible() const
{
    return exists() && m_dialog->isVisible();
}

bool TranslationHands::isClosing() const
{
    return exists() && m_dialog->isClosing();
}

bool TranslationHands::takesKeys() const
{
    return exists() && !m_dialog->sourceHasFocus();
}

bool TranslationHands::create()
{
    if (m_window.isLeaving()) {
        return false;
    }
    Platform &platform = m_window.m_platform;
    const qint64 began = platform.time->monotonicMs();
    m_translator = std::make_shared<Trans>(m_window, *m_window.m_webApi, *this, m_window.m_endpoints);
    m_onlineReading = std::make_unique<OnlineReading>(
        m_window, m_window.m_endpoints, *platform.time, *platform.notifications,
        [&inputs = *platform.soundInputs] { return makeSoundPlayer(inputs); });
    m_systemVoice = std::make_unique<WXTextSpeech>(*platform.speech, *platform.notifications);
    m_selectionCopy =
        std::make_unique<SelectionCopy>(platform, [this] { return m_window.SendCopyCombination(); });
    m_dialog = new CTransTipDialog(*this, &m_window);
    new CompanionWindow(m_dialog, *platform.ownWindows);
    m_dialog->placeAt(m_window.frameGeometry());
    QObject::connect(&m_window, &MainWindow::showRecTextOnTransDlgSignal, m_dialog,
                     &CTransTipDialog::showRecText);
    m_window.DelimitTranslation = m_dialog->delimitMode();
    qInfo("Translation window: made in %d ms", int(platform.time->monotonicMs() - began));
    return true;
}

void TranslationHands::show()
{
    if (exists()) {
        m_dialog->show();
        m_dialog->raise();
    }
}

void TranslationHands::destroy()
{
    if (exists()) {
        m_dialog->on_pushButton_TransClose_clicked();
    }
}

void TranslationHands::showSentence(const QString &text, const SessionContext &session)
{
    const QScopedValueRollback<const SessionContext *> shown(m_sentence, &session);
    Q_EMIT m_window.showRecTextOnTransDlgSignal(text);
}

SessionContext TranslationHands::sentenceSession() const
{
    return m_sentence != nullptr ? *m_sentence : m_window.contextNow();
}

void TranslationHands::keyPressed(char *report)
{
    if (exists() && !m_window.isLeaving()) {
        m_dialog->ProcessResult(report);
    }
}

QStringList TranslationHands::takeUnsent()
{
    QStringList unsent;
    for (const OnTheWay &text : std::exchange(m_onTheWay, {})) {
        unsent.append(text.translation.text);
    }
    m_bringing = false;
    return exists() ? unsent + m_dialog->takeUnsent() : unsent;
}

void TranslationHands::retire()
{
    if (exists()) {
        m_window.DelimitTranslation = false;
        m_window.VoiceTranslateMode = false;
        m_dialog->retire();
        closed();
    }
}

QPair<bool, QString> TranslationHands::translate(const QString &text, const QString &to, const QString &from)
{
    const std::shared_ptr<Trans> translator = m_translator; // the window may close meanwhile
    return translator != nullptr ? translator->translate(text, to, from) : qMakePair(false, QString());
}

bool TranslationHands::resultIdle() const
{
    return m_window.ResultIdle && QApplication::activeModalWidget() == nullptr; // a box has the keyboard
}

WindowId TranslationHands::foregroundWindow()
{
    return m_window.m_platform.windowSystem->foregroundWindow();
}

void TranslationHands::typeText(const SentTranslation &translation)
{
    if (m_window.m_sessionsFinished) {
        m_window.keepForNextRun(translation.text);
        return;
    }
    m_onTheWay.push_back({++m_texts, translation});
    typeNext();
}

/// One at a time: the window of a later one may come faster.
void TranslationHands::typeNext()
{
    if (m_bringing || m_onTheWay.empty()) {
        return;
    }
    m_bringing = true;
    const OnTheWay &first = m_onTheWay.front();
    whenInFront(first.translation.front, [this, number = first.number](bool there) {
        if (m_onTheWay.empty() || m_onTheWay.front().number != number) {
            return; // an exit has taken it back
        }
        const OnTheWay text = std::move(m_onTheWay.front());
        m_onTheWay.pop_front();
        deliver(text.translation, there);
        m_bringing = false;
        typeNext();
    });
}

void TranslationHands::deliver(const SentTranslation &translation, bool there)
{
    // One with a window of its own is posted there, whichever has the focus.
    if (translation.own == 0 && (!there || !somebodyTakesKeys())) {
        m_window.keepUndelivered(translation.text, there ? PostStop::Gone : PostStop::FocusRefused);
        return;
    }
    SessionContext context = translationContext(translation.session.value_or(m_window.contextNow()),
                                                translation.session.has_value(), translation.byHand);
    // The paste key waits until the receiver is free, and must find the same window then.
    context.window = translation.own != 0 ? translation.own : m_window.focusedElsewhere();
    m_window.sendToScreen(translation.text, context, context.window);
}

/// Not where a box of ours has come to the front, or no other program's window has ever been there, or none
/// at all is; a desktop whose windows cannot all be seen may have one.
bool TranslationHands::somebodyTakesKeys() const
{
    const WindowId front = m_window.m_platform.windowSystem->foregroundWindow();
    return front != 0 ? !isOwnWindow(front) : !m_window.m_platform.windowSystem->canPostText();
}

void TranslationHands::keepText(const QString &text)
{
    if (m_window.m_sessionsFinished) {
        m_window.keepForNextRun(text);
    } else {
        m_window.keepUndelivered(text, PostStop::Gone);
    }
}

void TranslationHands::whenInFront(WindowId front, std::function<void(bool)> action)
{
    if (front == 0) {
        action(true);
        return;
    }
    if (!m_window.m_platform.windowSystem->activate(front)) {
        action(false);
        return;
    }
    constexpr int longestLooks = 100;
    lookForFront(front, longestLooks, std::move(action));
}

void TranslationHands::lookForFront(WindowId front, int looks, std::function<void(bool)> action)
{
    constexpr int lookAgainMs = 10;
    const bool there = m_window.m_platform.windowSystem->foregroundWindow() == front;
    if (there || looks == 0) {
        action(there);
        return;
    }
    m_window.m_platform.time->callAfter(
        lookAgainMs, &m_window,
        [this, front, looks, action = std::move(action)] { lookForFront(front, looks - 1, action); });
}

void TranslationHands::takeFocus()
{
    if (exists()) {
        m_window.m_platform.ownWindows->takeFocus(m_dialog->winId());
    }
}

void TranslationHands::neverTakeFocus()
{
    if (exists()) {
        m_window.m_platform.ownWindows->neverTakeFocus(m_dialog->winId());
    }
}

void TranslationHands::giveFocusTo(WindowId window)
{
    m_window.m_platform.windowSystem->activate(window);
}

void TranslationHands::setDelimitTranslation(bool on)
{
    const bool entered = on && !m_window.DelimitTranslation;
    m_window.DelimitTranslation = on;
    if (entered) { // the release of a key that is held is no longer taken
        m_window.m_session.endInputMethodPress();
        m_window.endRunningSession();
    }
}

void TranslationHands::copySelection(bool emptied, WindowId front, const Copied &copied)
{
    whenInFront(front, [this, emptied, copied, dialog = m_dialog](bool there) {
        if (dialog.isNull() || dialog != m_dialog) {
            return;
        }
        if (there) {
            copyWhenFree(emptied, copied);
        } else {
            qWarning("Selection: the window in front before does not come back; nothing is copied");
        }
    });
}

void TranslationHands::copyWhenFree(bool emptied, const Copied &copied)
{
    constexpr int lookAgainMs = 10;
    if (m_window.HidBusy || m_window.isPasting()) { // the keys and the clipboard are in use
        m_window.m_platform.time->callAfter(lookAgainMs, m_dialog, [this, emptied, copied] {
            if (exists() && !isClosing()) {
                copyWhenFree(emptied, copied);
            }
        });
        return;
    }
    m_selectionCopy->begin(
        emptied, [copied, from = m_window.focusedElsewhere()](const QString &text) { copied(text, from); });
}

void TranslationHands::clearClipboard()
{
    m_window.m_sessionHands.clearClipboard();
    if (m_selectionCopy) {
        m_selectionCopy->clipboardEmptied();
    }
}

void TranslationHands::readAloud(Pane pane, const QString &text, const PaneReading &reading)
{
    if (reading.online) {
        m_onlineReading->read(pane, text, reading.voice);
    } else if (m_systemVoice->Init()) { // not before: the window is to open at once
        m_systemVoice->Speak(text, reading.language);
    }
}

void TranslationHands::stopReading()
{
    m_onlineReading->stop();
    m_systemVoice->Stop();
}

void TranslationHands::tell(const QString &title, const QString &text)
{
    askAside(m_dialog, {title, text, {MainWindow::tr("确定")}, true}, [](int) {});
}

void TranslationHands::closing(const std::vector<SpokenText> &untold)
{
    m_window.DelimitTranslation = false;
    m_window.VoiceTranslateMode = false;
    if (m_window.m_micTip != nullptr) {
        m_window.m_micTip->UpdateStatusButtons();
    }
    const WindowId front = untold.empty() ? 0 : m_dialog->windowToReturnTo(CTransTipDialog::Sent::ByItself);
    for (const SpokenText &spoken : untold) {
        typeText({spoken.text, front, spoken.session.pressWindow, spoken.session, false});
    }
}

void TranslationHands::closed()
{
    qInfo() << "Translation window: closed";
    m_window.disconnect(m_dialog);
    m_dialog->deleteLater(); // its own code may be running
    m_dialog = nullptr;
    m_translator.reset();
    m_selectionCopy.reset();
    m_onlineReading.reset();
    m_systemVoice.reset();
}

void TranslationHands::translationLimitReached(const QString &title, const QString &text)
{
    if (std::exchange(m_limitTold, true)) {
        return;
    }
    QTimer::singleShot(0, &m_window, [this, title, text] {
        if (!m_window.isLeaving()) {
            m_window.endMouseSession();
            ask(&m_window, {title, text, {MainWindow::tr("确定")}, true});
            m_window.exitByItself();
        }
    });
}

} // namespace mevo
