#include "support/Rows.h"
#include "window/InstanceMessage.h"

#include <QtTest>

using mevo::InstanceCall;
using What = InstanceCall::What;

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
        const Rows<QByteArray, What, QString> row; // message, what, text
        row("show", json("{'mevoinput':1,'do':'show'}"), What::Show, QString());
        row("talk", json("{'mevoinput':1,'do':'talk'}"), What::Talk, QString());
        row("settings", json("{'do':'settings','mevoinput':1}"), What::Settings, QString());
        row("type", json("{'mevoinput':1,'do':'type','text':'a\\nb'}"), What::Type, "a\nb"_s);
        row("with more than is known", json("{'mevoinput':1,'do':'talk','loud':true}"), What::Talk,
            QString());
    }

    void callsAreRead()
    {
        const auto [message, what, text] = rowOf<QByteArray, What, QString>();
        QString fault;
        const auto call = mevo::readInstanceCall(message, &fault);
        QVERIFY2(call.has_value(), qPrintable(fault));
        QCOMPARE(call->what, what);
        QCOMPARE(call->text, text);
    }

    void whatIsNoCallIsRefused_data()
    {
        const Rows<QByteArray, QString> row; // message, fault
        row("empty", QByteArray(), "no message");
        row("bytes", QByteArray("\x00\xff\xfe", 3), "no message");
        row("a word", QByteArray("show"), "no message");
        row("cut off", json("{'mevoinput':1,'do':'sh"), "no message");
        row("a list", json("['mevoinput',1]"), "no message");
        row("no UTF-8", QByteArray("{\"mevoinput\":1,\"do\":\"type\",\"text\":\"\xc3\"}"), "no message");
        row("nested deeply", QByteArray(60000, '['), "no message");
        row("no version", json("{'do':'show'}"), "another version");
        row("a later version", json("{'mevoinput':2,'do':'show'}"), "another version");
        row("a version in words", json("{'mevoinput':'1','do':'show'}"), "another version");
        row("nothing to do", json("{'mevoinput':1}"), "not known");
        row("unknown", json("{'mevoinput':1,'do':'quit'}"), "not known");
        row("no text", json("{'mevoinput':1,'do':'type'}"), "no text");
        row("a number for a text", json("{'mevoinput':1,'do':'type','text':5}"), "no text");
        row("too long", json("{'mevoinput':1,'do':'show','x':'") + QByteArray(65536, 'x') + "\"}",
            "too long");
    }

    void whatIsNoCallIsRefused()
    {
        const auto [message, fault] = rowOf<QByteArray, QString>();
        QString told;
        QVERIFY(!mevo::readInstanceCall(message, &told));
        QVERIFY2(told.contains(fault), qPrintable(told));
    }

    void messagesStayOnOneLine()
    {
        const QString text = "一行\n两行\r\t\"\\\u2028\U0001F600"_s;
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
