#pragma once

#include "base/FileStamp.h"
#include "keypad/KeyWords.h"
#include "keypad/PinyinTable.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

namespace mevo::keypad {

/// Both tables of the user, with the keyboard's own list of pinyin behind them, read now and each time that
/// one changes, whichever way it is written: in its place, by another file that takes its name, or in a
/// folder that comes later. A large table is read in a thread.
class KeypadTables : public QObject
{
    Q_OBJECT

public:
    /// What a table that is missing or broken holds counts as far as it can be read.
    struct Content
    {
        PinyinTable pinyin;
        KeyWords words;
    };
    using Handler = std::function<void(const Content &)>;

    /// Reads the tables of a folder, by default the application's. `handler` is called from the event loop.
    explicit KeypadTables(Handler handler, const QString &folder = QString(), QObject *parent = nullptr);

private:
    void look();
    void watch();
    void read();

    Handler m_handler;
    QString m_voicePath;
    QString m_pinyinPath;
    QFileSystemWatcher m_watcher;
    QTimer m_soon;
    PinyinList m_list;               ///< the keyboard's own, once it has been read
    std::vector<FileStamp> m_stamps; ///< of what was read last; none before
    bool m_reading = false;
};

} // namespace mevo::keypad
