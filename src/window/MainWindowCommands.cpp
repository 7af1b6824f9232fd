// Spoken commands and searches.

#include "base/ApplicationFiles.h"
#include "base/RunAside.h"
#include "commands/CommandExecution.h"
#include "commands/CommandMatcher.h"
#include "commands/CommandTable.h"
#include "commands/DirectWords.h"
#include "commands/MergedTable.h"
#include "commands/SearchAddresses.h"
#include "commands/UrlOpener.h"
#include "ui/ClearPlace.h"
#include "ui/MicTipDialog.h"
#include "ui/commands/CommandWordDialog.h"
#include "window/MainWindow.h"

#include <QDebug>
#include <QScreen>

#include <functional>
#include <memory>
#include <utility>

namespace {

class CommandHands : public mevo::CommandPort
{
public:
    /// `typeText` types a phrase into the window of the session that named it.
    CommandHands(MainWindow &window, mevo::Processes &processes,
                 std::function<void(const QString &)> typeText)
        : m_window(window)
        , m_processes(processes)
        , m_typeText(std::move(typeText))
    {
    }

    void openUrl(const QUrl &url) override { mevo::openUrl(url, m_processes); }
    void sendToScreen(const QString &text) override { m_typeText(text); }
    void playKeys(const mevo::KeyCombination &keys) override
    {
        m_window.SendHWKey(keys.shift, keys.ctrl, keys.alt, keys.win, keys.consumerKey, keys.key);
    }

private:
    MainWindow &m_window;
    mevo::Processes &m_processes;
    std::function<void(const QString &)> m_typeText;
};

} // namespace

bool MainWindow::runCommandWord(const QString &word, bool sent, const mevo::SessionContext &session)
{
    if (!m_commands) {
        m_commands = std::make_unique<mevo::CommandMatcher>(mevo::CommandTable().mergedPath());
    }
    const mevo::CommandRow *found = m_commands->find(word);
    if (found == nullptr) {
        return false;
    }
    const mevo::CommandRow row = *found;
    qInfo().noquote() << "Commands: a word of type" << row.CmdWordTypeIndex << "is run";
    CommandHands hands(*this, *m_platform.processes,
                       [this, session](const QString &text) { sendToScreen(text, session); });
    mevo::runCommand(row, sent, *this, hands);
    return true;
}

void MainWindow::followCommandTables()
{
    const auto behind = std::make_shared<bool>(false);
    mevo::runAside(
        this, [behind] { *behind = mevo::isMergedTableBehind(mevo::CommandTable()); },
        [this, behind] {
            if (*behind && m_commandWords == nullptr && !isLeaving()) { // an editor makes it itself
                qInfo("Commands: a table has been replaced, the merged one is made anew");
                mevo::CommandTable().rebuildMerged();
            }
        });
}

void MainWindow::VoiceSearch(const QString &text)
{
    for (const QUrl &address : mevo::searchAddresses(text, *this, m_endpoints)) {
        mevo::openUrl(address, *m_platform.processes);
    }
}

/// An editor that is to be seen is made anew; one that was closed by its frame comes back as it was.
void MainWindow::pushBuutton_CommandWord_clicked()
{
    if (m_commandWords != nullptr && !m_commandWords->isVisible()) {
        m_commandWords->show();
        m_commandWords->activateWindow();
        return;
    }
    if (m_commandWords != nullptr && !m_commandWords->saveDraft()) {
        m_commandWords->activateWindow(); // it alone has the rows
        return;
    }
    if (m_commandWords != nullptr) {
        m_commandWords->hide();
        m_commandWords->deleteLater();
    }
    m_commandWords = new CommandWordDialog(mevo::CommandTable(), *this);
    connect(m_commandWords, &CommandWordDialog::closed, this, &MainWindow::forgetCommandWords);
    if (m_micTip != nullptr && m_micTip->isVisible()) {
        m_commandWords->setGeometry(mevo::uncoveredPlace(m_commandWords->screen()->availableGeometry(),
                                                         m_commandWords->size(), m_micTip->geometry()));
    }
    m_commandWords->show();
    m_commandWords->activateWindow();
}

void MainWindow::forgetCommandWords()
{
    if (m_commandWords != nullptr) {
        m_commandWords->deleteLater();
        m_commandWords = nullptr;
    }
}

void MainWindow::finishCommandWords()
{
    if (m_commandWords != nullptr) {
        m_commandWords->finish();
    }
}

bool MainWindow::FindGloableCommandWord(QString text)
{
    return mevo::beginsWithDirectWord(CmdFlags_Contents_Driect, text);
}
