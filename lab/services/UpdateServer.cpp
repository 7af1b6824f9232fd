#include "services/UpdateServer.h"

#include <QDir>
#include <QFile>
#include <QUrl>

namespace lab {

UpdateServer::UpdateServer(QString folder, Note note)
    : m_folder(std::move(folder))
    , m_note(std::move(note))
{
}

bool UpdateServer::takes(const QByteArray &path)
{
    return path.startsWith("/NewVersion/") || path.startsWith("/NewVersion_Manual/");
}

void UpdateServer::handle(const HttpRequest &request, const LabHttpServer::Reply &reply) const
{
    const QString path = QUrl::fromPercentEncoding(request.path());
    QFile file(m_folder + path);
    const bool found =
        request.method == "GET" && QDir::cleanPath(path) == path && file.open(QIODevice::ReadOnly);
    m_note({{QStringLiteral("service"), QStringLiteral("update")},
            {QStringLiteral("path"), path},
            {QStringLiteral("found"), found}});
    reply(found ? HttpResponse{200, "application/octet-stream", file.readAll()}
                : HttpResponse{404, "text/plain", "not found"});
}

} // namespace lab
