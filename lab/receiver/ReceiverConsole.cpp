#include "receiver/ReceiverConsole.h"

#include "receiver/LaunchEnvironment.h"
#include "receiver/WaitUntil.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>
#include <optional>

namespace mevo::lab {

namespace {

using Answer = ReceiverConsole::Answer;

constexpr int defaultWaitMs = 20000;

struct NamedKey
{
    const char *name;
    int number;
};
constexpr NamedKey namedKeys[] = {
    {"microphone", 8}, {"typing", 3}, {"search", 14}, {"command", 6}, {"translate", 2},
};

/// A field of the status report, given by the values that people use for it.
struct StatusField
{
    const char *name;
    quint8 ReceiverFirmware::Settings::*member;
    int values[4]; ///< the value shown, in the order of the codes; -1 = no such code. All 0: any byte
};
constexpr StatusField statusFields[] = {
    {"battery", &ReceiverFirmware::Settings::battery, {0, 1, 2, 3}},
    {"dpi", &ReceiverFirmware::Settings::dpi, {800, 1600, 2400, -1}},
    {"rate", &ReceiverFirmware::Settings::rate, {125, 250, 500, -1}},
    {"wheel", &ReceiverFirmware::Settings::wheel, {0, 1, 2, -1}},
    {"left", &ReceiverFirmware::Settings::leftKey, {0, 0, 0, 0}},
    {"right", &ReceiverFirmware::Settings::rightKey, {0, 0, 0, 0}},
};

Answer fail(const QString &text)
{
    return {false, text};
}

std::optional<quint8> codeOf(const StatusField &field, const QString &word)
{
    bool isNumber = false;
    const int value = word.toInt(&isNumber);
    if (!isNumber || value < 0)
        return std::nullopt;
    if (std::all_of(std::begin(field.values), std::end(field.values), [](int shown) { return shown == 0; }))
        return value <= 0xFF ? std::optional<quint8>(quint8(value)) : std::nullopt;
    const auto *shown = std::find(std::begin(field.values), std::end(field.values), value);
    if (shown == std::end(field.values))
        return std::nullopt;
    return quint8(shown - std::begin(field.values));
}

/// Splits "... within 500" off; the default time when it is not there, nothing when it is no number.
std::optional<int> takeMilliseconds(QStringList &words, const QString &keyword)
{
    if (words.size() < 2 || words.at(words.size() - 2) != keyword)
        return defaultWaitMs;
    bool isNumber = false;
    const int milliseconds = words.last().toInt(&isNumber);
    words.erase(words.end() - 2, words.end());
    return isNumber && milliseconds >= 0 ? std::optional<int>(milliseconds) : std::nullopt;
}

std::optional<bool> onOrOff(const QStringList &words)
{
    if (words == QStringList{QStringLiteral("on")})
        return true;
    if (words == QStringList{QStringLiteral("off")})
        return false;
    return std::nullopt;
}

QString featuresSeen(const VirtualReceiver &receiver, std::size_t first)
{
    QStringList seen;
    for (const LoggedReport &report : receiver.log().since(first)) {
        if (report.kind == LoggedReport::Feature)
            seen.append(QString::fromLatin1(spacedHex(report.bytes)));
    }
    return seen.isEmpty() ? QStringLiteral("none") : seen.join(QStringLiteral("; "));
}

} // namespace

struct ReceiverConsole::Command
{
    const char *name;
    Answer (ReceiverConsole::*run)(Words words);
    const char *usage;
};

const ReceiverConsole::Command ReceiverConsole::commands[] = {
    {"plug", &ReceiverConsole::plug, "plug: the receiver is plugged in"},
    {"unplug", &ReceiverConsole::unplug, "unplug: the receiver is pulled out"},
    {"vanish", &ReceiverConsole::vanish, "vanish: the node goes without an event"},
    {"second", &ReceiverConsole::second, "second plug|unplug: a second receiver"},
    {"press", &ReceiverConsole::press,
     "press KEY: a number, left, right, microphone, typing, search, command, translate"},
    {"release", &ReceiverConsole::release, "release KEY"},
    {"report", &ReceiverConsole::report, "report HEX: any bytes as an input report"},
    {"status", &ReceiverConsole::status,
     "status [battery 0-3] [dpi 800|1600|2400] [rate 125|250|500] [wheel 0-2] [left V] [right V] [every MS]"},
    {"identity", &ReceiverConsole::identity, "identity 02-01-001357: the identity that is answered"},
    {"heartbeat", &ReceiverConsole::heartbeat,
     "heartbeat on|off: whether voice keys fall silent without a heartbeat"},
    {"mute", &ReceiverConsole::mute, "mute on|off: whether it never sends a report of its own"},
    {"refuse", &ReceiverConsole::refuse, "refuse all|none|HEX: feature reports that are refused"},
    {"typing", &ReceiverConsole::typing, "typing on|off: whether told keys reach the X display"},
    {"mark", &ReceiverConsole::markHere, "mark: waits look only at what comes from here on"},
    {"wait-feature", &ReceiverConsole::waitFeature, "wait-feature HEX [within MS]"},
    {"no-feature", &ReceiverConsole::noFeature,
     "no-feature HEX [for MS]: none since the mark and for a while"},
    {"wait-voice-keys", &ReceiverConsole::waitVoiceKeys, "wait-voice-keys awake|silent [within MS]"},
    {"wait-open", &ReceiverConsole::waitOpen, "wait-open N [within MS]: the node is open N times"},
    {"features", &ReceiverConsole::log, "features: all reports of the log, as JSON"},
    {"state", &ReceiverConsole::state, "state: the receiver's state, as JSON"},
    {"env", &ReceiverConsole::environment, "env PROGRAM: the variables with which PROGRAM sees the receiver"},
};

ReceiverConsole::ReceiverConsole(KeyboardPort *keyboard)
    : m_first(m_bed, keyboard, VirtualReceiver::firstPort)
    , m_second(m_bed, keyboard, VirtualReceiver::secondPort)
{
}

bool ReceiverConsole::knows(const QString &command)
{
    return std::any_of(std::begin(commands), std::end(commands),
                       [&command](const Command &row) { return command == QLatin1String(row.name); });
}

QStringList ReceiverConsole::help()
{
    QStringList lines;
    for (const Command &row : commands)
        lines.append(QLatin1String(row.usage));
    return lines;
}

Answer ReceiverConsole::execute(const QStringList &words)
{
    const QString name = words.value(0);
    const auto row = std::find_if(std::begin(commands), std::end(commands), [&name](const Command &command) {
        return name == QLatin1String(command.name);
    });
    if (row == std::end(commands))
        return fail(QStringLiteral("unknown command %1").arg(name));
    return (this->*row->run)(words.mid(1));
}

void ReceiverConsole::mark()
{
    m_mark = m_first.log().size();
}

Answer ReceiverConsole::plug(Words)
{
    return m_first.plug() ? Answer{} : fail(QStringLiteral("it is plugged in already"));
}

Answer ReceiverConsole::unplug(Words)
{
    return m_first.unplug() ? Answer{} : fail(QStringLiteral("it is not plugged in"));
}

Answer ReceiverConsole::vanish(Words)
{
    return m_first.vanish() ? Answer{} : fail(QStringLiteral("it is not plugged in"));
}

Answer ReceiverConsole::second(Words words)
{
    if (words == QStringList{QStringLiteral("plug")})
        return m_second.plug() ? Answer{} : fail(QStringLiteral("it is plugged in already"));
    if (words == QStringList{QStringLiteral("unplug")})
        return m_second.unplug() ? Answer{} : fail(QStringLiteral("it is not plugged in"));
    return fail(QStringLiteral("second plug or second unplug"));
}

Answer ReceiverConsole::press(Words words)
{
    return moveKey(words, true);
}

Answer ReceiverConsole::release(Words words)
{
    return moveKey(words, false);
}

Answer ReceiverConsole::moveKey(Words words, bool pressed)
{
    const QString key = words.value(0);
    VirtualReceiver::KeyFate fate;
    if (key == QLatin1String("left") || key == QLatin1String("right")) {
        using CustomKey = VirtualReceiver::CustomKey;
        fate = m_first.customKey(key == QLatin1String("left") ? CustomKey::Left : CustomKey::Right, pressed);
    } else {
        const auto *named =
            std::find_if(std::begin(namedKeys), std::end(namedKeys),
                         [&key](const NamedKey &row) { return key == QLatin1String(row.name); });
        bool isNumber = true;
        const int number = named == std::end(namedKeys) ? key.toInt(&isNumber) : named->number;
        if (!isNumber || number < 0 || number > 0xFF)
            return fail(QStringLiteral("no key %1").arg(key));
        fate = m_first.key(number, pressed);
    }
    switch (fate) {
    case VirtualReceiver::KeyFate::Sent:
        return {true, QStringLiteral("sent")};
    case VirtualReceiver::KeyFate::Silent:
        return {true, QStringLiteral("silent")};
    case VirtualReceiver::KeyFate::Unplugged:
        break;
    }
    return fail(QStringLiteral("it is not plugged in"));
}

Answer ReceiverConsole::report(Words words)
{
    const QByteArray bytes = fromSpacedHex(words.join(QLatin1Char(' ')).toLatin1());
    if (bytes.isEmpty())
        return fail(QStringLiteral("not hexadecimal bytes"));
    return m_first.sendRaw(bytes) ? Answer{} : fail(QStringLiteral("it is not plugged in"));
}

Answer ReceiverConsole::status(Words words)
{
    if (words.size() % 2 != 0)
        return fail(QStringLiteral("a name without a value"));
    ReceiverFirmware::Settings settings;
    ReceiverFirmware::Options options;
    m_first.configure([&](ReceiverFirmware &firmware) {
        settings = firmware.settings;
        options = firmware.options;
    });
    for (int index = 0; index < words.size(); index += 2) {
        const QString &name = words.at(index);
        const QString &value = words.at(index + 1);
        if (name == QLatin1String("every")) {
            bool isNumber = false;
            options.statusIntervalMs = value.toInt(&isNumber);
            if (!isNumber || options.statusIntervalMs < 0)
                return fail(QStringLiteral("%1 is no interval").arg(value));
            continue;
        }
        const auto *field =
            std::find_if(std::begin(statusFields), std::end(statusFields),
                         [&](const StatusField &row) { return name == QLatin1String(row.name); });
        if (field == std::end(statusFields))
            return fail(QStringLiteral("the status has no %1").arg(name));
        const std::optional<quint8> code = codeOf(*field, value);
        if (!code)
            return fail(QStringLiteral("%1 cannot be %2").arg(name, value));
        settings.*field->member = *code;
    }
    m_first.configure([&](ReceiverFirmware &firmware) {
        firmware.settings = settings;
        firmware.options = options;
    });
    return {true, m_first.sendStatus() ? QStringLiteral("sent") : QStringLiteral("kept")};
}

Answer ReceiverConsole::identity(Words words)
{
    static const QRegularExpression form(
        QStringLiteral("^([0-9a-fA-F]{2})-([0-9a-fA-F]{2})-([0-9a-fA-F]{6})$"));
    const QRegularExpressionMatch match = form.match(words.value(0));
    if (!match.hasMatch())
        return fail(QStringLiteral("an identity looks like 02-01-001357"));
    const auto hex = [&match](int group) { return QByteArray::fromHex(match.captured(group).toLatin1()); };
    const QByteArray serial = hex(3);
    m_first.configure([&](ReceiverFirmware &firmware) {
        firmware.identity.firstGroup = quint8(hex(1).at(0));
        firmware.identity.secondGroup = quint8(hex(2).at(0));
        firmware.identity.serial = {quint8(serial.at(2)), quint8(serial.at(1)), quint8(serial.at(0))};
    });
    return {};
}

Answer ReceiverConsole::heartbeat(Words words)
{
    const std::optional<bool> on = onOrOff(words);
    if (!on)
        return fail(QStringLiteral("on or off"));
    m_first.configure([&](ReceiverFirmware &firmware) { firmware.options.heartbeatRule = *on; });
    return {};
}

Answer ReceiverConsole::mute(Words words)
{
    const std::optional<bool> on = onOrOff(words);
    if (!on)
        return fail(QStringLiteral("on or off"));
    m_first.configure([&](ReceiverFirmware &firmware) { firmware.options.mute = *on; });
    return {};
}

Answer ReceiverConsole::refuse(Words words)
{
    if (words == QStringList{QStringLiteral("none")}) {
        m_first.accept();
    } else if (words == QStringList{QStringLiteral("all")}) {
        m_first.refuse({});
    } else {
        const QByteArray prefix = fromSpacedHex(words.join(QLatin1Char(' ')).toLatin1());
        if (prefix.isEmpty())
            return fail(QStringLiteral("all, none or hexadecimal bytes"));
        m_first.refuse(prefix);
    }
    return {};
}

Answer ReceiverConsole::typing(Words words)
{
    const std::optional<bool> on = onOrOff(words);
    if (!on)
        return fail(QStringLiteral("on or off"));
    m_first.setTyping(*on);
    return {};
}

Answer ReceiverConsole::markHere(Words)
{
    mark();
    return {};
}

Answer ReceiverConsole::waitFeature(Words words)
{
    QStringList rest = words;
    const std::optional<int> milliseconds = takeMilliseconds(rest, QStringLiteral("within"));
    const QByteArray prefix = fromSpacedHex(rest.join(QLatin1Char(' ')).toLatin1());
    if (!milliseconds || prefix.isEmpty())
        return fail(QStringLiteral("hexadecimal bytes [within MS]"));
    if (m_first.waitForFeature(prefix, m_mark, *milliseconds))
        return {};
    return fail(QStringLiteral("expected %1, seen %2")
                    .arg(QString::fromLatin1(spacedHex(prefix)), featuresSeen(m_first, m_mark)));
}

Answer ReceiverConsole::noFeature(Words words)
{
    QStringList rest = words;
    const std::optional<int> milliseconds = takeMilliseconds(rest, QStringLiteral("for"));
    const QByteArray prefix = fromSpacedHex(rest.join(QLatin1Char(' ')).toLatin1());
    if (!milliseconds || prefix.isEmpty())
        return fail(QStringLiteral("hexadecimal bytes [for MS]"));
    if (!m_first.waitForFeature(prefix, m_mark, *milliseconds))
        return {};
    return fail(QStringLiteral("expected no %1, seen %2")
                    .arg(QString::fromLatin1(spacedHex(prefix)), featuresSeen(m_first, m_mark)));
}

Answer ReceiverConsole::waitVoiceKeys(Words words)
{
    QStringList rest = words;
    const std::optional<int> milliseconds = takeMilliseconds(rest, QStringLiteral("within"));
    const bool silent = rest == QStringList{QStringLiteral("silent")};
    if (!milliseconds || (!silent && rest != QStringList{QStringLiteral("awake")}))
        return fail(QStringLiteral("awake or silent [within MS]"));
    if (waitUntil([&] { return m_first.voiceKeysSilent() == silent; }, *milliseconds))
        return {};
    return fail(QStringLiteral("expected %1, seen %2")
                    .arg(rest.first(), silent ? QStringLiteral("awake") : QStringLiteral("silent")));
}

Answer ReceiverConsole::waitOpen(Words words)
{
    QStringList rest = words;
    const std::optional<int> milliseconds = takeMilliseconds(rest, QStringLiteral("within"));
    bool isNumber = false;
    const int count = rest.value(0).toInt(&isNumber);
    if (!milliseconds || !isNumber)
        return fail(QStringLiteral("a number [within MS]"));
    if (waitUntil([&] { return m_first.openCount() == count; }, *milliseconds))
        return {};
    return fail(QStringLiteral("expected %1 opens, seen %2").arg(count).arg(m_first.openCount()));
}

Answer ReceiverConsole::log(Words)
{
    QJsonArray reports;
    for (const LoggedReport &report : m_first.log().since())
        reports.append(report.toJson());
    return {true, QString::fromUtf8(QJsonDocument(reports).toJson(QJsonDocument::Compact))};
}

Answer ReceiverConsole::state(Words)
{
    QJsonObject state{{QStringLiteral("plugged"), m_first.plugged()},
                      {QStringLiteral("opens"), m_first.openCount()},
                      {QStringLiteral("voiceKeysSilent"), m_first.voiceKeysSilent()}};
    m_first.configure([&state](ReceiverFirmware &firmware) {
        state.insert(QStringLiteral("microphoneLatched"), firmware.microphoneLatched());
        for (const StatusField &field : statusFields) {
            const quint8 code = firmware.settings.*field.member;
            const bool anyByte = field.values[1] == 0;
            state.insert(QLatin1String(field.name), anyByte ? int(code) : field.values[code & 3]);
        }
    });
    return {true, QString::fromUtf8(QJsonDocument(state).toJson(QJsonDocument::Compact))};
}

Answer ReceiverConsole::environment(Words words)
{
    if (words.isEmpty())
        return fail(QStringLiteral("which program?"));
    const QProcessEnvironment variables = launchEnvironment(m_bed.root(), words.first());
    QStringList settings;
    for (const QString &name : {QStringLiteral("UMOCKDEV_DIR"), QStringLiteral("LD_PRELOAD")})
        settings.append(name + QLatin1Char('=') + variables.value(name));
    return {true, settings.join(QLatin1Char(' '))};
}

} // namespace mevo::lab
