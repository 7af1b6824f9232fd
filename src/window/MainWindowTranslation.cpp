// The main window's part of the translation window.

#include "window/MainWindow.h"

#include "device/DeviceCommands.h"
#include "output/PasteShortcut.h"
#include "session/VoiceModes.h"
#include "ui/MicTipDialog.h"

#include <QCursor>
#include <QToolTip>

namespace {
constexpr int holdCopyKeyMs = 100;
constexpr int controlModifier = 1; ///< of a HID keyboard report
constexpr int shiftModifier = 2;
} // namespace

void MainWindow::pushBuutton_Translate_clicked()
{
    mevo::toggleTranslation(*this, m_translationHands);
    // kept: the text stands even when the mode goes off
    QToolTip::showText(QCursor::pos(), tr("语音翻译模式已打开"), this);
}

void MainWindow::CreateTransDlg()
{
    mevo::openTranslation(*this, m_translationHands);
}

bool MainWindow::SendCopyCombination()
{
    const mevo::WindowId window = m_platform.windowSystem->focusedWindow();
    const auto keys = mevo::copyShortcutFor(m_platform.windowSystem->windowClass(window));
    if (!keys) {
        return false;
    }
    if (deviceOpen()) {
        if (m_translationHands.exists() && DelimitTranslation) {
            m_device->SendKeyReport(controlModifier | (keys->shift ? shiftModifier : 0), keys->usage);
            m_platform.time->sleepMs(holdCopyKeyMs);
            m_device->SendKeyReport(0, 0);
        } else {
            SendHWKey(keys->shift, true, false, false, false, keys->usage);
        }
        return true;
    }
    m_platform.keyboard->keyDown(mevo::VkControl);
    if (keys->shift) {
        m_platform.keyboard->keyDown(mevo::VkShift);
    }
    m_platform.keyboard->keyDown(keys->virtualKey);
    m_platform.keyboard->keyUp(keys->virtualKey); // it would repeat for ever
    if (keys->shift) {
        m_platform.keyboard->keyUp(mevo::VkShift);
    }
    m_platform.keyboard->keyUp(mevo::VkControl);
    return true;
}

/// What was spoken and not typed is kept; the window is the receiver's and goes with it.
void MainWindow::closeTranslation()
{
    for (const QString &text : m_translationHands.takeUnsent()) {
        keepUndelivered(text, mevo::PostStop::Gone);
    }
    m_translationHands.retire();
    if (m_micTip != nullptr) {
        m_micTip->UpdateStatusButtons();
    }
}
