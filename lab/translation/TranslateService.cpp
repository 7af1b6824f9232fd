#include "translation/TranslateService.h"

#include "translation/SentenceTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>

#include <openssl/evp.h>

namespace lab {

namespace {

constexpr int longestQuery = 6000; ///< bytes in UTF-8

const char *errorText(int number)
{
    switch (number) {
    case 52001:
        return "TIMEOUT";
    case 52002:
        return "SYSTEM ERROR";
    case 52003:
        return "UNAUTHORIZED USER";
    case 54000:
        return "PARAM MISSING";
    case 54001:
        return "Invalid Sign";
    case 54003:
        return "Invalid Access Limit";
    case 54004:
        return "Please recharge";
    case 54005:
        return "Query too long";
    case 58000:
        return "INVALID_CLIENT_IP";
    case 58001:
        return "INVALID_TO_PARAM";
    case 58002:
        return "SERVICE CLOSED";
    default:
        return "UNKNOWN";
    }
}

QByteArray md5Hex(const QByteArray &data)
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    EVP_Digest(data.constData(), std::size_t(data.size()), digest, &length, EVP_md5(), nullptr);
    return QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex();
}

QHash<QByteArray, QByteArray> fieldsOf(const HttpRequest &request)
{
    QHash<QByteArray, QByteArray> fields;
    const QByteArray form = request.method == "POST" ? request.body : request.query();
    for (const QByteArray &part : form.split('&')) {
        const int equals = part.indexOf('=');
        QByteArray value = part.mid(equals + 1);
        fields.insert(part.left(equals), QByteArray::fromPercentEncoding(value.replace('+', ' ')));
    }
    return fields;
}

} // namespace

TranslateService::TranslateService(QByteArray appId, QByteArray key, Note note)
    : m_appId(std::move(appId))
    , m_key(std::move(key))
    , m_note(std::move(note))
{
}

bool TranslateService::control(const QUrlQuery &query)
{
    const auto value = [&query](const char *name) {
        return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
    };
    const auto has = [&query](const char *name) { return query.hasQueryItem(QLatin1String(name)); };
    if (has("error")) {
        m_error = value("error").toInt();
        m_count = has("count") ? value("count").toInt() : 1;
    }
    if (has("text")) {
        m_text = value("text");
    }
    if (has("form")) {
        m_form = value("form");
    }
    if (has("split")) {
        m_split = value("split").toInt() != 0;
    }
    return has("error") || has("text") || has("form") || has("split");
}

void TranslateService::reset()
{
    m_error = m_count = 0;
    m_text.clear();
    m_form.clear();
    m_split = false;
}

int TranslateService::check(const QHash<QByteArray, QByteArray> &fields) const
{
    static const QSet<QByteArray> languages = {
        "auto", "zh",  "wyw", "yue", "cht", "en", "jp",  "kor", "fra", "ru", "spa", "pl",  "pt",  "de", "th",
        "cs",   "ara", "vie", "it",  "el",  "nl", "dan", "swe", "fin", "hu", "rom", "bul", "est", "slo"};
    for (const char *name : {"q", "from", "to", "appid", "salt", "sign"}) {
        if (fields.value(name).isEmpty()) {
            return 54000;
        }
    }
    if (fields.value("appid") != m_appId) {
        return 52003;
    }
    if (fields.value("sign") != md5Hex(m_appId + fields.value("q") + fields.value("salt") + m_key)) {
        return 54001;
    }
    if (fields.value("q").size() > longestQuery) {
        return 54005;
    }
    return languages.contains(fields.value("from")) && languages.contains(fields.value("to")) ? 0 : 58001;
}

QJsonArray TranslateService::segments(const QString &text, const QString &from, const QString &to) const
{
    static const QRegularExpression lines(QStringLiteral("\n"));
    static const QRegularExpression sentences(QStringLiteral("\n|(?<=[。！？.!?])"));
    QJsonArray segments;
    for (const QString &part : text.split(m_split ? sentences : lines, Qt::SkipEmptyParts)) {
        const QString known = translateSentence(part, from, to);
        const QString echo = QStringLiteral("[%1>%2] %3").arg(from, to, part);
        const QString dst = !m_text.isNull() ? m_text : known.isEmpty() ? echo : known;
        segments.append(QJsonObject{{QStringLiteral("src"), part}, {QStringLiteral("dst"), dst}});
    }
    return segments;
}

void TranslateService::handle(const HttpRequest &request, const LabHttpServer::Reply &reply)
{
    const QHash<QByteArray, QByteArray> fields = fieldsOf(request);
    int error = check(fields);
    if (m_error != 0 && m_count != 0) {
        error = m_error;
        m_count -= m_count > 0 ? 1 : 0;
    }
    const QString text = QString::fromUtf8(fields.value("q"));
    const QString asked = QString::fromUtf8(fields.value("from"));
    // "auto" to "auto" is Chinese for everything else, English for Chinese.
    const QString from = asked == QLatin1String("auto") ? guessLanguage(text) : asked;
    QString to = QString::fromUtf8(fields.value("to"));
    if (to == QLatin1String("auto")) {
        to = from == QLatin1String("zh") ? QStringLiteral("en") : QStringLiteral("zh");
    }
    QJsonObject answer;
    if (error == 0) {
        answer = {{QStringLiteral("from"), from}, {QStringLiteral("to"), to}};
        if (m_form != QLatin1String("none")) {
            answer.insert(QStringLiteral("trans_result"),
                          m_form == QLatin1String("empty") ? QJsonArray() : segments(text, from, to));
        }
    } else {
        answer = {{QStringLiteral("error_code"), QString::number(error)},
                  {QStringLiteral("error_msg"), QLatin1String(errorText(error))}};
    }
    m_note({{QStringLiteral("service"), QStringLiteral("translate")},
            {QStringLiteral("q"), text},
            {QStringLiteral("from"), asked},
            {QStringLiteral("to"), QString::fromUtf8(fields.value("to"))},
            {QStringLiteral("error"), error},
            {QStringLiteral("dst"), answer.value(QStringLiteral("trans_result"))
                                        .toArray()
                                        .at(0)
                                        .toObject()
                                        .value(QStringLiteral("dst"))}});
    reply({200, "application/json", QJsonDocument(answer).toJson(QJsonDocument::Compact)});
}

} // namespace lab
