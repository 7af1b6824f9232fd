#include "window/InstanceCalls.h"

#include "output/SendPlan.h"
#include "ui/Ask.h"
#include "ui/MicTipDialog.h"
#include "window/MainWindow.h"

#include <QDebug>

#include <utility>

namespace mevo {

void InstanceCalls::take(const InstanceCall &call, const Answer &answer)
{
    if (call.what != InstanceCall::What::Type && isBusy()) {
        raiseQuestions(); // the one about the exit is what the program waits for
        answer(InstanceAnswer::Refused);
        return;
    }
    if (call.what == InstanceCall::What::Show) {
        m_window.presentMenu();
        answer(InstanceAnswer::Done);
        return;
    }
    const WindowId focused = m_window.m_platform.windowSystem->focusedWindow();
    Early early{call, m_window.m_platform.windowSystem->isWindow(focused) ? focused : 0, answer};
    if (m_window.InitDone && m_early.empty()) {
        carryOut(early);
        return;
    }
    m_early.push_back(std::move(early)); // also behind those that a start just over has not come to yet
    if (m_early.size() == 1) {
        m_window.whenStarted([this] { carryOutEarly(); });
    }
}

void InstanceCalls::carryOutEarly()
{
    while (!m_early.empty()) {
        const Early next = m_early.front();
        m_early.pop_front();
        carryOut(next);
    }
}

void InstanceCalls::carryOut(const Early &call)
{
    switch (call.call.what) {
    case InstanceCall::What::Show:
        break; // at once, see take()
    case InstanceCall::What::Talk:
        call.answer(showTalkWindow());
        break;
    case InstanceCall::What::Settings:
        call.answer(showSettings());
        break;
    case InstanceCall::What::Type:
        type(call);
        break;
    }
}

/// The text is a session of its own, so that it keeps its place among those that are spoken. It is not the
/// newest one, whose talk window and microphone go on beside it.
void InstanceCalls::type(const Early &call)
{
    qInfo("Call: a text of %d characters is to be typed", call.call.text.size());
    if (m_window.m_sessionsFinished) {
        m_window.keepForNextRun(call.call.text);
        call.answer(InstanceAnswer::Kept);
        return;
    }
    SessionContext context;
    context.window = call.window;
    const int session = m_window.m_results.begin(context);
    m_underWay.emplace(session, call.answer);
    m_window.deliverRecognised(session, {call.call.text, false, true});
    m_window.endSession(session);
}

void InstanceCalls::typeInTurn(const QString &text, const SessionContext &session)
{
    const int number = session.number;
    if (text.isEmpty()) {
        settle(number, InstanceAnswer::Done);
        return;
    }
    if (session.window == 0) {
        m_window.keepUndelivered(text, PostStop::Gone);
        settle(number, InstanceAnswer::Kept);
        return;
    }
    const SendPlan::Way way = typingWay(m_window, session.window, m_window.m_translationHands.exists(),
                                        m_window.m_platform.windowSystem->canPostText());
    const auto end = [this, number](bool typed) {
        settle(number, typed ? InstanceAnswer::Done : InstanceAnswer::Kept);
    };
    if (way == SendPlan::Way::Clipboard) {
        m_window.pasteText(text, MainWindow::holdPasteKeyMs, end, session.window);
        return;
    }
    m_window.post(session.window, text, MainWindow::Kept::No,
                  [this, text, window = session.window, end](const PostResult &result) {
                      if (result.complete) {
                          end(true);
                      } else {
                          m_window.typeRest(window, text.mid(result.posted), result.stop, end);
                      }
                  });
}

void InstanceCalls::finish()
{
    for (const Early &waiting : std::exchange(m_early, {})) {
        if (waiting.call.what == InstanceCall::What::Type) {
            m_window.keepForNextRun(waiting.call.text);
            waiting.answer(InstanceAnswer::Kept);
        } else {
            waiting.answer(InstanceAnswer::Refused);
        }
    }
    for (const auto &waiting : std::exchange(m_underWay, {})) {
        waiting.second(InstanceAnswer::Kept);
    }
}

bool InstanceCalls::isBusy() const
{
    return m_window.isLeaving() || m_window.ExitInProgress;
}

InstanceAnswer InstanceCalls::showTalkWindow()
{
    const bool methodInForce = m_window.LocalEnableASR3 && m_window.VoiceTypeMode;
    if (isBusy() || m_window.m_micTip == nullptr || (m_window.ThirdPartyActive && !methodInForce) ||
        (!m_window.DeviceConnected && !m_window.NoDeviceMode)) {
        qInfo() << "Call: the talk window cannot be shown now";
        return InstanceAnswer::Refused;
    }
    if (m_window.m_micTip->isVisible() && !methodInForce) {
        m_window.m_micTip->raise();
        return InstanceAnswer::Done;
    }
    m_window.MicWinShown = false;
    m_window.pushButton_Mic_clicked();
    return InstanceAnswer::Done;
}

InstanceAnswer InstanceCalls::showSettings()
{
    if (isBusy()) {
        return InstanceAnswer::Refused;
    }
    m_window.pushBuutton_Setting_clicked();
    return InstanceAnswer::Done;
}

void InstanceCalls::settle(int session, InstanceAnswer answer)
{
    const auto found = m_underWay.find(session);
    if (found != m_underWay.end()) {
        const Answer tell = found->second;
        m_underWay.erase(found);
        tell(answer);
    }
}

} // namespace mevo
