#include "receiver/ReceiverFirmware.h"

#include <algorithm>
#include <iterator>

namespace mevo::lab {

namespace {

constexpr char inputReportId = 0x01;
constexpr char featureReportId = 0x05;

constexpr int voiceKeys[] = {1, 2, 3, 6, 8, 14, 16};

/// A custom key's function that the receiver carries out by itself.
struct KeyFunction
{
    int number;
    KeyboardReport chord;
    int wheelSteps;
};
constexpr KeyFunction keyFunctions[] = {
    {9, {0x08, 0x07, 0}, 0},  // to the desktop: GUI+D
    {10, {0x04, 0x4F, 0}, 0}, // forward: Alt+Right
    {11, {0x04, 0x50, 0}, 0}, // back: Alt+Left
    {12, {}, 1},              // scroll up
    {13, {}, -1},             // scroll down
    {15, {0x00, 0x4C, 0}, 0}, // delete
};

/// One field of the settings report: it is meant when its mask bit is set in byte 2.
struct SettingField
{
    quint8 mask;
    int byte;
    quint8 ReceiverFirmware::Settings::*value;
};
constexpr SettingField settingFields[] = {
    {0x10, 5, &ReceiverFirmware::Settings::dpi},
    {0x20, 6, &ReceiverFirmware::Settings::rate},
    {0x40, 7, &ReceiverFirmware::Settings::wheel},
};
constexpr quint8 highestSetting = 2;
constexpr quint8 latchMask = 0x08;
constexpr quint8 latchOnBit = 0x04;

quint8 byteAt(const QByteArray &report, int index)
{
    return quint8(report.at(index));
}

template <typename Range>
bool contains(const Range &range, int value)
{
    return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

QByteArray inputReport(std::initializer_list<quint8> bytes)
{
    QByteArray report(ReceiverFirmware::inputReportSize, '\0');
    std::transform(bytes.begin(), bytes.end(), report.begin(), [](quint8 byte) { return char(byte); });
    return report;
}

} // namespace

struct ReceiverFirmware::Command
{
    quint8 family;
    int operation; ///< value of byte 2, or -1 when byte 2 is an argument
    Handler handler;
};

const ReceiverFirmware::Command ReceiverFirmware::commands[] = {
    {0x20, -1, &ReceiverFirmware::applySettings},      {0x2C, -1, &ReceiverFirmware::answerIdentity},
    {0x2D, -1, &ReceiverFirmware::noteMouseIdRequest}, {0x71, -1, &ReceiverFirmware::assignCustomKey},
    {0x81, 0x01, &ReceiverFirmware::takeHeartbeat},    {0x81, 0x04, &ReceiverFirmware::typeKey},
    {0x81, 0x06, &ReceiverFirmware::typeConsumerKey},  {0x81, 0x07, &ReceiverFirmware::takeGoodbye},
};

ReceiverFirmware::Outcome ReceiverFirmware::powerOn(qint64 nowMs)
{
    m_keyboard = {};
    m_sentPresses.clear();
    m_microphoneLatched = false;
    m_goodbye = false;
    m_lastHeartbeatMs = nowMs;
    m_lastStatusMs = nowMs;
    Outcome outcome;
    outcome.keyboard = m_keyboard;
    return outcome;
}

ReceiverFirmware::Outcome ReceiverFirmware::feature(const QByteArray &report, qint64 nowMs)
{
    Outcome outcome;
    if (report.size() != featureReportSize || report.at(0) != featureReportId) {
        outcome.accepted = false;
        outcome.known = false;
        return outcome;
    }
    const auto row =
        std::find_if(std::begin(commands), std::end(commands), [&report](const Command &command) {
            return command.family == byteAt(report, 1) &&
                   (command.operation < 0 || command.operation == byteAt(report, 2));
        });
    if (row == std::end(commands))
        outcome.known = false;
    else
        (this->*row->handler)(report, nowMs, outcome);
    return outcome;
}

ReceiverFirmware::Outcome ReceiverFirmware::key(int number, bool pressed, qint64 nowMs)
{
    Outcome outcome;
    if (contains(voiceKeys, number)) {
        const auto owed = std::find(m_sentPresses.begin(), m_sentPresses.end(), number);
        const bool releaseOwed = !pressed && owed != m_sentPresses.end();
        if (voiceKeysSilent(nowMs) && !releaseOwed)
            return outcome;
        if (releaseOwed)
            m_sentPresses.erase(owed);
        else if (pressed)
            m_sentPresses.push_back(number);
    }
    send(outcome, keyReport(number, pressed));
    return outcome;
}

ReceiverFirmware::Outcome ReceiverFirmware::customKey(CustomKey which, bool pressed, qint64 nowMs)
{
    const int number = which == CustomKey::Left ? settings.leftKey : settings.rightKey;
    const auto function = std::find_if(std::begin(keyFunctions), std::end(keyFunctions),
                                       [number](const KeyFunction &row) { return row.number == number; });
    if (function == std::end(keyFunctions))
        return key(number, pressed, nowMs);
    Outcome outcome;
    if (function->wheelSteps != 0) {
        outcome.wheelSteps = pressed ? function->wheelSteps : 0;
    } else {
        m_keyboard.modifiers = pressed ? function->chord.modifiers : quint8(0);
        m_keyboard.usage = pressed ? function->chord.usage : quint8(0);
        outcome.keyboard = m_keyboard;
    }
    return outcome;
}

ReceiverFirmware::Outcome ReceiverFirmware::tick(qint64 nowMs)
{
    Outcome outcome;
    if (options.statusIntervalMs > 0 && nowMs - m_lastStatusMs >= options.statusIntervalMs) {
        m_lastStatusMs = nowMs;
        send(outcome, statusReport());
    }
    return outcome;
}

QByteArray ReceiverFirmware::statusReport() const
{
    const int modes = (settings.dpi & 3) | (settings.rate & 3) << 4 | (settings.wheel & 3) << 6;
    return inputReport({quint8(inputReportId), 0x20, settings.leftKey, settings.rightKey, 0, quint8(modes), 0,
                        quint8(settings.battery & 3)});
}

QByteArray ReceiverFirmware::identityReport() const
{
    const auto &serial = identity.serial;
    return inputReport({quint8(inputReportId), 0x0C, serial[0], serial[1], serial[2], identity.secondGroup, 0,
                        identity.firstGroup});
}

QByteArray ReceiverFirmware::keyReport(int number, bool pressed)
{
    return inputReport({quint8(inputReportId), 0x70, quint8(number), quint8(pressed ? 1 : 0)});
}

bool ReceiverFirmware::voiceKeysSilent(qint64 nowMs) const
{
    return options.heartbeatRule && (m_goodbye || nowMs - m_lastHeartbeatMs >= options.heartbeatTimeoutMs);
}

void ReceiverFirmware::applySettings(const QByteArray &report, qint64 nowMs, Outcome &outcome)
{
    const quint8 mask = byteAt(report, 2);
    bool changed = false;
    for (const SettingField &field : settingFields) {
        const quint8 value = byteAt(report, field.byte);
        if ((mask & field.mask) == 0 || value > highestSetting)
            continue;
        settings.*field.value = value;
        changed = true;
    }
    if (mask & latchMask)
        m_microphoneLatched = (mask & latchOnBit) != 0;
    if (changed) {
        m_lastStatusMs = nowMs;
        send(outcome, statusReport());
    }
}

void ReceiverFirmware::send(Outcome &outcome, const QByteArray &bytes) const
{
    if (!options.mute)
        outcome.reports.push_back(bytes);
}

void ReceiverFirmware::answerIdentity(const QByteArray &, qint64, Outcome &outcome)
{
    send(outcome, identityReport());
}

void ReceiverFirmware::noteMouseIdRequest(const QByteArray &, qint64, Outcome &) {}

void ReceiverFirmware::assignCustomKey(const QByteArray &report, qint64 nowMs, Outcome &outcome)
{
    const quint8 index = byteAt(report, 2);
    if (index != 1 && index != 2) {
        outcome.known = false;
        return;
    }
    (index == 1 ? settings.leftKey : settings.rightKey) = byteAt(report, 3);
    m_lastStatusMs = nowMs;
    send(outcome, statusReport());
}

void ReceiverFirmware::takeHeartbeat(const QByteArray &, qint64 nowMs, Outcome &)
{
    m_goodbye = false;
    m_lastHeartbeatMs = nowMs;
}

void ReceiverFirmware::typeKey(const QByteArray &report, qint64, Outcome &outcome)
{
    m_keyboard.modifiers = byteAt(report, 3);
    m_keyboard.usage = byteAt(report, 4);
    outcome.keyboard = m_keyboard;
}

void ReceiverFirmware::typeConsumerKey(const QByteArray &report, qint64, Outcome &outcome)
{
    m_keyboard.consumer = quint16((byteAt(report, 3) & 0x0F) << 8 | byteAt(report, 4));
    outcome.keyboard = m_keyboard;
}

void ReceiverFirmware::takeGoodbye(const QByteArray &, qint64, Outcome &)
{
    m_goodbye = true;
}

} // namespace mevo::lab
