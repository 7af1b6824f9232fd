// Texts that no window was seen to take: they are kept, and offered from the menu.

#include "base/ApplicationFiles.h"
#include "output/UndeliveredTexts.h"
#include "ui/ClearPlace.h"
#include "ui/UndeliveredDialog.h"
#include "window/MainWindow.h"

#include <QAction>
#include <QDebug>
#include <QMenu>
#include <QScreen>

#include <algorithm>

namespace {

const QString undeliveredFile = QStringLiteral("MEVOUndelivered.json");

/// Why a text waits, for the log.
const char *reasonText(mevo::PostStop stop)
{
    switch (stop) {
    case mevo::PostStop::AtEnd:
        return "it went whole";
    case mevo::PostStop::NoKeys:
        return "no keys can be typed on this desktop";
    case mevo::PostStop::Gone:
        return "its window is gone";
    case mevo::PostStop::Hidden:
        return "its window is minimised or on another desktop";
    case mevo::PostStop::Hung:
        return "its program does not answer";
    case mevo::PostStop::FocusRefused:
        return "its window takes no focus";
    case mevo::PostStop::FocusLeft:
        return "another window has the focus";
    case mevo::PostStop::NoField:
        return "no text field of this program's window has the focus";
    case mevo::PostStop::ReceiverGone:
        return "the receiver has not taken the paste key";
    case mevo::PostStop::NotRead:
        return "its window has not read the clipboard";
    case mevo::PostStop::KeyboardGrabbed:
        return "another program holds the keyboard";
    case mevo::PostStop::ScreenLocked:
        return "the screen is locked";
    case mevo::PostStop::KeyboardChanged:
        return "the keyboard map was changed while it was typed";
    case mevo::PostStop::Untypable:
        return "its program takes no such characters from keys";
    }
    return "";
}

void logUndelivered(int characters, mevo::PostStop stop)
{
    qWarning("Send to screen: %d characters wait as undelivered: %s", characters, reasonText(stop));
}

} // namespace

void MainWindow::loadUndelivered()
{
    m_undelivered = std::make_unique<mevo::UndeliveredTexts>(mevo::appFile(undeliveredFile));
    showUndeliveredCount();
}

void MainWindow::keepUndelivered(const QString &text, mevo::PostStop stop)
{
    if (storeUndelivered(text)) {
        logUndelivered(text.size(), stop);
    } else {
        tellUndelivered(text.size(), stop);
    }
    showUndeliveredCount();
}

bool MainWindow::storeUndelivered(const QString &text)
{
    const bool full = !text.isEmpty() && m_undelivered->count() == mevo::UndeliveredTexts::most;
    m_undelivered->add(text, m_platform.time->now());
    if (full) {
        message(tr("有文字未能输入，已保留在菜单的“未送达的文字”中；已超过%1条，最早的一条已删除。")
                    .arg(mevo::UndeliveredTexts::most),
                mevo::MessageIcon::Warning, 5000);
    }
    return full;
}

void MainWindow::tellUndelivered(int characters, mevo::PostStop stop)
{
    logUndelivered(characters, stop);
    message(tr("有文字未能输入，已保留在菜单的“未送达的文字”中。"), mevo::MessageIcon::Warning, 5000);
}

void MainWindow::showUndeliveredCount()
{
    const int count = m_undelivered->count();
    if (m_undeliveredAction == nullptr) {
        m_undeliveredAction = new QAction(m_menu);
        connect(m_undeliveredAction, &QAction::triggered, this, &MainWindow::showUndelivered);
    }
    m_undeliveredAction->setText(tr("未送达的文字(%1)").arg(count));
    if (count == 0) {
        m_menu->removeAction(m_undeliveredAction);
    } else if (!m_menu->actions().contains(m_undeliveredAction)) {
        m_menu->insertAction(m_menu->actions().value(0), m_undeliveredAction);
    }
    if (m_undeliveredDialog != nullptr) {
        m_undeliveredDialog->setTexts(m_undelivered->texts());
        m_undeliveredDialog->setVisible(m_undeliveredDialog->isVisible() && count > 0);
    }
}

void MainWindow::showUndelivered()
{
    if (m_undeliveredDialog == nullptr) {
        m_undeliveredDialog = new UndeliveredDialog(this);
        connect(m_undeliveredDialog, &UndeliveredDialog::typeWanted, this, &MainWindow::typeUndelivered);
        connect(m_undeliveredDialog, &UndeliveredDialog::copyWanted, this, [this](int index) {
            if (isUndelivered(index)) {
                m_platform.clipboard->putBack(m_undelivered->texts()[static_cast<std::size_t>(index)].text);
            }
        });
        connect(m_undeliveredDialog, &UndeliveredDialog::removeWanted, this, [this](int index) {
            if (isUndelivered(index)) {
                m_undelivered->remove(index);
                showUndeliveredCount();
            }
        });
        connect(m_undeliveredDialog, &UndeliveredDialog::removeAllWanted, this, [this] {
            m_undelivered->removeAll();
            showUndeliveredCount();
        });
        m_undeliveredDialog->adjustSize();
        m_undeliveredDialog->move(
            mevo::clearPlace(screen()->availableGeometry(), m_undeliveredDialog->size(), {geometry()}));
        m_platform.ownWindows->neverTakeFocus(m_undeliveredDialog->winId());
    }
    m_undeliveredDialog->setTexts(m_undelivered->texts());
    m_undeliveredDialog->show();
    m_undeliveredDialog->raise();
}

bool MainWindow::isUndelivered(int index) const
{
    return index >= 0 && index < m_undelivered->count();
}

/// Types a kept text into the window that has the focus now; it is kept until that window has taken it.
void MainWindow::typeUndelivered(int index)
{
    if (!isUndelivered(index) || m_typingUndelivered) { // a second click would type it twice
        return;
    }
    const mevo::UndeliveredText kept = m_undelivered->texts()[static_cast<std::size_t>(index)];
    const mevo::WindowId window = m_platform.windowSystem->focusedWindow();
    if (window == 0 || !m_platform.windowSystem->canPostText()) {
        message(tr("没有可以输入的窗口，请先把光标放到要输入的地方。"), mevo::MessageIcon::Information, 3000);
        return;
    }
    m_typingUndelivered = true;
    post(window, kept.text, Kept::Already, [this, kept, window](const mevo::PostResult &result) {
        m_typingUndelivered = false;
        const QString rest = kept.text.mid(result.posted);
        if (result.complete) {
            removeUndelivered(kept);
            return;
        }
        const int at = placeOfUndelivered(kept);
        if (at >= 0) {
            m_undelivered->replace(at, rest);
        }
        // It stands there until the paste is over; one that has failed stands there once more by then.
        m_typingUndelivered = true;
        const bool pasted = pasteRest(
            window, rest, result.stop,
            [this, left = mevo::UndeliveredText{rest, kept.when}](bool) {
                m_typingUndelivered = false;
                removeUndelivered(left);
            },
            0);
        if (!pasted) {
            m_typingUndelivered = false;
            if (at >= 0) {
                tellUndelivered(rest.size(), result.stop);
            }
        }
        showUndeliveredCount();
    });
}

int MainWindow::placeOfUndelivered(const mevo::UndeliveredText &kept) const
{
    const auto &texts = m_undelivered->texts();
    const auto found = std::find_if(texts.begin(), texts.end(), [&kept](const mevo::UndeliveredText &entry) {
        return entry.text == kept.text && entry.when == kept.when;
    });
    return found != texts.end() ? static_cast<int>(found - texts.begin()) : -1;
}

void MainWindow::removeUndelivered(const mevo::UndeliveredText &kept)
{
    const int at = placeOfUndelivered(kept);
    if (at >= 0) {
        m_undelivered->remove(at);
    }
    showUndeliveredCount();
}
