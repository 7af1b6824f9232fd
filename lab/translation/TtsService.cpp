#include "translation/TtsService.h"

#include "translation/SentenceTable.h"

#include <QJsonDocument>
#include <QProcess>
#include <QSet>

namespace lab {

namespace {

constexpr int longestText = 1024; ///< bytes in GBK

const char *errorText(int number)
{
    switch (number) {
    case 500:
        return "notsupport.";
    case 501:
        return "parameter error.";
    case 502:
        return "authentication failed.";
    case 513:
        return "text too long.";
    default:
        return "backend error.";
    }
}

int bytesInGbk(const QString &text)
{
    int bytes = 0;
    for (const QChar character : text) {
        bytes += character.unicode() < 0x80 ? 1 : 2;
    }
    return bytes;
}

QUrlQuery queryOf(const HttpRequest &request)
{
    return QUrlQuery(QString::fromUtf8(request.method == "POST" ? request.body : request.query()));
}

QString valueOf(const QUrlQuery &query, const char *name)
{
    return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
}

} // namespace

TtsService::TtsService(KnowsToken knowsToken, Note note, QObject *parent)
    : QObject(parent)
    , m_knowsToken(std::move(knowsToken))
    , m_note(std::move(note))
{
}

bool TtsService::control(const QUrlQuery &query)
{
    if (!query.hasQueryItem(QStringLiteral("error"))) {
        return false;
    }
    m_error = valueOf(query, "error").toInt();
    m_count = query.hasQueryItem(QStringLiteral("count")) ? valueOf(query, "count").toInt() : 1;
    return true;
}

int TtsService::check(const QUrlQuery &query) const
{
    const auto isWithin = [&query](const char *name, int highest) {
        if (!query.hasQueryItem(QLatin1String(name))) {
            return true;
        }
        bool isNumber = false;
        const int number = valueOf(query, name).toInt(&isNumber);
        return isNumber && number >= 0 && number <= highest;
    };
    static const QSet<QString> readers = {
        {}, QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("4")};
    if (!m_knowsToken(valueOf(query, "tok"))) {
        return 502;
    }
    if (valueOf(query, "lan") != QLatin1String("zh") || valueOf(query, "ctp") != QLatin1String("1") ||
        valueOf(query, "cuid").isEmpty() || valueOf(query, "tex").isEmpty() || !isWithin("spd", 15) ||
        !isWithin("pit", 15) || !isWithin("vol", 15) || !readers.contains(valueOf(query, "per"))) {
        return 501;
    }
    return bytesInGbk(valueOf(query, "tex")) > longestText ? 513 : 0;
}

void TtsService::handle(const HttpRequest &request, const LabHttpServer::Reply &reply)
{
    const QUrlQuery query = queryOf(request);
    int error = check(query);
    if (m_error != 0 && m_count != 0) {
        error = m_error;
        m_count -= m_count > 0 ? 1 : 0;
    }
    QJsonObject note{
        {QStringLiteral("service"), QStringLiteral("tts")},
        {QStringLiteral("query"), QString::fromUtf8(request.query()).remove(valueOf(query, "tok"))}};
    for (const char *name : {"tex", "spd", "pit", "vol", "per"}) {
        note.insert(QLatin1String(name), valueOf(query, name));
    }
    const auto fail = [this, reply, note](int number) {
        QJsonObject noted = note;
        noted.insert(QStringLiteral("error"), number);
        m_note(noted);
        const QJsonObject body{{QStringLiteral("err_no"), number},
                               {QStringLiteral("err_msg"), QLatin1String(errorText(number))},
                               {QStringLiteral("sn"), QStringLiteral("lab")},
                               {QStringLiteral("idx"), 1}};
        reply({200, "application/json", QJsonDocument(body).toJson(QJsonDocument::Compact)});
    };
    if (error != 0) {
        fail(error);
        return;
    }
    speak(query, [this, reply, note, fail](const QByteArray &mp3) {
        if (mp3.isEmpty()) {
            fail(503);
            return;
        }
        QJsonObject noted = note;
        noted.insert(QStringLiteral("error"), 0);
        noted.insert(QStringLiteral("bytes"), mp3.size());
        m_note(noted);
        reply({200, "audio/mp3", mp3});
    });
}

/// Both programs run beside the event loop; `done` gets nothing when one of them cannot.
void TtsService::speak(const QUrlQuery &query, const std::function<void(const QByteArray &)> &done)
{
    const QString text = valueOf(query, "tex");
    const auto number = [&query](const char *name, int fallback) {
        const QString value = valueOf(query, name);
        return value.isEmpty() ? fallback : value.toInt();
    };
    const QString voice = guessLanguage(text) == QLatin1String("en") ? QStringLiteral("en-us")
                                                                     : QStringLiteral("cmn-latn-pinyin");
    auto *speaker = new QProcess(this);
    auto *encoder = new QProcess(this);
    speaker->setStandardOutputProcess(encoder);
    speaker->setStandardErrorFile(QProcess::nullDevice());
    encoder->setStandardErrorFile(QProcess::nullDevice());
    connect(encoder, &QProcess::errorOccurred, this, [speaker](QProcess::ProcessError) { speaker->kill(); });
    connect(encoder, &QProcess::stateChanged, this, [speaker, encoder, done](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning) {
            const bool good = encoder->error() == QProcess::UnknownError && encoder->exitCode() == 0;
            done(good ? encoder->readAllStandardOutput() : QByteArray());
            speaker->deleteLater();
            encoder->deleteLater();
        }
    });
    speaker->start(QStringLiteral("espeak-ng"),
                   {QStringLiteral("-v"), voice, QStringLiteral("-s"),
                    QString::number(100 + 15 * number("spd", 5)), QStringLiteral("-p"),
                    QString::number(6 * number("pit", 5)), QStringLiteral("-a"),
                    QString::number(20 + 10 * number("vol", 5)), QStringLiteral("--stdout"),
                    QStringLiteral("--"), text});
    encoder->start(QStringLiteral("lame"), {QStringLiteral("--quiet"), QStringLiteral("-m"),
                                            QStringLiteral("m"), QStringLiteral("-"), QStringLiteral("-")});
}

} // namespace lab
