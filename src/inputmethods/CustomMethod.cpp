#include "inputmethods/CustomMethod.h"

#include "base/SettingsFile.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace mevo {

const QString customMethodGroup = QStringLiteral("CustomInputMethod");

namespace {

constexpr int modifierCtrl = 1;
constexpr int usageF1 = 0x3a;
constexpr int usageF2 = 0x3b;
constexpr int usageF6 = 0x3f;
constexpr int usageF13 = 0x68;
constexpr int lastUsage = 0xdd;
/// So many keys at the table's begin are of the keyboard page; media keys come behind them.
constexpr int keyboardKeys = 69;

std::optional<int> modifierBits(const QString &text)
{
    static constexpr struct
    {
        const char *name;
        int bit;
    } names[] = {{"Ctrl", 1}, {"Control", 1}, {"Shift", 2}, {"Alt", 4},
                 {"Win", 8},  {"Super", 8},   {"Meta", 8}};
    int bits = 0;
    static const QRegularExpression between(QStringLiteral("[+,;\\s]+"));
    for (const QString &word : text.split(between, Qt::SkipEmptyParts)) {
        const auto *const found = std::find_if(std::begin(names), std::end(names), [&word](const auto &name) {
            return word.compare(QLatin1String(name.name), Qt::CaseInsensitive) == 0;
        });
        if (found == std::end(names)) {
            return std::nullopt;
        }
        bits |= found->bit;
    }
    return bits;
}

/// 0 for no key; nothing for a text that names none.
std::optional<int> keyUsage(const QString &text, const KeyTable &keys)
{
    if (text.isEmpty()) {
        return 0;
    }
    bool isNumber = false;
    int usage = 0;
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        usage = text.toInt(&isNumber, 16);
    } else if (text.startsWith(QLatin1Char('F'), Qt::CaseInsensitive) && text.size() > 1) {
        const int number = text.midRef(1).toInt(&isNumber);
        isNumber = isNumber && number >= 1 && number <= 24;
        usage = number <= 12 ? usageF1 + number - 1 : usageF13 + number - 13;
    } else {
        for (int i = 0; i < std::min(keyboardKeys, keys.names.size()) && !isNumber; ++i) {
            if (keys.names[i].compare(text, Qt::CaseInsensitive) == 0) {
                usage = keys.codes.value(i).toInt(&isNumber, 16);
            }
        }
    }
    return isNumber && usage > 0 && usage <= lastUsage ? std::make_optional(usage) : std::nullopt;
}

std::optional<CustomMethod> described(const CustomDescription &description, const KeyTable &keys)
{
    const auto modifiers = modifierBits(description.Modifiers);
    const auto usage = keyUsage(description.Key.trimmed(), keys);
    const QString mode = description.Mode.trimmed().toLower();
    const bool tap = mode == QLatin1String("tap");
    if (!modifiers || !usage || (*modifiers == 0 && *usage == 0) ||
        (!tap && !mode.isEmpty() && mode != QLatin1String("hold"))) {
        return std::nullopt;
    }
    return CustomMethod{*modifiers, *usage, !tap, description.WindowClass.trimmed(), false};
}

} // namespace

CustomDescription readCustomDescription(const SettingsFile &group)
{
    const auto text = [&group](const char *key) { return group.value(QLatin1String(key)).toString(); };
    return {text("Key"), text("Modifiers"), text("Mode"), text("WindowClass")};
}

QString programBaseName(const QString &path)
{
    const QString name = QString(path).replace(QLatin1Char('\\'), QLatin1Char('/')).section(u'/', -1);
    return name.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive) ? name.chopped(4) : name;
}

std::optional<CustomMethod> customMethod(const QString &path, const CustomDescription &description,
                                         const KeyTable &keys)
{
    const QString name = programBaseName(path);
    if (name.isEmpty()) {
        return std::nullopt;
    }
    if (name == QLatin1String("VoiceInput")) {
        return CustomMethod{0, usageF2, false, {}, false};
    }
    if (name == QLatin1String("iFlyVoice")) {
        return CustomMethod{0, usageF6, false, {}, false};
    }
    if (name == QLatin1String("SpeechInput")) {
        return CustomMethod{modifierCtrl, 0, false, {}, true};
    }
    return described(description, keys);
}

} // namespace mevo
