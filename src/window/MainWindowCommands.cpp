// Spoken commands and searches.

#include "base/ApplicationFiles.h"
#include "commands/CommandExecution.h"
#include "commands/CommandMatcher.h"
#include "commands/CommandTable.h"
#include "commands/DirectWords.h"
#include "commands/SearchAddresses.h"
#include "commands/UrlOpener.h"
#include "window/MainWindow.h"

#include <QDebug>

namespace {

class CommandHands : public mevo::CommandPort
{
public:
    CommandHands(MainWindow &window, mevo::Processes &processes)
        : m_window(window)
        , m_processes(processes)
    {
    }

    void openUrl(const QUrl &url) override { mevo::openUrl(url, m_processes); }
    void sendToScreen(const QString &text) override { m_window.Send2Screen(text, 0, 100); }
    void playKeys(const mevo::KeyCombination &keys) override
    {
        m_window.SendHWKey(keys.shift, keys.ctrl, keys.alt, keys.win, keys.consumerKey, keys.key);
    }

private:
    MainWindow &m_window;
    mevo::Processes &m_processes;
};

} // namespace

bool MainWindow::runCommandWord(const QString &word, bool sent)
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
    CommandHands hands(*this, *m_platform.processes);
    mevo::runCommand(row, sent, *this, hands);
    return true;
}

void MainWindow::VoiceSearch(const QString &text)
{
    for (const QUrl &address : mevo::searchAddresses(text, *this, m_endpoints)) {
        mevo::openUrl(address, *m_platform.processes);
    }
}

bool MainWindow::FindGloableCommandWord(QString text)
{
    return mevo::beginsWithDirectWord(CmdFlags_Contents_Driect, text);
}
