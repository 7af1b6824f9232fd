#pragma once

#include "backend/LabCipher.h"
#include "services/LabHttpServer.h"

#include <QDir>
#include <QJsonObject>
#include <QList>
#include <QPointer>
#include <QUrlQuery>
#include <QWebSocketServer>

#include <functional>

class QWebSocket;

namespace lab {

/// The push socket, which says what a test orders, and the web folder that the pictures and pages of its
/// notices come from.
class PushService : public QTcpServer
{
    Q_OBJECT

public:
    using Note = std::function<void(const QJsonObject &)>;

    /// `folder` is the web folder.
    PushService(const LabCipher &cipher, QDir folder, Note note, QObject *parent = nullptr);
    /// Listens on 127.0.0.1; 0 takes any free port. False when the port is taken.
    bool start(quint16 port);
    /// Where the web folder is reached: "lab:/" in a frame stands for it.
    void setWebAddress(const QString &address) { m_webAddress = address; }
    /// Answers requests for the web folder's files.
    void handle(const HttpRequest &request, const LabHttpServer::Reply &reply) const;

    /// Sends something to every client, from a query:
    /// text=FIELDS[&digits=TEXT]  fields apart by ";", enciphered, with their length before them, or other
    ///   digits than those; "lab:/" in them is the web folder, "size:NAME" the size of a file in it
    /// raw=TEXT  a text as it stands
    /// huge=N  a text of N characters
    /// binary=TEXT  a binary message
    /// break=close|reset|protocol  ends the connections: as it should be, without a word, by a broken frame
    /// refuse=N  the next N handshakes get no answer but the end of the connection, -1 all
    /// stall=N  the next N handshakes get no answer at all
    /// False when it is none of these, or when there is nobody to send to.
    bool control(const QUrlQuery &query);
    void reset();

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    struct Client
    {
        QPointer<QTcpSocket> transport;
        QPointer<QWebSocket> socket;
    };

    void accept();
    QString withPlaces(QString text) const;
    bool sendToAll(const std::function<void(const Client &client)> &send);
    void breakAll(const QString &how);
    void note(const char *event, const QString &text = {});

    const LabCipher &m_cipher;
    QDir m_folder;
    Note m_note;
    QString m_webAddress;
    QWebSocketServer m_server;
    QList<QPointer<QTcpSocket>> m_handshakes; ///< transports that are no client yet
    QList<Client> m_clients;
    int m_refuse = 0;
    int m_stall = 0;
};

} // namespace lab
