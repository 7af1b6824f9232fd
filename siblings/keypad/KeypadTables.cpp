#include "keypad/KeypadTables.h"

#include "base/RunAside.h"
#include "commands/CommandFile.h"
#include "commands/CommandTable.h"

#include <QFileInfo>

#include <memory>

namespace mevo::keypad {

namespace {

constexpr int settleMs = 50; ///< a table that is written comes in several steps
constexpr int freshMs = 200; ///< until a change shows in the file's times
constexpr int missingFolderMs = 2000;

CommandRows rowsOf(const QString &path)
{
    CommandFile file = parseCommandFile(readCommandFile(path).value_or(QByteArray()));
    logFaults(path, file.faults);
    return std::move(file.rows);
}

} // namespace

KeypadTables::KeypadTables(Handler handler, const QString &folder, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
    , m_voicePath(CommandTable(folder).typedPath(CommandType::VoiceKeyboard))
    , m_pinyinPath(CommandTable(folder).typedPath(CommandType::PinyinKeyboard))
{
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &KeypadTables::look);
    const auto lookSoon = [this] { m_soon.start(settleMs); };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, lookSoon);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, lookSoon);
    m_soon.start(0);
}

void KeypadTables::watch()
{
    // A file that is replaced is another one, which has to be watched anew; the folder tells of that.
    const QString folder = QFileInfo(m_pinyinPath).path();
    for (const QString &path : {folder, m_voicePath, m_pinyinPath}) {
        if (QFileInfo::exists(path)) {
            m_watcher.addPath(path);
        }
    }
    if (!m_watcher.directories().contains(folder)) {
        m_soon.start(missingFolderMs);
    }
}

void KeypadTables::look()
{
    if (m_reading) {
        return; // it looks again at its end
    }
    watch();
    const std::vector<FileStamp> now{FileStamp::of(m_voicePath), FileStamp::of(m_pinyinPath)};
    bool same = m_stamps.size() == now.size();
    for (std::size_t i = 0; same && i < now.size(); ++i) {
        same = now[i].sameAs(m_stamps[i]);
    }
    for (const FileStamp &stamp : now) {
        if (!stamp.settled) {
            m_soon.start(freshMs);
        }
    }
    m_stamps = now;
    if (!same) {
        read();
    }
}

void KeypadTables::read()
{
    m_reading = true;
    struct Found
    {
        Content content;
        PinyinList list;
    };
    const auto found = std::make_shared<Found>();
    found->list = m_list;
    runAside(
        this,
        [found, voice = m_voicePath, pinyin = m_pinyinPath] {
            if (found->list.isEmpty()) {
                found->list = PinyinList::shipped();
            }
            found->content.words = KeyWords(rowsOf(voice));
            found->content.pinyin = PinyinTable(rowsOf(pinyin), found->list);
        },
        [this, found] {
            m_reading = false;
            m_list = found->list;
            m_handler(found->content);
            m_soon.start(m_soon.isActive() ? freshMs : settleMs); // for what has changed meanwhile
        });
}

} // namespace mevo::keypad
