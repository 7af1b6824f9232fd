#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

namespace mevo {

/// libcurl for the length of the program. One, made before any thread is started.
class CurlLibrary
{
public:
    CurlLibrary();
    ~CurlLibrary();
    CurlLibrary(const CurlLibrary &) = delete;
    CurlLibrary &operator=(const CurlLibrary &) = delete;
};

/// One POST through libcurl's easy interface. It blocks its thread, and no time-out is set: connecting
/// ends after libcurl's own 300 s at the latest, waiting for the answer only with the connection.
class CurlPost
{
public:
    enum class Outcome {
        Done,
        NoHandle, ///< libcurl gave none; nothing was sent
        Failed    ///< no or half a transfer, also one that `onChunk` ended
    };
    /// Takes one chunk of the reply as it comes; false ends the transfer.
    using OnChunk = std::function<bool(const QByteArray &chunk)>;

    /// `headers` are "Name: value", in the order of sending. `checkCertificate` is for all hosts.
    CurlPost(QByteArray url, QList<QByteArray> headers, bool checkCertificate);

    Outcome send(const QByteArray &payload, const OnChunk &onChunk);
    /// Why the last send() failed.
    QString error() const { return m_error; }

private:
    QByteArray m_url;
    QList<QByteArray> m_headers;
    bool m_checkCertificate;
    QString m_error;
};

} // namespace mevo
