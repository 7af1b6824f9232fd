#pragma once

#include "backend/LabCipher.h"
#include "backend/LabDatabase.h"
#include "services/LabHttpServer.h"

namespace lab {

/// The private backend's web API: enciphered statements in, enciphered rows out.
class WebApiService
{
public:
    /// `note` is told every request: statement, and how it was answered.
    using Note = std::function<void(const QJsonObject &)>;

    WebApiService(LabDatabase &database, const LabCipher &cipher, Note note);
    void handle(const HttpRequest &request, const LabHttpServer::Reply &reply);

private:
    HttpResponse wrapped(const QJsonObject &content) const;

    LabDatabase &m_database;
    const LabCipher &m_cipher;
    Note m_note;
};

} // namespace lab
