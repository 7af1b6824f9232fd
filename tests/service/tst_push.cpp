#include "service/PushChannel.h"
#include "service/PushFrame.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QWebSocket>
#include <QWebSocketServer>
#include <QtTest>

namespace {

const WebCipher cipher;

QString framed(const QString &text)
{
    const QString hex = cipher.EncryptString(text);
    return QString::number(hex.size()).rightJustified(5, QLatin1Char('0')) + hex;
}

/// What a frame says, its fields apart by blanks; empty when it is refused.
QString said(const QString &frame)
{
    const auto notice = mevo::readPushFrame(cipher, frame);
    if (!notice) {
        return {};
    }
    QStringList words{
        notice->kind == mevo::PushNotice::Kind::Page ? QStringLiteral("page") : QStringLiteral("picture"),
        notice->content.toString(), QString::number(notice->staySeconds), notice->link.toString()};
    if (notice->kind == mevo::PushNotice::Kind::Picture) {
        words << QString::number(notice->pictureSize) << notice->pictureName;
    }
    return words.join(QLatin1Char(' '));
}

/// A web socket server whose handshakes can be left without an answer, and its clients.
class Server : public QTcpServer
{
public:
    Server()
        : m_sockets(QStringLiteral("test"), QWebSocketServer::NonSecureMode)
    {
        connect(&m_sockets, &QWebSocketServer::newConnection, this, [this] {
            ++accepted;
            client = m_sockets.nextPendingConnection();
        });
        listen(QHostAddress::LocalHost);
    }

    QUrl url() const { return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(serverPort())); }

    bool silent = false;
    int tried = 0;
    int accepted = 0;
    QPointer<QWebSocket> client;
    QPointer<QTcpSocket> transport;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        ++tried;
        transport = new QTcpSocket(this);
        transport->setSocketDescriptor(descriptor);
        if (!silent) {
            m_sockets.handleConnection(transport);
        }
    }

private:
    QWebSocketServer m_sockets;
};

/// A channel whose pauses are short, and which notes how many failures each of them was for.
struct Channel
{
    explicit Channel(int pauseMs = 10, int openingMs = 15000, int beatMs = 60000)
        : channel(
              socket,
              [this, pauseMs](int failures) {
                  pauses.append(failures);
                  return pauseMs;
              },
              openingMs, beatMs)
    {
    }

    QWebSocket socket;
    QList<int> pauses;
    mevo::PushChannel channel;
};

constexpr int never = 1 << 30;

} // namespace

class TestPush : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frames_data()
    {
        QTest::addColumn<QString>("frame");
        QTest::addColumn<QString>("wanted");
        const auto row = [](const char *name, const char *text, const char *wanted) {
            QTest::newRow(name) << framed(QString::fromUtf8(text)) << QString::fromUtf8(wanted);
        };
        row("page", "url;https://a.cn/页;15;http://b.cn/", "page https://a.cn/页 15 http://b.cn/");
        row("picture", "image;http://a.cn/p?x=1;5;2048;新年 1.png;https://b.cn",
            "picture http://a.cn/p?x=1 5 https://b.cn 2048 新年 1.png");
        row("a name without a suffix", "image;http://a.cn;5;2048;mevoinput;",
            "picture http://a.cn 5  2048 mevoinput.png");
        row("no link", "url;http://a.cn;0;", "page http://a.cn 0 ");
        row("a link of a file", "url;http://a.cn;3;file:///etc/passwd", "page http://a.cn 3 ");
        row("a link of a script", "url;http://a.cn;3;javascript:alert(1)", "page http://a.cn 3 ");
        row("stays too long", "url;http://a.cn;99999999;", "page http://a.cn 3600 ");
        row("page of three", "url;http://a.cn;3", "");
        row("page of five", "url;http://a.cn;3;http://b.cn;", "");
        row("picture of five", "image;http://a.cn;3;2048;p.png", "");
        row("picture of seven", "image;http://a.cn;3;2048;p.png;;", "");
        row("another kind", "text;http://a.cn;3;http://b.cn", "");
        row("kind in capitals", "URL;http://a.cn;3;http://b.cn", "");
        row("page of a file", "url;file:///etc/passwd;3;", "");
        row("page without a host", "url;http:///x;3;", "");
        row("seconds with a sign", "url;http://a.cn;-3;", "");
        row("seconds of letters", "url;http://a.cn;three;", "");
        row("seconds beyond a number", "url;http://a.cn;99999999999;", "");
        row("no seconds", "url;http://a.cn;;", "");
        row("picture of no size", "image;http://a.cn;3;0;p.png;", "");
        row("picture of nine megabytes", "image;http://a.cn;3;9437184;p.png;", "");
        for (const char *name : {"../p.png", "a/p.png", "/p.png", "a\\p.png", "C:p.png", ".p.png", "..", "",
                                 "p.png\n", "MEVOSetting.ini", "a/b", "p.svg", "p.png.exe"}) {
            QTest::addRow("name %s", name)
                << framed(QStringLiteral("image;http://a.cn;3;2048;%1;").arg(QString::fromUtf8(name)))
                << QString();
        }
        row("nothing in it", "", "");
        const QString good = framed(QStringLiteral("url;http://a.cn;3;"));
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("digits alone") << QStringLiteral("00000") << QString();
        QTest::newRow("one too many") << good + QLatin1Char('0') << QString();
        QTest::newRow("one too few") << good.chopped(1) << QString();
        QTest::newRow("other digits") << QStringLiteral("00063") + good.mid(5) << QString();
        QTest::newRow("digits with a sign")
            << QLatin1Char('+') + QString::number(good.size() - 5).rightJustified(4, QLatin1Char('0')) +
                   good.mid(5)
            << QString();
        QTest::newRow("no hex") << QStringLiteral("00032") + QString(32, QLatin1Char('z')) << QString();
        QTest::newRow("another key") << QStringLiteral("00032") + QString(32, QLatin1Char('a')) << QString();
    }
    void frames()
    {
        QFETCH(QString, frame);
        QTEST(said(frame), "wanted");
    }

    void pauses()
    {
        QList<int> seconds;
        for (int failures = 0; failures < 11; ++failures) {
            seconds.append(mevo::pushPauseMs(failures) / 1000);
        }
        QCOMPARE(seconds, (QList<int>{1, 2, 4, 8, 16, 32, 64, 128, 256, 300, 300}));
        QCOMPARE(mevo::pushPauseMs(1 << 30), 300000);
    }

    /// It breaks in every way a connection can, and comes back.
    void comesBack_data()
    {
        QTest::addColumn<QByteArray>("how");
        for (const char *how : {"close", "reset", "garbage", "huge"}) {
            QTest::newRow(how) << QByteArray(how);
        }
    }
    void comesBack()
    {
        QFETCH(QByteArray, how);
        Server server;
        Channel mine;
        mine.socket.setMaxAllowedIncomingMessageSize(1000);
        mine.channel.open(server.url());
        QTRY_COMPARE(server.accepted, 1);
        QTRY_COMPARE(mine.socket.state(), QAbstractSocket::ConnectedState);
        if (how == "close") {
            server.client->close();
        } else if (how == "reset") {
            server.transport->abort();
        } else if (how == "garbage") {
            server.transport->write("\xff\xff\xff\xff");
        } else {
            server.client->sendTextMessage(QString(1001, QLatin1Char('a')));
        }
        QTRY_COMPARE(server.accepted, 2);
        QTRY_COMPARE(mine.socket.state(), QAbstractSocket::ConnectedState);
        QCOMPARE(mine.pauses, QList<int>{0});
    }

    /// A server that is not there, or takes the connection and says nothing: the pauses grow.
    void pausesGrow()
    {
        Channel refused;
        refused.channel.open(QUrl(QStringLiteral("ws://127.0.0.1:9")));
        QTRY_VERIFY(refused.pauses.size() >= 4);
        QCOMPARE(refused.pauses.mid(0, 4), (QList<int>{0, 1, 2, 3}));

        Server server;
        server.silent = true;
        Channel stalled(10, 30);
        stalled.channel.open(server.url());
        QTRY_VERIFY(stalled.pauses.size() >= 3);
        QCOMPARE(stalled.pauses.mid(0, 3), (QList<int>{0, 1, 2}));
        server.silent = false;
        QTRY_COMPARE(server.accepted, 1);
    }

    /// A server that takes it and throws it out again at once is no reason to begin with short pauses anew,
    /// a connection that has held is.
    void whenPausesShrink()
    {
        Server server;
        Channel mine(10, 15000, 50);
        const auto throwOut = connect(&mine.socket, &QWebSocket::connected, this, [&] {
            QTRY_VERIFY(server.client);
            server.client->close();
        });
        mine.channel.open(server.url());
        QTRY_VERIFY(mine.pauses.size() >= 3);
        QCOMPARE(mine.pauses.mid(0, 3), (QList<int>{0, 1, 2}));
        disconnect(throwOut);
        QSignalSpy pongs(&mine.socket, &QWebSocket::pong);
        QTRY_VERIFY(pongs.size() >= 2);
        mine.pauses.clear();
        server.transport->abort();
        QTRY_COMPARE(mine.pauses, QList<int>{0});
    }

    void deadConnection()
    {
        Server server;
        Channel mine(10, 15000, 50);
        mine.channel.open(server.url());
        QTRY_COMPARE(server.accepted, 1);
        server.client->blockSignals(true);
        server.transport->disconnect(); // nobody reads there any more, and nothing is answered
        QTRY_COMPARE(server.accepted, 2);
    }

    void network()
    {
        Server server;
        Channel mine(never);
        mine.channel.open(QUrl(QStringLiteral("ws://127.0.0.1:9")));
        QTRY_COMPARE(mine.pauses.size(), 1);
        mine.channel.open(server.url()); // cuts the pause short
        QTRY_COMPARE(mine.socket.state(), QAbstractSocket::ConnectedState);
        mine.channel.open(server.url());
        mine.channel.setOnline(true);
        QCOMPARE(server.tried, 1); // it is connected already

        mine.channel.setOnline(false);
        QCOMPARE(mine.socket.state(), QAbstractSocket::UnconnectedState);
        mine.channel.open(server.url());
        QCOMPARE(mine.socket.state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(mine.pauses.size(), 1); // no network is no failure of the server
        mine.channel.setOnline(true);
        QTRY_COMPARE(server.accepted, 2);
        QTRY_COMPARE(mine.socket.state(), QAbstractSocket::ConnectedState);

        mine.channel.close();
        QCOMPARE(mine.socket.state(), QAbstractSocket::UnconnectedState);
        mine.channel.setOnline(false);
        mine.channel.setOnline(true);
        QCOMPARE(mine.socket.state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(mine.pauses.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestPush)
#include "tst_push.moc"
