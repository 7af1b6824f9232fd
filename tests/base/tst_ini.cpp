#include "base/IniText.h"
#include "base/IniValue.h"
#include "base/LogText.h"
#include "base/SettingsFile.h"
#include "base/Utf8.h"
#include "base/WholeFile.h"
#include "support/FullDisk.h"
#include "support/Messages.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QRect>
#include <QSettings>
#include <QTextCodec>
#include <QThread>
#include <QtTest>

#include <optional>

using mevo::SettingsFile;

namespace {

const ScratchHome home;
const QString fileName = "MEVOSetting.ini"_s;

QString wide(const char *text)
{
    return mevo::textOfUtf8(text);
}

void set(const char *key, const QVariant &value, const QString &group = "MainSetting"_s)
{
    SettingsFile(group).setValue(QLatin1String(key), value);
}

QString stored(const char *key)
{
    const QVariant value = SettingsFile().value(QLatin1String(key));
    return value.isValid() ? value.toString() : "(none)"_s;
}

} // namespace

class TestIni : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        for (const QString &name : QDir(home.path(QString())).entryList(QDir::Files)) {
            home.remove(name);
        }
        m_messages.emplace();
    }
    void cleanup() { m_messages.reset(); }

    void aLineIsReadAsItIsMeant_data()
    {
        const Rows<QByteArray, QString> row; // line, value
        row("plain", "k=v", "v");
        row("blanks around", "  k \t= v \t", "v");
        row("commas and semicolons", "k=a, b;c", "a, b;c");
        row("a list of QSettings", "k=a, b", "a, b");
        row("quotes", "k=\" a;b \"", " a;b ");
        row("a remark", "k=2 ; 0, 1 or 2", "2");
        row("nothing but a remark", "k= ; none", "");
        row("a remark behind quotes", "k=\"a\" ;b", "a");
        row("no blank, no remark", "k=;a", ";a");
        row("ends in a backslash", "k=D:\\", "D:\\");
        row("the same before a remark", "k=D:\\ ; a drive", "D:\\");
        row("a path typed by hand", "k=D:\\Sogou\\Input.exe", "D:\\Sogou\\Input.exe");
        row("escapes", "k=\\x597d\\t\\\"\\\\\\x1\\0", wide("好\t\"\\\x01") + QChar(0));
        row("an escape without digits", "k=\\xyz", "\\xyz");
        row("beyond the plane", "k=\xf0\x9f\x98\x80", "😀");
        row("the same as QSettings has it without a codec", "k=\\xd83d\\xde00", "😀");
        row("a mark that is text", "k=@@a", "@a");
        row("bytes", "k=@ByteArray(\\xe5\\xa5\\xbd)", "好");
        row("bytes as QSettings with a codec has them", "k=@ByteArray(\xc3\xa5\xc2\xa5\xc2\xbd)", "好");
        row("an equals sign", "k=http://h/?a=1", "http://h/?a=1");
        row("the later of two", "k=a\nk=b", "b");
        row("of a later group of the name", "k=a\n[Other]\nk=x\n[MainSetting]\nk=b", "b");
        row("a zero-width mark",
            "k=\xef\xbb\xbf"
            "a",
            wide("\uFEFFa"));
        row("an open quote ends with its line", "k=\"a;b\nl=1", "a;b");
        row("behind a remark with a quote", "# a 15\" screen\nk=v", "v");
        row("behind a quote in a group's name", "[a \"b]\nx=1\n[MainSetting]\nk=v", "v");
        row("behind a backslash", "j=C:\\a\\\nk=v", "v");
        row("behind a lone return", "j=a\rk=v\rl=b", "v");
        row("behind nonsense", "]]\n=\nx\n[\x01\n[MainSetting]\nk=v", "v");
    }

    void aLineIsReadAsItIsMeant()
    {
        const auto [line, value] = rowOf<QByteArray, QString>();
        const QByteArray content = "\xef\xbb\xbf[MainSetting]\n" + line;
        home.write(fileName, content);
        QCOMPARE(stored("k"), value);
        QCOMPARE(home.read(fileName), content); // looking changes nothing
        set("other", 1);
        QCOMPARE(stored("k"), value);
        set("k", value + wide("é"));
        QCOMPARE(stored("k"), value + wide("é"));
        QVERIFY(home.read(fileName).contains("other=1"));
    }

    void aWriteTouchesItsLineAlone_data()
    {
        const Rows<QByteArray, QByteArray> row; // before, after (with k=new in MainSetting)
        const QByteArray strange = "# a 15\" screen\n[a \"b]\nx = 1 \\\n ]]\n\n[MainSetting] ; mine\n";
        row("no file", "", "[MainSetting]\nk=new\n");
        row("a key that is there", strange + " k =\"o;ld\"; why\r\nz=C:\\\n",
            strange + " k =new ; why\r\nz=C:\\\n");
        row("a new key", strange + "a=1\n\n; end\n[c]\nk=1\n", strange + "a=1\nk=new\n\n; end\n[c]\nk=1\n");
        row("a new group", "\r\n[c]\r\nk=1", "\r\n[c]\r\nk=1\r\n\r\n[MainSetting]\r\nk=new\r\n");
        row("an empty group", "[MainSetting]", "[MainSetting]\nk=new\n");
        row("the last of two", "[MainSetting]\nk=1\nk=2\n[c]\n[MainSetting]\nk=3 ; x\n",
            "[MainSetting]\nk=1\nk=2\n[c]\n[MainSetting]\nk=new ; x\n");
        row("the last group of two", "[MainSetting]\na=1\n[c]\n[MainSetting]\nb=3\n\n",
            "[MainSetting]\na=1\n[c]\n[MainSetting]\nb=3\nk=new\n\n");
        row("a byte order mark", "\xef\xbb\xbf[MainSetting]\nk=\xf0\x9f\x98\x80\nm=\xf0\x9f\x98\x80",
            "\xef\xbb\xbf[MainSetting]\nk=new\nm=\xf0\x9f\x98\x80");
        row("the same value in another writing", "[MainSetting]\nk = \"new\"", "[MainSetting]\nk = \"new\"");
        row("no value", "[MainSetting]\nk= ; none\n", "[MainSetting]\nk=new ; none\n");
        row("lone returns", "[MainSetting]\rk=1\ra=2", "[MainSetting]\rk=new\ra=2");
        row("an odd line", "[MainSetting]\nodd\nk=\"1\na=\xe7\x94\n",
            "[MainSetting]\nodd\nk=new\na=\xe7\x94\n");
    }

    void aWriteTouchesItsLineAlone()
    {
        const auto [before, after] = rowOf<QByteArray, QByteArray>();
        if (!before.isEmpty()) {
            home.write(fileName, before);
        }
        set("k", "new"_s);
        QCOMPARE(home.read(fileName), after);
        QVERIFY(!QFile::exists(home.path(fileName) + ".lock"_s));
    }

    void keysOfAnyName()
    {
        set("General/a", 1, QString());
        set("a", 2, QString());
        set("b c/d=;", 3, "好 [x]"_s);
        QCOMPARE(home.read(fileName), QByteArray("[%General]\na=1\n\n[General]\na=2\n\n"
                                                 "[%U597D%20%5Bx%5D]\nb%20c\\d%3D%3B=3\n"));
        const mevo::IniText read(home.read(fileName));
        QCOMPARE(read.value("General/a"_s).toInt(), 1);
        QCOMPARE(read.value("a"_s).toInt(), 2);
        QCOMPARE(read.value(wide("好 [x]/b c/d=;")).toInt(), 3);
    }

    /// Siblings and older versions read and write the file by way of QSettings.
    void valuesGoToAndFroWithQSettings()
    {
        const QVariant values[] = {true,
                                   -7,
                                   2.5,
                                   QString(),
                                   wide(" a;b, c=d \\ \" @"),
                                   wide("@好\n\té"),
                                   QByteArray("\0\xff\xe5;", 4),
                                   QString(QChar(0)),
                                   QVariant()};
        const QString other = home.path("qt.ini"_s);
        {
            QSettings qt(other, QSettings::IniFormat);
            qt.setIniCodec(QTextCodec::codecForName("UTF-8"));
            SettingsFile ours;
            for (std::size_t i = 0; i < std::size(values); ++i) {
                qt.setValue("MainSetting/%1"_s.arg(i), values[i]);
                ours.setValue(QString::number(i), values[i]);
            }
        }
        set("list", QStringList{wide("a")});
        set("rectangle", QRect(1, 2, 3, 4));
        QCOMPARE(Messages::warnings.size(), 2);
        QCOMPARE(home.read(fileName), home.read("qt.ini"_s));
        const SettingsFile read("MainSetting"_s, other);
        for (std::size_t i = 0; i < std::size(values); ++i) {
            const QVariant value = read.value(QString::number(i), 9);
            QCOMPARE(value.toString(), values[i].toString());
            QCOMPARE(value.toByteArray(), values[i].toByteArray());
            QCOMPARE(value.isValid(), values[i].isValid());
        }
        QCOMPARE(read.value("absent"_s, 9).toInt(), 9);
    }

    void openingsOfAFileSeeEachOther()
    {
        home.write(fileName, "[MainSetting]\na=1\n");
        {
            SettingsFile first;
            SettingsFile second;
            const SettingsFile reader;
            first.setValue("a"_s, 2);
            QCOMPARE(reader.value("a"_s).toInt(), 2); // before any write
            second.setValue("b"_s, 3);
            home.write(fileName, home.read(fileName) + "c=4\n"); // somebody else
            QVERIFY(second.save());
        }
        QCOMPARE(home.read(fileName), QByteArray("[MainSetting]\na=2\nc=4\nb=3\n"));
        home.write(fileName, "[MainSetting]\na=9\n"); // an edit of the same second is seen
        QCOMPARE(stored("a"), "9"_s);
        QCOMPARE(stored("b"), "(none)"_s);
        home.remove(fileName);
        QCOMPARE(stored("a"), "(none)"_s);
    }

    void severalThreadsWrite()
    {
        std::vector<std::unique_ptr<QThread>> threads;
        for (int number = 0; number < 4; ++number) {
            threads.emplace_back(QThread::create([number] {
                for (int i = 0; i < 20; ++i) {
                    SettingsFile().setValue("t%1"_s.arg(number), i);
                }
            }));
            threads.back()->start();
        }
        for (const auto &thread : threads) {
            QVERIFY(thread->wait());
        }
        QCOMPARE(mevo::IniText(home.read(fileName)).value("MainSetting/t3"_s).toInt(), 19);
        QCOMPARE(home.read(fileName).count('\n'), 5);
    }

    void aBrokenFileIsPutAsideOnce_data()
    {
        const Rows<QByteArray> row; // content
        row("no INI", "MainSetting]\nx = = y\n[[[\n\x01\x02");
        row("half a file", "[MainSetting]\nUserManual=\"abc");
        row("half a character", "[MainSetting]\nSupportContact=\xe7\x94");
        row("zeros", QByteArray(64, '\0'));
        row("other encoding", "[MainSetting]\nSupportContact=\xc4\xe3\xba\xc3\n");
        row("a group that does not end", "[MainSetting\nk=1\n");
    }

    void aBrokenFileIsPutAsideOnce()
    {
        const auto [content] = rowOf<QByteArray>();
        const QString broken = fileName + ".broken"_s;
        home.write(fileName, content);
        QCOMPARE(stored("Send2ScreenMethod"), "(none)"_s);
        QVERIFY(Messages::warnings.isEmpty() && !QFile::exists(home.path(broken))); // nobody has written yet
        set("Send2ScreenMethod", 2);
        set("EnableP3Keyboard", 1);
        QCOMPARE(stored("Send2ScreenMethod"), "2"_s);
        QCOMPARE(home.read(broken), content);
        QVERIFY(home.read(fileName).startsWith(content)); // and what nobody understands is still there
        QVERIFY(!QFile::exists(home.path(broken + u'2')));
        QCOMPARE(Messages::warnings.size(), 1);
        home.write(fileName, "other\n" + content);
        set("Send2ScreenMethod", 3);
        QCOMPARE(home.read(broken), content);
        QCOMPARE(home.read(broken + u'2'), "other\n" + content);
    }

    void soundFilesAreNotPutAside()
    {
        home.write(fileName, "# a 15\" screen, \xc4\xe3\n[a \"b]\nx=C:\\a\\\n[MainSetting]\nk=a\rl=2\n");
        set("k", 1);
        QVERIFY(Messages::warnings.isEmpty() && !QFile::exists(home.path(fileName + ".broken"_s)));
    }

    void aFullDiskLosesNothing()
    {
        const QByteArray before = "[MainSetting]\na=1\n";
        home.write(fileName, before);
        {
            const FullDisk full(8); // less than the file's own buffer takes
            set("b", 2);
            QVERIFY(!mevo::replaceWholeFile(home.path("x"_s), before).isEmpty());
        }
        QVERIFY(!QFile::exists(home.path("x"_s)));
        QCOMPARE(home.read(fileName), before);
        QCOMPARE(Messages::warnings.size(), 1);
        QCOMPARE(stored("b"), "2"_s); // it counts, and goes out with the next one
        set("c", 3);
        QCOMPARE(home.read(fileName), before + "b=2\nc=3\n");
    }

    void whatCannotBeReadIsNotWrittenOver()
    {
        const QString path = home.path("folder.ini"_s);
        QVERIFY(QDir().mkpath(path));
        SettingsFile file("MainSetting"_s, path);
        file.setValue("a"_s, 1);
        QVERIFY(!file.save());
        QVERIFY(QDir(path).exists());
        QCOMPARE(Messages::warnings.size(), 2); // when it was opened, and when it was to be written
        QVERIFY(Messages::warnings.join(u'\n').count("folder.ini"_s) == 2);
        QVERIFY(QDir().rmdir(path));
    }

    void logTexts_data()
    {
        const Rows<QString, QString> row; // text, line
        row("plain", wide("Zeit 好 😀 %1"), wide("Zeit 好 😀 %1"));
        row("lines", wide("a\r\nb\tc\\n"), wide("a\\r\\nb\\tc\\\\n"));
        row("controls", wide("\x1b[31m\x7f\u0085") + QChar(0), wide("\\x1b[31m\\x7f\\x85\\x00"));
        row("not seen", wide("a\u202Eb\u200B\u2028\uFEFF"), wide("a\\u202eb\\u200b\\u2028\\ufeff"));
        row("half a pair", wide("a") + QChar(0xd83d), wide("a\\ud83d"));
        row("long", QString(5000, u'x'), QString(199, u'x') + QChar(0x2026));
        row("long escapes", QString(5000, u'\n'), wide("\\n").repeated(99) + QChar(0x2026));
    }

    void logTexts()
    {
        const auto [text, line] = rowOf<QString, QString>();
        QCOMPARE(mevo::logText(text), line);
    }

    void utf8KeepsEveryCharacter()
    {
        bool broken = false;
        QCOMPARE(mevo::textOfUtf8("\xef\xbb\xbf\xef\xbb\xbf\xe5\xa5\xbd", &broken),
                 QString(2, QChar(0xfeff)) + QChar(0x597d));
        QCOMPARE(mevo::textOfUtf8(std::string_view("a\0b", 3), &broken).size(), 3);
        QVERIFY(!broken && !mevo::textOfUtf8("").isNull());
        QCOMPARE(mevo::textOfUtf8("\xe5\xa5", &broken), QString(QChar(0xfffd)));
        QVERIFY(broken);
    }

private:
    std::optional<Messages> m_messages;
};

QTEST_GUILESS_MAIN(TestIni)
#include "tst_ini.moc"
