#include "commands/CommandFaults.h"

#include "commands/CommandForm.h"
#include "commands/DirectWords.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace mevo {

namespace {

struct RowPlace
{
    CommandType type;
    std::size_t row;
};

/// The numbers 0 to count - 1 as they are sorted as texts: 0, 1, 10, 11, 2.
std::vector<std::size_t> numbersAsTexts(std::size_t count)
{
    std::vector<std::pair<QString, std::size_t>> names;
    names.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        names.emplace_back(QString::number(number), number);
    }
    std::sort(names.begin(), names.end());
    std::vector<std::size_t> numbers;
    numbers.reserve(count);
    for (const auto &name : names) {
        numbers.push_back(name.second);
    }
    return numbers;
}

/// All rows in the order in which the matcher will meet them. `rewritten` is the type whose rows get new
/// numbers before they are merged.
std::vector<RowPlace> matchingOrder(const CommandTables &tables, std::optional<CommandType> rewritten)
{
    std::vector<RowPlace> merged;
    for (const CommandType type : allCommandTypes) {
        const std::size_t count = tables[std::size_t(type)].size();
        std::vector<std::size_t> rows(count);
        std::iota(rows.begin(), rows.end(), std::size_t(0));
        for (const std::size_t row : type == rewritten ? numbersAsTexts(count) : rows) {
            merged.push_back({type, row});
        }
    }
    std::vector<RowPlace> met;
    met.reserve(merged.size());
    for (const std::size_t number : numbersAsTexts(merged.size())) {
        met.push_back(merged[number]);
    }
    return met;
}

bool isMatched(CommandType type)
{
    return type != CommandType::VoiceKeyboard && type != CommandType::PinyinKeyboard;
}

/// The direct word that takes the beginning of `word`; empty when none does.
QString directPrefix(const QString &word, const CommandFaultSettings &settings)
{
    const int command = directPrefixLength(settings.commandPrefixes, word);
    return word.left(command > 0 ? command : directPrefixLength(settings.searchPrefixes, word));
}

std::optional<CommandFault> faultOfAction(const CommandRow &row, CommandType type,
                                          const CommandFaultSettings &settings,
                                          const std::function<bool(const QString &, bool)> &exists)
{
    using Kind = CommandFault::Kind;
    if (type == CommandType::File && !exists(row.CmdWordContents, false)) {
        return CommandFault{Kind::MissingFile, {}, row.CmdWordContents};
    }
    if (type == CommandType::Directory && !exists(row.CmdWordContents, true)) {
        return CommandFault{Kind::MissingFolder, {}, row.CmdWordContents};
    }
    if (type == CommandType::Shortcut) {
        const QString key = shortcutParts(row.CmdWordContents).key;
        if (!key.isEmpty() && !settings.keys.contains(key)) {
            return CommandFault{Kind::UnknownKey, {}, key};
        }
        if (row.CmdWordContents.isEmpty()) {
            return CommandFault{Kind::NothingToPlay, {}, {}};
        }
    }
    return std::nullopt;
}

} // namespace

CommandFaultSettings::CommandFaultSettings(const SettingsState &settings)
    : keys(settings.KeyShowNames)
{
    if (settings.Enable_SwitchFunctionMode) {
        modeWords = settings.SetEnterVoiceTypeModeSwitchModeFlags +
                    settings.SetEnterVoiceTranslateModeSwitchModeFlags +
                    settings.SetEnterVoiceCommandWordModeSwitchModeFlags +
                    settings.SetEnterVoiceSearchModeSwitchModeFlags;
    }
    if (settings.Enable_CommandWord_Direct) {
        commandPrefixes = settings.CmdFlags_Contents_Driect;
    }
    if (settings.Enable_Search_Direct) {
        searchPrefixes = settings.SearchFlags_Contents_Driect;
    }
}

CommandDiagnoses diagnoseCommands(const CommandTables &tables, std::optional<CommandType> type,
                                  bool rewritten, const CommandFaultSettings &settings,
                                  const std::function<bool(const QString &, bool)> &exists)
{
    CommandDiagnoses diagnoses;
    const auto isAsked = [type](CommandType one) { return type ? one == *type : isMatched(one); };
    for (const CommandType one : allCommandTypes) {
        if (isAsked(one)) {
            diagnoses[std::size_t(one)].resize(tables[std::size_t(one)].size());
        }
    }
    using Kind = CommandFault::Kind;
    QHash<QString, const CommandRow *> first;
    for (const RowPlace &place : matchingOrder(tables, rewritten ? type : std::nullopt)) {
        const CommandRow &row = tables[std::size_t(place.type)][place.row];
        const auto ownType = commandTypeOfLabel(row.CmdWordType);
        if (!ownType || !isMatched(*ownType)) {
            if (isAsked(place.type) && isMatched(place.type)) {
                diagnoses[std::size_t(place.type)][place.row] = {{{Kind::OtherTable, {}, row.CmdWordType}},
                                                                 true};
            }
            continue;
        }
        const QStringList words = row.CommandWords.split(QLatin1Char(';'));
        std::vector<CommandFault> faults;
        int dead = 0;
        for (const QString &word : words) {
            const CommandRow *&holder = first[word];
            if (holder == nullptr) {
                holder = &row;
            }
            if (word.isEmpty()) {
                faults.push_back({Kind::EmptyWord, {}, {}});
            } else if (const QString prefix = directPrefix(word, settings); !prefix.isEmpty()) {
                faults.push_back({Kind::DirectPrefix, word, prefix});
            } else if (settings.modeWords.contains(word)) {
                faults.push_back({Kind::ModeWord, word, {}});
            } else if (holder != &row) {
                faults.push_back({Kind::Shadowed, word, holder->CmdWordContents});
            } else {
                continue;
            }
            ++dead;
        }
        if (!isAsked(place.type) || !isMatched(place.type)) {
            continue;
        }
        CommandDiagnosis &diagnosis = diagnoses[std::size_t(place.type)][place.row];
        diagnosis.inert = dead == words.size();
        diagnosis.faults = std::move(faults);
        if (const auto fault = faultOfAction(row, *ownType, settings, exists)) {
            diagnosis.faults.push_back(*fault);
            diagnosis.inert = true;
        }
    }
    return diagnoses;
}

} // namespace mevo
