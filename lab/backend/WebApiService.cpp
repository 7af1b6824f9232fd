#include "backend/WebApiService.h"

#include <QJsonDocument>

namespace lab {

WebApiService::WebApiService(LabDatabase &database, const LabCipher &cipher, Note note)
    : m_database(database)
    , m_cipher(cipher)
    , m_note(std::move(note))
{
}

HttpResponse WebApiService::wrapped(const QJsonObject &content) const
{
    const QByteArray cipher = m_cipher.encrypt(QJsonDocument(content).toJson(QJsonDocument::Compact));
    return {200, "text/plain", QString::asprintf("%05d", cipher.size()).toLatin1() + cipher};
}

void WebApiService::handle(const HttpRequest &request, const LabHttpServer::Reply &reply)
{
    const QByteArray query = request.query();
    QByteArray tag;
    for (const char *known : {"newsql___", "newGetNewVer___", "updateIP___"}) {
        if (query.startsWith(known)) {
            tag = known;
        }
    }
    // The length has three digits or more; what follows is a whole number of cipher blocks in hex.
    const QByteArray rest = query.mid(tag.size());
    const int digits = rest.size() % 32;
    bool numeric = false;
    const int length = rest.left(digits).toInt(&numeric);
    const QByteArray statement = m_cipher.decrypt(rest.mid(digits));
    if (request.path() != "/mevowebapi" || tag.isEmpty() || !numeric || digits < 3 ||
        QString::fromUtf8(statement).size() != length) {
        m_note({{QStringLiteral("service"), QStringLiteral("backend")}, {QStringLiteral("refused"), true}});
        reply({400, "text/plain", {}});
        return;
    }
    QJsonObject answer;
    if (tag == "newGetNewVer___") {
        // Its version text is the address of its download server.
        const QString host = QString::fromLatin1(request.headers.value("host"));
        answer = {{QStringLiteral("items"), 1}, {QStringLiteral("result"), QStringLiteral("http://") + host}};
    } else {
        answer = m_database.run(statement);
    }
    m_note({{QStringLiteral("service"), QStringLiteral("backend")},
            {QStringLiteral("statement"), QString::fromUtf8(statement)},
            {QStringLiteral("items"), answer.value(QStringLiteral("items"))}});
    reply(wrapped(answer));
}

} // namespace lab
