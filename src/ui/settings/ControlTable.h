#pragma once

#include "device/MouseSettings.h"

#include <vector>

namespace mevo {

enum class ControlKind {
    Check,   ///< a flag
    Radio,   ///< one of a group, of which each has a flag or a value of the mouse
    Choice,  ///< a list of which one is chosen, a number
    Text,    ///< a text in one line
    Secret,  ///< the same, not to be read by others
    Account, ///< a part of an account of the user's, which is kept elsewhere and not shown again
    Path,    ///< a text with a button that finds a file
    Words,   ///< a text of words with ";" between them, with a button that saves and one that adds a ";"
    Button,
    Picture, ///< a button with a picture
    Caption, ///< a text to read
    Notice,  ///< a text that can be clicked, shown while there is one
    Level    ///< a bar that moves
};

/// The pages in the order of their tabs.
enum class Page { Common, Advanced, Hardware };

/// What must be so for a control to be shown; see isShown().
enum class ShownWhen {
    Always,
    Never, ///< stands for another control, which is shown
    Baidu,
    Tencent,
    TencentDialect,
    XunFei,
    XunFeiDialect,
    XunFeiSmallLan,
    InputMethod,
    CustomMethod,
    Battery,
    RunFigures
};

/// One control of the settings dialog. Its texts are source texts of the context "CSettingDialog".
struct ControlRow
{
    ControlKind kind;
    const char *name;
    const char *label = nullptr;
    const char *key = nullptr; ///< of the group of settings; null when it writes none by itself
    const char *tipText = nullptr;
    ShownWhen shown = ShownWhen::Always;
    bool beginsLine = false;
    bool hasSlot =
        false; ///< its signal goes to the dialog's slot "on_NAME_SIGNAL", which does what is to be done
    const char *group = "MainSetting";    ///< of the settings file
    const char *radioGroup = nullptr;     ///< of radio buttons, one of which is on
    const char *excluded = nullptr;       ///< the check box that goes off when this one goes on
    const MouseGroup *mouse = nullptr;    ///< of a radio button that sets the mouse
    int place = 0;                        ///< its place in that group
    std::vector<const char *> items = {}; ///< of a choice
    int firstNumber = 0;                  ///< of a choice: the number of its first item
    const char *button = nullptr;         ///< of a path: the button that finds the file
    const char *saveButton = nullptr;     ///< of words
    const char *semicolonButton = nullptr;
    const char *selector = nullptr; ///< of words: the choice or group of radio buttons that picks the key
    std::vector<const char *> keys = {};  ///< of words, one for each place of the selector
    std::vector<const char *> words = {}; ///< to be spoken, shown while the file has no such key

    ControlRow tip(const char *text) const { return with(&ControlRow::tipText, text); }
    ControlRow when(ShownWhen rule) const { return with(&ControlRow::shown, rule); }
    ControlRow line() const { return with(&ControlRow::beginsLine, true); }
    ControlRow slot() const { return with(&ControlRow::hasSlot, true); }
    ControlRow excludes(const char *other) const { return with(&ControlRow::excluded, other); }
    ControlRow in(const char *settingsGroup) const { return with(&ControlRow::group, settingsGroup); }

private:
    template <typename T>
    ControlRow with(T ControlRow::*member, T value) const
    {
        ControlRow row = *this;
        row.*member = value;
        return row;
    }
};

/// A box with a title around controls. One that names a parent stands within it.
struct GroupRow
{
    const char *name;
    Page page;
    const char *title;
    std::vector<ControlRow> rows;
    const char *parent = nullptr;
    ShownWhen shown = ShownWhen::Always;
};

/// Title of a page as its tab shows it, in the source language.
const char *pageTitle(Page page);

/// Every group of the dialog, page by page, parents before their children.
const std::vector<GroupRow> &controlGroups();

std::vector<GroupRow> commonGroups();
std::vector<GroupRow> advancedGroups();
std::vector<GroupRow> accountGroups();
std::vector<GroupRow> hardwareGroups();

namespace control {

ControlRow check(const char *name, const char *label, const char *key = nullptr);
ControlRow radio(const char *radioGroup, const char *name, const char *label, const char *key = nullptr);
ControlRow mouse(const MouseGroup &group, int place, const char *name, const char *label);
ControlRow choice(const char *name, const char *label, const char *key, std::vector<const char *> items,
                  int firstNumber = 0);
ControlRow text(const char *name, const char *label, const char *key);
ControlRow secret(const char *name, const char *label, const char *key);
ControlRow path(const char *name, const char *button, const char *label, const char *key);
ControlRow words(const char *label, const char *name, const char *save, const char *semicolon,
                 const char *selector, std::vector<const char *> keys, std::vector<const char *> words = {});
ControlRow button(const char *name, const char *label);
ControlRow other(ControlKind kind, const char *name, const char *label = nullptr);

} // namespace control

} // namespace mevo
