#pragma once

#include "commands/CommandRow.h"

#include <QStringList>

#include <vector>

namespace mevo {

/// What the editor of the command words shows for rows of one type. The texts are translated under the
/// context "CommandWordDialog".
struct CommandForm
{
    CommandType type;
    const char *view;           ///< label of the button that picks the view of this type
    const char *wordHint;       ///< placeholder of the field of spoken forms
    const char *contentHint;    ///< placeholder of the content field
    const char *newContent;     ///< content of a row just added
    const char *contentPattern; ///< regular expression that the content keeps; null for free text
    int contentLength;          ///< most characters of the content
    /// Where rows added in this view go when the user leaves it and wants them saved. The two keyboards
    /// stand one place off, and users' tables have grown with that.
    CommandType savedOnLeaving;
};

const CommandForm &commandForm(CommandType type);

/// A key combination as a row of the type "快捷键" holds it.
struct ShortcutParts
{
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool win = false;
    QString key; ///< name of a key, empty for none
};

/// "Control+", "Alt+", "Shift+", "Win+", as they are set, then the key; without one no "+" stays at the end.
QString shortcutText(const ShortcutParts &parts);
/// Takes a row's text apart. The last part that is no modifier is the key.
ShortcutParts shortcutParts(const QString &text);

/// The numbers of the rows that have `text` in one of their spoken forms, each once, in order. An empty
/// text stands in every form.
std::vector<int> searchCommandWords(const CommandRows &rows, const QString &text);

} // namespace mevo
