#pragma once

#include "engines/EngineCatalogue.h"
#include "state/EngineState.h"
#include "state/RecorderState.h"

#include <QString>
#include <QVector>

#include <vector>

namespace mevo {

/// One row of the language menu; null for a separator.
struct MenuEntry
{
    const LanguageRow *language = nullptr;
    bool checked = false;
};

/// What building the menu comes to.
struct AsrMenu
{
    std::vector<MenuEntry> entries;   ///< below the title row
    QString buttonImage;              ///< style sheet for the language button, empty to leave it
    bool forceTencent = false;        ///< Baidu is hidden: Tencent becomes the engine, and is written
    bool clearTencentDialect = false; ///< another Tencent row is in force
};

/// The menu's facts beside the two states.
struct MenuFacts
{
    bool xpClass = false;
    bool vertical = false;
    bool customMethodKnown = false; ///< the custom input method's path names a program that we know
};

/// Builds the menu of languages and engines from what the device may see and what is in force.
AsrMenu buildAsrMenu(const EngineState &state, const RecorderState &recorder, const MenuFacts &facts);

} // namespace mevo
