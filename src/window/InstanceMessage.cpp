#include "window/InstanceMessage.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

namespace {

constexpr int formVersion = 1;
const QString versionKey = QStringLiteral("mevoinput");
const QString callKey = QStringLiteral("do");
const QString textKey = QStringLiteral("text");
const QString answerKey = QStringLiteral("answer");

template <typename Value>
struct Word
{
    const char *word;
    Value value;
};

constexpr Word<InstanceCall::What> callWords[] = {{"show", InstanceCall::What::Show},
                                                  {"talk", InstanceCall::What::Talk},
                                                  {"settings", InstanceCall::What::Settings},
                                                  {"type", InstanceCall::What::Type}};
constexpr Word<InstanceAnswer> answerWords[] = {{"done", InstanceAnswer::Done},
                                                {"kept", InstanceAnswer::Kept},
                                                {"refused", InstanceAnswer::Refused},
                                                {"not-understood", InstanceAnswer::NotUnderstood}};

template <typename Value, std::size_t N>
QString wordOf(const Word<Value> (&words)[N], Value value)
{
    for (const Word<Value> &row : words) {
        if (row.value == value) {
            return QString::fromLatin1(row.word);
        }
    }
    return {};
}

template <typename Value, std::size_t N>
std::optional<Value> valueOf(const Word<Value> (&words)[N], const QString &word)
{
    for (const Word<Value> &row : words) {
        if (word == QLatin1String(row.word)) {
            return row.value;
        }
    }
    return std::nullopt;
}

QByteArray onOneLine(QJsonObject object)
{
    object.insert(versionKey, formVersion);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// Null where the message is none of this version.
QJsonObject objectOf(const QByteArray &message, QString &fault)
{
    if (message.size() > longestInstanceMessage) {
        fault = QStringLiteral("it is too long");
        return {};
    }
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(message, &error).object();
    if (error.error != QJsonParseError::NoError || object.isEmpty()) {
        fault = QStringLiteral("it is no message");
        return {};
    }
    if (object.value(versionKey) != QJsonValue(formVersion)) {
        fault = QStringLiteral("it is of another version");
        return {};
    }
    return object;
}

} // namespace

QByteArray toMessage(const InstanceCall &call)
{
    QJsonObject object{{callKey, wordOf(callWords, call.what)}};
    if (call.what == InstanceCall::What::Type) {
        object.insert(textKey, call.text);
    }
    return onOneLine(object);
}

std::optional<InstanceCall> readInstanceCall(const QByteArray &message, QString *fault)
{
    const QJsonObject object = objectOf(message, *fault);
    if (object.isEmpty()) {
        return std::nullopt;
    }
    const auto what = valueOf(callWords, object.value(callKey).toString());
    if (!what) {
        *fault = QStringLiteral("it asks for what is not known");
        return std::nullopt;
    }
    if (*what == InstanceCall::What::Type && !object.value(textKey).isString()) {
        *fault = QStringLiteral("it has no text");
        return std::nullopt;
    }
    return InstanceCall{*what, object.value(textKey).toString()};
}

QByteArray toMessage(InstanceAnswer answer)
{
    return onOneLine({{answerKey, wordOf(answerWords, answer)}});
}

std::optional<InstanceAnswer> readInstanceAnswer(const QByteArray &message)
{
    QString fault;
    return valueOf(answerWords, objectOf(message, fault).value(answerKey).toString());
}

} // namespace mevo
