#pragma once

#include "services/LabHttpServer.h"

#include <QJsonObject>
#include <QString>

namespace lab {

/// The download server of updates: files of a folder under "/NewVersion" and "/NewVersion_Manual".
class UpdateServer
{
public:
    using Note = std::function<void(const QJsonObject &)>;

    /// `folder` holds "NewVersion" and "NewVersion_Manual"; what is not there is answered by 404.
    UpdateServer(QString folder, Note note);
    /// Whether a path is this server's to answer.
    static bool takes(const QByteArray &path);
    void handle(const HttpRequest &request, const LabHttpServer::Reply &reply) const;

private:
    QString m_folder;
    Note m_note;
};

} // namespace lab
