#include "window/InstanceMessage.h"

#include <QtTest>

using mevo::InstanceCall;
using What = InstanceCall::What;

Q_DECLARE_METATYPE(What)

namespace {

QByteArray json(QByteArray withSingleQuotes)
{
    return withSingleQuotes.replace('\'', '"');
}

} // namespace

class TestInstanceMessage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsAreRead_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<What>("what");
        QTest::addColumn<QString>("text");
        QTest::newRow("show") << json("{'mevoinput':1,'do':'show'}") << What::Show << QString();
        QTest::newRow("talk") << json("{'mevoinput':1,'do':'talk'}") << What::Talk << QString();
        QTest::newRow("settings") << json("{'do':'settings','mevoinput':1}") << What::Settings << QString();
        QTest::newRow("type") << json("{'mevoinput':1,'do':'type','text':'a\\nb'}") << What::Type
                              << QStringLiteral("a\nb");
        QTest::newRow("with more than is known")
            << json("{'mevoinput':1,'do':'talk','loud':true}") << What::Talk << QString();
    }

    void callsAreRead()
    {
        QFETCH(QByteArray, message);
        QFETCH(What, what);
        QString fault;
        const auto call = mevo::readInstanceCall(message, &fault);
        QVERIFY2(call.has_value(), qPrintable(fault));
        QCOMPARE(call->what, what);
        QTEST(call->text, "text");
    }

    void whatIsNoCallIsRefused_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QString>("fault");
        QTest::newRow("empty") << QByteArray() << "no message";
        QTest::newRow("bytes") << QByteArray("\x00\xff\xfe", 3) << "no message";
        QTest::newRow("a word") << QByteArray("show") << "no message";
        QTest::newRow("cut off") << json("{'mevoinput':1,'do':'sh") << "no message";
        QTest::newRow("a list") << json("['mevoinput',1]") << "no message";
        QTest::newRow("no UTF-8") << QByteArray("{\"mevoinput\":1,\"do\":\"type\",\"text\":\"\xc3\"}")
                                  << "no message";
        QTest::newRow("nested deeply") << QByteArray(60000, '[') << "no message";
        QTest::newRow("no version") << json("{'do':'show'}") << "another version";
        QTest::newRow("a later version") << json("{'mevoinput':2,'do':'show'}") << "another version";
        QTest::newRow("a version in words") << json("{'mevoinput':'1','do':'show'}") << "another version";
        QTest::newRow("nothing to do") << json("{'mevoinput':1}") << "not known";
        QTest::newRow("unknown") << json("{'mevoinput':1,'do':'quit'}") << "not known";
        QTest::newRow("no text") << json("{'mevoinput':1,'do':'type'}") << "no text";
        QTest::newRow("a number for a text") << json("{'mevoinput':1,'do':'type','text':5}") << "no text";
        QTest::newRow("too long") << json("{'mevoinput':1,'do':'show','x':'") + QByteArray(65536, 'x') + "\"}"
                                  << "too long";
    }

    void whatIsNoCallIsRefused()
    {
        QFETCH(QByteArray, message);
        QFETCH(QString, fault);
        QString told;
        QVERIFY(!mevo::readInstanceCall(message, &told));
        QVERIFY2(told.contains(fault), qPrintable(told));
    }

    void messagesStayOnOneLine()
    {
        const QString text = QStringLiteral("一行\n两行\r\t\"\\\u2028\U0001F600");
        const QByteArray message = mevo::toMessage(InstanceCall{What::Type, text});
        QVERIFY(!message.contains('\n') && !message.contains('\r'));
        QString fault;
        const auto call = mevo::readInstanceCall(message, &fault);
        QVERIFY(call && call->text == text);
    }

    void answers()
    {
        using mevo::InstanceAnswer;
        QCOMPARE(mevo::toMessage(InstanceAnswer::Kept), json("{'answer':'kept','mevoinput':1}"));
        for (const auto answer : {InstanceAnswer::Done, InstanceAnswer::Kept, InstanceAnswer::Refused,
                                  InstanceAnswer::NotUnderstood}) {
            QVERIFY(mevo::readInstanceAnswer(mevo::toMessage(answer)) == answer);
        }
        for (const QByteArray &message : {QByteArray(), QByteArray("done"),
                                          json("{'mevoinput':2,'answer':'done'}"), json("{'mevoinput':1}")}) {
            QVERIFY(!mevo::readInstanceAnswer(message));
        }
    }
};

QTEST_APPLESS_MAIN(TestInstanceMessage)
#include "tst_instance_message.moc"
