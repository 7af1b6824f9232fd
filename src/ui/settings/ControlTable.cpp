#include "ui/settings/ControlTable.h"

#include <QtGlobal>

#include <utility>

namespace mevo {

const char *pageTitle(Page page)
{
    switch (page) {
    case Page::Common:
        return QT_TRANSLATE_NOOP("CSettingDialog", " 常用设置");
    case Page::Advanced:
        return QT_TRANSLATE_NOOP("CSettingDialog", "高级设置");
    case Page::Hardware:
        break;
    }
    return QT_TRANSLATE_NOOP("CSettingDialog", "硬件设置");
}

const std::vector<GroupRow> &controlGroups()
{
    static const std::vector<GroupRow> groups = [] {
        std::vector<GroupRow> all = commonGroups();
        for (std::vector<GroupRow> page : {advancedGroups(), accountGroups(), hardwareGroups()}) {
            for (GroupRow &group : page) {
                all.push_back(std::move(group));
            }
        }
        return all;
    }();
    return groups;
}

namespace control {

namespace {

ControlRow labelled(ControlKind kind, const char *name, const char *label, const char *key)
{
    ControlRow row{kind, name};
    row.label = label;
    row.key = key;
    return row;
}

} // namespace

ControlRow check(const char *name, const char *label, const char *key)
{
    return labelled(ControlKind::Check, name, label, key);
}

ControlRow radio(const char *radioGroup, const char *name, const char *label, const char *key)
{
    ControlRow row = labelled(ControlKind::Radio, name, label, key);
    row.radioGroup = radioGroup;
    return row;
}

ControlRow mouse(const MouseGroup &group, int place, const char *name, const char *label)
{
    ControlRow row = radio(group.key, name, label);
    row.mouse = &group;
    row.place = place;
    return row;
}

ControlRow choice(const char *name, const char *label, const char *key, std::vector<const char *> items,
                  int firstNumber)
{
    ControlRow row = labelled(ControlKind::Choice, name, label, key);
    row.items = std::move(items);
    row.firstNumber = firstNumber;
    return row;
}

ControlRow text(const char *name, const char *label, const char *key)
{
    return labelled(ControlKind::Text, name, label, key);
}

ControlRow secret(const char *name, const char *label, const char *key)
{
    return labelled(ControlKind::Secret, name, label, key);
}

ControlRow path(const char *name, const char *button, const char *label, const char *key)
{
    ControlRow row = labelled(ControlKind::Path, name, label, key);
    row.button = button;
    row.beginsLine = true;
    return row;
}

ControlRow words(const char *label, const char *name, const char *save, const char *semicolon,
                 const char *selector, std::vector<const char *> keys, std::vector<const char *> words)
{
    ControlRow row = labelled(ControlKind::Words, name, label, nullptr);
    row.saveButton = save;
    row.semicolonButton = semicolon;
    row.selector = selector;
    row.keys = std::move(keys);
    row.words = std::move(words);
    row.beginsLine = true;
    return row;
}

ControlRow button(const char *name, const char *label)
{
    return labelled(ControlKind::Button, name, label, nullptr).slot();
}

ControlRow other(ControlKind kind, const char *name, const char *label)
{
    return labelled(kind, name, label, nullptr);
}

} // namespace control

} // namespace mevo
