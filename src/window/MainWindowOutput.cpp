// Text on its way into the window that had the focus.

#include "window/MainWindow.h"

#include "device/DeviceCommands.h"
#include "output/PasteShortcut.h"
#include "output/SendPlan.h"
#include "ui/OwnWidget.h"

#include <QDebug>
#include <QTimer>

#include <utility>

namespace {
constexpr int holdHandOutKeyMs = 90;
} // namespace

mevo::WindowId MainWindow::GetFocusWindow()
{
    if (m_translationHands.exists()) {
        return FocusWindow; // kept: its texts go into the window in front
    }
    ForegroundWindow = m_platform.windowSystem->foregroundWindow();
    const mevo::WindowId focused = m_platform.windowSystem->focusedWindow();
    return m_platform.windowSystem->isWindow(focused) ? focused : 0;
}

mevo::WindowId MainWindow::focusedElsewhere()
{
    const mevo::WindowId focused = m_platform.windowSystem->focusedWindow();
    return focused != 0 && !mevo::isOwnWindow(focused) ? focused : 0;
}

void MainWindow::Send2Screen(const QString &text, int, int)
{
    sendToScreen(text, contextNow());
}

void MainWindow::sendToScreen(const QString &text, const mevo::SessionContext &session, mevo::WindowId only)
{
    const bool focusElsewhere = only != 0 && m_platform.windowSystem->focusedWindow() != only;
    const mevo::SendPlan plan = mevo::planSend(text, *this, session, m_translationHands.exists(),
                                               m_platform.windowSystem->canPostText(), focusElsewhere);
    if (plan.keysDropped) {
        qWarning() << "Send to screen: another window has the focus, the word's keys are not typed";
        message(tr("原来的窗口已失去焦点，没有发送按键。"), mevo::MessageIcon::Warning, 3000);
    }
    for (const mevo::KeyCombination &keys : plan.keys) {
        SendHWKey(keys.shift, keys.ctrl, keys.alt, keys.win, keys.consumerKey, keys.key);
    }
    switch (plan.way) {
    case mevo::SendPlan::Way::Nothing:
        if (plan.lostFocus) {
            qWarning() << "Send to screen: no window had the focus";
            keepUndelivered(plan.text, mevo::PostStop::Gone);
        } else if (plan.keys.empty() && !plan.keysDropped && !text.isEmpty()) {
            qInfo() << "Send to screen: nothing is typed in this mode";
        }
        break;
    case mevo::SendPlan::Way::Clipboard:
        pasteText(plan.text, holdPasteKeyMs, {}, only, session.number);
        break;
    case mevo::SendPlan::Way::Post:
        post(session.window, plan.text, Kept::No,
             [this, typed = plan.text, window = session.window,
              number = session.number](const mevo::PostResult &result) {
                 if (!result.complete) {
                     typeRest(window, typed.mid(result.posted), result.stop, {}, number);
                     return;
                 }
                 qInfo() << "Send to screen: typed" << result.posted << "characters";
                 m_figures.typed(number, m_platform.time->monotonicMs());
                 sendOffAfterPost(window);
             });
        break;
    }
}

/// The receiver's keys go to the window that has the focus now.
void MainWindow::sendOffAfterPost(mevo::WindowId window)
{
    if (m_platform.windowSystem->focusedWindow() == window) {
        sendImmediateKeys();
    } else if (VoiceImmediateSend) {
        qInfo() << "Send to screen: another window has the focus, nothing is sent off";
    }
}

/// Posts a text, which counts as on its way until `done`; nothing comes after the exit has taken it back.
void MainWindow::post(mevo::WindowId window, const QString &text, Kept kept,
                      mevo::WindowSystem::PostDone done)
{
    if (mevo::isOwnWithoutField(window)) { // the keys would arrive, and be nowhere
        done({0, text.isEmpty(), mevo::PostStop::NoField});
        return;
    }
    const int number = ++m_postNumber;
    m_postsUnderWay.emplace(number, kept == Kept::No ? text : QString());
    m_platform.windowSystem->postText(window, text,
                                      [this, number, done = std::move(done)](const mevo::PostResult &result) {
                                          if (m_postsUnderWay.erase(number) > 0) {
                                              done(result);
                                          }
                                      });
}

void MainWindow::typeRest(mevo::WindowId window, const QString &rest, mevo::PostStop stop, PasteDone done,
                          int session)
{
    if (pasteRest(window, rest, stop, done, session)) {
        return;
    }
    keepUndelivered(rest, stop);
    if (done) {
        done(false);
    }
}

bool MainWindow::pasteRest(mevo::WindowId window, const QString &rest, mevo::PostStop stop, PasteDone done,
                           int session)
{
    constexpr int postsOnly = 1;
    if (stop != mevo::PostStop::Untypable || Send2ScreenMethod == postsOnly || !m_postsUnderWay.empty() ||
        isPasting() || m_platform.windowSystem->focusedWindow() != window) {
        return false;
    }
    qInfo() << "Send to screen: the other" << rest.size() << "characters are pasted";
    m_pendingPastes.push_back({rest, holdPasteKeyMs, std::move(done), window, session, 0, window});
    pasteNext();
    return true;
}

QString MainWindow::runFigures() const
{
    const auto &total = m_figures.releaseToText();
    const auto &own = m_figures.answerToText();
    return total.count() == 0
               ? tr("本次运行还没有输入文字")
               : tr("本次运行输入%1次，从松开按键到出现文字：一半在%2毫秒以内，95%在%3毫秒以内；"
                    "其中收到识别结果之后：%4毫秒，%5毫秒")
                     .arg(total.count())
                     .arg(total.percentile(50))
                     .arg(total.percentile(95))
                     .arg(own.percentile(50))
                     .arg(own.percentile(95));
}

void MainWindow::pasteText(const QString &text, int holdMs, PasteDone done, mevo::WindowId only, int session)
{
    m_pendingPastes.push_back({text, holdMs, std::move(done), only, session, 0});
    pasteNext();
}

void MainWindow::pasteNext()
{
    constexpr int lookAgainMs = 10;
    constexpr int mostLooks = 50;
    if (m_pendingPastes.empty()) {
        return;
    }
    if (m_pasteSettles || m_pasteAsks || m_postsInstead) {
        return; // the text before is still on its way, and its end brings us back here
    }
    if (HidBusy) { // the receiver is typing something else
        QTimer::singleShot(lookAgainMs, this, &MainWindow::pasteNext);
        return;
    }
    const mevo::WindowId window = m_platform.windowSystem->focusedWindow();
    PendingPaste &first = m_pendingPastes.front();
    const bool nowhere = first.only == 0 && window == 0 && m_platform.windowSystem->keysGoNowhere();
    if (nowhere && first.looks++ < mostLooks) { // it may be on its way to another window
        QTimer::singleShot(lookAgainMs, this, &MainWindow::pasteNext);
        return;
    }
    if (window != 0 && window != first.takes && (first.only == 0 || first.only == window) &&
        !mevo::isOwnWindow(window)) {
        askBeforePaste(window);
        return;
    }
    const PendingPaste paste = std::move(first);
    m_pendingPastes.pop_front();
    if (paste.only != 0 && paste.only != window) {
        postInstead(paste);
        return;
    }
    if (nowhere || mevo::isOwnWithoutField(window)) { // the next press would take the clipboard's text
        keepUndelivered(paste.text, nowhere ? mevo::PostStop::Gone : mevo::PostStop::NoField);
        if (paste.done) {
            paste.done(false);
        }
        pasteNext();
        return;
    }
    m_platform.clipboard->setText(paste.text);
    m_pasteDone = paste.done;
    m_pasteSession = paste.session;
    m_pasteSettles = true; // the window reads the clipboard when it gets to the key
    const mevo::PasteShortcut shortcut = mevo::pasteShortcutFor(m_platform.windowSystem->windowClass(window));
    m_pasteText = paste.text;
    m_pasteWindow = window;
    m_pasteByReceiver = deviceOpen();
    if (m_pasteByReceiver) {
        m_keysLostBefore = HidKeysLost;
        SendHWKey(shortcut.shift, shortcut.ctrl, false, false, false, shortcut.usage);
        letPasteSettle();
        return;
    }
    const auto modifiers = [this, &shortcut](void (mevo::Keyboard::*change)(int)) {
        if (shortcut.ctrl) {
            (m_platform.keyboard.get()->*change)(mevo::VkControl);
        }
        if (shortcut.shift) {
            (m_platform.keyboard.get()->*change)(mevo::VkShift);
        }
    };
    modifiers(&mevo::Keyboard::keyDown);
    m_platform.keyboard->keyDown(shortcut.virtualKey);
    m_platform.time->sleepMs(paste.holdMs);
    m_platform.keyboard->keyUp(shortcut.virtualKey);
    modifiers(&mevo::Keyboard::keyUp);
    m_platform.time->sleepMs(100);
    sendImmediateKeys();
    letPasteSettle();
}

void MainWindow::postInstead(const PendingPaste &paste)
{
    const auto end = [this, done = paste.done](bool typed) {
        if (done) {
            done(typed);
        }
        pasteNext();
    };
    if (mevo::typingWay(*this, paste.only, false, m_platform.windowSystem->canPostText()) !=
        mevo::SendPlan::Way::Post) {
        keepUndelivered(paste.text, mevo::PostStop::FocusLeft);
        end(false);
        return;
    }
    m_postsInstead = true;
    post(paste.only, paste.text, Kept::No,
         [this, text = paste.text, window = paste.only, session = paste.session,
          end](const mevo::PostResult &result) {
             m_postsInstead = false;
             if (result.complete) {
                 qInfo() << "Send to screen: typed" << result.posted << "characters beside the focus";
                 m_figures.typed(session, m_platform.time->monotonicMs());
                 sendOffAfterPost(window);
             } else {
                 keepUndelivered(text.mid(result.posted), result.stop);
             }
             end(result.complete);
         });
}

void MainWindow::letPasteSettle()
{
    constexpr int lookAgainMs = 10;
    constexpr int settleMs = 150;
    if (HidBusy) { // the receiver has not typed the key yet
        QTimer::singleShot(lookAgainMs, this, &MainWindow::letPasteSettle);
        return;
    }
    if (m_pasteByReceiver && HidKeysLost != m_keysLostBefore) {
        endPaste(mevo::PostStop::ReceiverGone);
        return;
    }
    if (m_pasteWindow != 0 && m_platform.windowSystem->focusedWindow() == 0 &&
        m_platform.windowSystem->keysGoNowhere()) { // it lost the keyboard while the key was on its way
        endPaste(m_platform.windowSystem->isWindow(m_pasteWindow) ? mevo::PostStop::FocusLeft
                                                                  : mevo::PostStop::Gone);
        return;
    }
    m_figures.typed(m_pasteSession, m_platform.time->monotonicMs());
    QTimer::singleShot(settleMs, this, [this] {
        if (mevo::isOwnWindow(m_pasteWindow)) {
            endPaste(mevo::PostStop::AtEnd);
            return;
        }
        if (m_pasteWindow == 0) {
            awaitPasteRead(m_platform.time->monotonicMs());
            return;
        }
        // A program that is slow reads the clipboard when it gets to the key: the next text waits for that.
        constexpr int takenLimitMs = 10000;
        m_platform.windowSystem->askWindow(m_pasteWindow, takenLimitMs, [this](mevo::PostStop stop) {
            if (stop == mevo::PostStop::AtEnd) {
                awaitPasteRead(m_platform.time->monotonicMs());
            } else {
                endPaste(stop);
            }
        });
    });
}

/// The program has had the key. Where it pastes by another one, or has no field with the focus, the text
/// would be nowhere. Some read the clipboard a little later than they answer.
void MainWindow::awaitPasteRead(qint64 sinceMs)
{
    constexpr int lookAgainMs = 10;
    constexpr int readLimitMs = 2000;
    if (!m_pasteSettles) {
        return; // the exit has taken it back
    }
    if (m_platform.clipboard->mayHaveBeenRead()) {
        endPaste(mevo::PostStop::AtEnd);
    } else if (m_platform.time->monotonicMs() - sinceMs >= readLimitMs) {
        endPaste(mevo::PostStop::NotRead);
    } else {
        m_platform.time->callAfter(lookAgainMs, this, [this, sinceMs] { awaitPasteRead(sinceMs); });
    }
}

void MainWindow::endPaste(mevo::PostStop stop)
{
    if (!m_pasteSettles) {
        return; // the exit has taken it back
    }
    m_pasteSettles = false;
    const bool typed = stop == mevo::PostStop::AtEnd;
    if (!typed) {
        keepUndelivered(m_pasteText, stop);
    }
    m_pasteText.clear();
    tellPasteDone(typed);
    pasteNext();
}

/// A program that hangs would take the key when it wakes, and paste what the clipboard holds by then.
void MainWindow::askBeforePaste(mevo::WindowId window)
{
    constexpr int answerLimitMs = 2000;
    m_pasteAsks = true;
    m_platform.windowSystem->askWindow(window, answerLimitMs, [this, window](mevo::PostStop stop) {
        m_pasteAsks = false;
        if (m_pendingPastes.empty()) {
            return; // the exit has taken it back
        }
        PendingPaste &first = m_pendingPastes.front();
        first.takes = window;
        if (stop != mevo::PostStop::AtEnd) {
            const PendingPaste paste = std::move(first);
            m_pendingPastes.pop_front();
            keepUndelivered(paste.text, stop);
            if (paste.done) {
                paste.done(false);
            }
        }
        pasteNext();
    });
}

void MainWindow::tellPasteDone(bool typed)
{
    if (const auto done = std::exchange(m_pasteDone, {})) {
        done(typed);
    }
}

void MainWindow::Paster2ScreenHandOut()
{
    if (!m_pasteQueue.isEmpty()) {
        pasteText(m_pasteQueue.takeFirst(), holdHandOutKeyMs);
    }
}

void MainWindow::CopyClipboardText()
{
    m_platform.time->sleepMs(200);
}

void MainWindow::SendHWKey(bool shift, bool ctrl, bool alt, bool win, bool consumerKey, int key)
{
    if (deviceOpen()) {
        m_device->SendHWKey(shift, ctrl, alt, win, consumerKey, key);
    }
}

void MainWindow::sendImmediateKeys()
{
    if (VoiceImmediateSend && deviceOpen()) {
        m_device->SendImmediateKeys();
    }
}
