#include "base/SettingsFile.h"
#include "service/NoticePictures.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "ui/CADShowDlg.h"
#include "ui/NoticePage.h"
#include "ui/NoticePlace.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QScreen>
#include <QtTest>

#include <utility>

namespace {

const ScratchHome home;
const WebCipher cipher;

QString framed(const QString &text)
{
    const QString hex = cipher.EncryptString(text);
    return QString::number(hex.size()).rightJustified(5, QLatin1Char('0')) + hex;
}

QByteArray picture(int width, int height, const char *format = "png")
{
    QImage image(width, height, QImage::Format_Mono);
    image.fill(0);
    QBuffer buffer;
    image.save(&buffer, format);
    return buffer.data();
}

const QString keptName = "notice.png"_s;
const QString settingsName = "MEVOSetting.ini"_s;
const QString listKey = "NoticePictures"_s;

/// In place of the plug-in: a page that does what a test says.
class FakePages : public mevo::NoticePageMaker
{
public:
    QWidget *makePage(const QUrl &address, const mevo::NoticePageCalls &given, QWidget *parent) override
    {
        shown = address;
        calls = given;
        return new QWidget(parent);
    }
    QUrl shown;
    mevo::NoticePageCalls calls;
};

FakePages *pages()
{
    static FakePages maker;
    return &maker;
}

mevo::NoticePageMaker *fakePages()
{
    return pages();
}

/// A desktop that sees what a notice shows while it slides.
class WatchingDesktop : public FakeOwnWindows
{
public:
    void beginSlide(mevo::WindowId window, const QImage &shown) override
    {
        look = shown;
        FakeOwnWindows::beginSlide(window, shown);
    }
    QImage look;
};

/// A notice, and what it has said.
struct Notice
{
    explicit Notice(mevo::NoticePageMaker *(*maker)() = nullptr)
        : dialog(new CADShowDlg(cipher, std::nullopt, maker, nullptr, &desktop))
    {
        QObject::connect(dialog, &CADShowDlg::closed, dialog, [this] { ++closed; });
        QObject::connect(dialog, &CADShowDlg::linkWanted, dialog,
                         [this](const QUrl &url) { links.append(url.toString()); });
    }
    ~Notice() { delete dialog; }

    void take(const QString &fields) { dialog->onTextMessageReceived(framed(fields)); }
    bool slides() const { return dialog != nullptr && dialog->isVisible(); }
    void slideToEnd()
    {
        QTRY_VERIFY(slides());
        for (int y = dialog->y() + 1; dialog->y() < y;) {
            y = dialog->y();
            dialog->myMove();
        }
    }
    void hover(bool over)
    {
        QEvent event(over ? QEvent::Enter : QEvent::Leave);
        QCoreApplication::sendEvent(dialog, &event);
    }

    WatchingDesktop desktop;
    QPointer<CADShowDlg> dialog;
    int closed = 0;
    QStringList links;
};

/// Where a window stands when it is shown.
class FirstSight : public QObject
{
public:
    int y = 0;

protected:
    bool eventFilter(QObject *window, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            y = static_cast<QWidget *>(window)->y();
        }
        return false;
    }
};

} // namespace

class TestNotice : public QObject
{
    Q_OBJECT

private:
    static QString pictureFields(const QUrl &url, int size)
    {
        return "image;%1;2;%2;notice.png;https://a.cn/link"_s.arg(url.toString()).arg(size);
    }

private Q_SLOTS:
    void init()
    {
        home.remove(keptName);
        home.write(settingsName, "[MainSetting]\n");
    }

    void goodPictures_data()
    {
        // before, listed (what notices have left so far), asked, kept
        const Rows<QByteArray, QString, bool, bool> row;
        const QByteArray good = picture(200, 101);
        const QByteArray other = picture(10, 10);
        const QByteArray rubbish(good.size(), 'x');
        const QString list = "a.png;notice.png;b.png"_s;
        row("not there", "", "", true, true);
        row("there", good, "", false, true);
        row("another one is there", other, list, true, true);
        row("rubbish of its size is there", rubbish, list, true, true);
        row("a picture of the program's", other, "a.png;b.png", true, false);
        row("a file of its size", rubbish, "", true, false);
    }
    void goodPictures()
    {
        const auto [before, listed, asked, kept] = rowOf<QByteArray, QString, bool, bool>();
        mevo::SettingsFile().setValue(listKey, listed);
        const QByteArray good = picture(200, 101);
        if (!before.isEmpty()) {
            home.write(keptName, before);
        }
        ScriptedHttp server;
        server.fallback = ScriptedAnswer::body(good);
        Notice notice;
        notice.take(pictureFields(server.url(), good.size()));
        QTRY_VERIFY(notice.slides());
        QCOMPARE(server.requests.size() == 1, asked);
        QCOMPARE(home.read(keptName), kept ? good : before);
        if (!server.requests.isEmpty() && kept) { // the newest, and once
            QCOMPARE(mevo::SettingsFile().value(listKey).toString(),
                     listed.isEmpty() ? keptName : "a.png;b.png;notice.png"_s);
        }
        QCOMPARE(notice.dialog->size(), QSize(200, 101));
        QCOMPARE(notice.closed, 0);
    }

    void badPictures_data()
    {
        const Rows<ScriptedAnswer, int> row; // answer, announced
        const QByteArray good = picture(20, 20);
        row("a byte more", ScriptedAnswer::body(good), good.size() - 1);
        row("a byte less", ScriptedAnswer::body(good), good.size() + 1);
        row("cut", ScriptedAnswer::cut(good.chopped(5), good.size()), good.size());
        row("not found", ScriptedAnswer::body(good, 404), good.size());
        row("no length and no end", ScriptedAnswer::enormous(1 << 30), good.size());
        row("no picture", ScriptedAnswer::body("<html>a page</html>"), 19);
        row("half a picture", ScriptedAnswer::body(good.left(30)), 30);
        row("another format", ScriptedAnswer::body("<svg xmlns='http://www.w3.org/2000/svg'/>"), 41);
        const QByteArray bomb = picture(4096, 1025);
        row("more pixels than fit", ScriptedAnswer::body(bomb), bomb.size());
        row("a reply that is none", ScriptedAnswer::raw("rubbish\r\n\r\n"), 7);
    }
    void badPictures()
    {
        const auto [answer, announced] = rowOf<ScriptedAnswer, int>();
        ScriptedHttp server;
        server.fallback = answer;
        Notice notice;
        notice.take(pictureFields(server.url(), announced));
        QTRY_VERIFY(notice.dialog.isNull());
        QCOMPARE(notice.closed, 1);
        QVERIFY(!QFileInfo::exists(home.path(keptName)));
    }

    /// A name that leads to another file neither writes it nor shows it.
    void nameOfALink()
    {
        const QString other = home.path("elsewhere.png"_s);
        QVERIFY(QFile::link(other, home.path(keptName)));
        mevo::SettingsFile().setValue(listKey, keptName);
        ScriptedHttp server;
        server.fallback = ScriptedAnswer::body(picture(20, 20));
        Notice notice;
        notice.take(pictureFields(server.url(), picture(20, 20).size()));
        QTRY_VERIFY(notice.slides());
        QCOMPARE(server.requests.size(), 1);
        QVERIFY(!QFileInfo::exists(other) && QFileInfo(home.path(keptName)).isSymLink());
    }

    /// The oldest go, and an edited list takes no other file with it.
    void fewPicturesAreKept()
    {
        QStringList names{"MEVOSetting.ini"_s, "../x.png"_s};
        for (int i = 0; i < 20; ++i) {
            names.append("p%1.png"_s.arg(i));
            home.write(names.last(), "old");
        }
        mevo::SettingsFile().setValue(listKey, names.join(u';'));
        mevo::keepNoticePicture(keptName, "new");
        QCOMPARE(home.read(keptName), QByteArray("new"));
        QVERIFY(!QFileInfo::exists(home.path("p0.png"_s)));
        QVERIFY(QFileInfo::exists(home.path("p1.png"_s)));
        const QStringList left = mevo::SettingsFile().value(listKey).toString().split(u';');
        QCOMPARE(left, names.mid(3) + QStringList{keptName});
        for (const QString &name : left) {
            home.remove(name);
        }
    }

    /// A large picture is decoded beside the window, which goes on meanwhile.
    void decodingHoldsNothingUp()
    {
        const QByteArray large = picture(2048, 2047);
        home.write(keptName, large);
        Notice notice;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!QImage::fromData(large)
                     .scaled(400, 400, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                     .isNull());
        const qint64 decodingUs = timer.nsecsElapsed() / 1000;
        timer.restart();
        notice.take(pictureFields(QUrl("http://127.0.0.1:9/"_s), large.size()));
        const qint64 heldUs = timer.nsecsElapsed() / 1000;
        QVERIFY2(heldUs < decodingUs / 2, qPrintable("%1 of %2"_s.arg(heldUs).arg(decodingUs)));
        QTRY_VERIFY(notice.slides());
    }

    /// Closed while its picture is on the way: nothing comes up afterwards.
    void closedInBetween()
    {
        ScriptedHttp server;
        server.fallback = ScriptedAnswer::late(ScriptedAnswer::body(picture(20, 20)));
        Notice notice;
        notice.take(pictureFields(server.url(), picture(20, 20).size()));
        QTRY_COMPARE(server.requests.size(), 1);
        server.answerHeld();
        notice.dialog->close();
        QTRY_VERIFY(notice.dialog.isNull());
        QCOMPARE(notice.closed, 1);
    }

    void slideStayAndFade()
    {
        home.write(keptName, picture(300, 105));
        Notice notice;
        notice.take(pictureFields(QUrl("http://127.0.0.1:9/"_s), picture(300, 105).size()));
        const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
        CADShowDlg &dialog = *notice.dialog;
        FirstSight first;
        dialog.installEventFilter(&first);
        QTRY_VERIFY(notice.slides());
        QCOMPARE(first.y, room.bottom() + 1);
        QCOMPARE(dialog.x(), room.right() - 299);
        QCOMPARE(dialog.size(), QSize(300, 105));
        const int y = dialog.y();
        dialog.myMove();
        QCOMPARE(dialog.y(), y - 10);
        notice.slideToEnd();
        QCOMPARE(dialog.geometry().bottomRight(), room.bottomRight());
        QCOMPARE(notice.desktop.slides, (QList<bool>{true, false}));
        QCOMPARE(notice.desktop.look.size(), QSize(300, 105));
        QCOMPARE(notice.desktop.look.pixelColor(150, 50), QColor(Qt::black)); // the picture

        QCOMPARE(dialog.StaySeconds, 2);
        dialog.myStay();
        QCOMPARE(dialog.windowOpacity(), 1.0);
        dialog.myStay();
        const auto faded = [&dialog](double opacity) {
            return qAbs(dialog.windowOpacity() - opacity) < 0.01;
        };
        QTRY_VERIFY(faded(0.9)); // by the timer: the stay is over
        dialog.myClose();
        QVERIFY(faded(0.8));
        notice.hover(true);
        QVERIFY(faded(1.0));
        QCOMPARE(dialog.cursor().shape(), Qt::PointingHandCursor);
        for (int i = 0; i < 20; ++i) {
            dialog.myClose();
        }
        QVERIFY(faded(1.0));
        notice.hover(false);
        for (int i = 0; i < 9; ++i) {
            dialog.myClose();
        }
        QVERIFY(faded(0.1));
        QCOMPARE(notice.closed, 0);
        dialog.myClose();
        QCOMPARE(notice.closed, 1);
        QTRY_VERIFY(notice.dialog.isNull());
    }

    void press_data()
    {
        // fields, beside (opened by a press beside the address), onto (and by one on it)
        const Rows<QString, QString, QString> row;
        const QString page = "http://127.0.0.1:9/page"_s;
        row("page", "url;%1;2;https://a.cn/link"_s.arg(page), "https://a.cn/link", page);
        row("page without a link", "url;%1;2;"_s.arg(page), page, page);
        const int size = picture(90, 90).size();
        const QString fields = "image;%1;2;%2;notice.png;"_s.arg(page).arg(size);
        row("picture", fields + "https://a.cn/link"_s, "https://a.cn/link", "");
        row("picture with a file's link", fields + "file:///bin/sh"_s, "", "");
    }
    void press()
    {
        const auto [fields, beside, onto] = rowOf<QString, QString, QString>();
        home.write(keptName, picture(90, 90));
        Notice notice;
        notice.take(fields);
        notice.dialog->show(); // a page waits for its content first
        QTest::mousePress(notice.dialog, Qt::LeftButton, {}, QPoint(3, 3));
        QCOMPARE(notice.links.join(QLatin1Char(' ')), beside);
        QTest::mouseDClick(notice.dialog, Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(notice.links.size() <= 2); // its second press opens nothing
        notice.links.clear();
        auto *const address = notice.dialog->findChild<QLabel *>("address"_s);
        QCOMPARE(address != nullptr, !onto.isEmpty());
        if (address != nullptr) {
            QTest::mousePress(address, Qt::LeftButton);
            QCOMPARE(notice.links, QStringList{onto});
        }
    }

    /// A page by the plug-in: its links, presses beside them, and one that does not come.
    void page()
    {
        Notice notice(fakePages);
        notice.take("url;http://a.cn/页;2;https://a.cn/link"_s);
        QCOMPARE(pages()->shown, QUrl("http://a.cn/页"_s));
        QCOMPARE(notice.dialog->findChild<QLabel *>(), nullptr);
        pages()->calls.pressed();
        pages()->calls.linkWanted(QUrl("http://b.cn/"_s));
        pages()->calls.linkWanted(QUrl("file:///bin/sh"_s));
        QCOMPARE(notice.links, list({"https://a.cn/link", "http://b.cn/"}));
        QTRY_VERIFY_WITH_TIMEOUT(notice.slides(), 8000);
        notice.slideToEnd();
        pages()->calls.failed();
        auto *const address = notice.dialog->findChild<QLabel *>("address"_s);
        QVERIFY(address != nullptr);
        QVERIFY(address->text().contains("a.cn"_s));
        QCOMPARE(notice.dialog->geometry().bottomRight(),
                 QGuiApplication::primaryScreen()->availableGeometry().bottomRight());
    }

    /// Notices that come together don't cover each other.
    void places_data()
    {
        const Rows<QVector<QRect>, int, int> row; // standing, height, bottom (-1: none)
        const auto at = [](int top, int height) { return QRect(700, top, 300, height); };
        row("alone", {}, 200, 768);
        row("alone, and too high", {}, 900, 768);
        row("above another", {at(568, 200)}, 300, 568);
        row("above two", {at(268, 300), at(568, 200)}, 200, 268);
        row("below another", {at(268, 300)}, 200, 768);
        row("between two", {at(100, 100), at(568, 200)}, 368, 568);
        row("not between two", {at(100, 100), at(568, 200)}, 369, -1);
        row("no room", {at(200, 568)}, 201, -1);
    }
    void places()
    {
        const auto [standing, height, bottom] = rowOf<QVector<QRect>, int, int>();
        QCOMPARE(mevo::noticeBottom(QRect(0, 0, 1024, 768), height, standing).value_or(-1), bottom);
    }

    /// A newer notice takes the place of one that can have been read, and of no other.
    void yields_data()
    {
        using Notices = QVector<mevo::OpenNotice>;
        const Rows<Notices, int> row;
        row("none", Notices{}, -1);
        row("just shown", Notices{{true, false, 0}, {true, false, 59}}, -1);
        row("the oldest that has stood", Notices{{true, false, 3}, {true, false, 60}, {true, false, 90}}, 1);
        row("not under the pointer", Notices{{true, true, 600}, {true, false, 60}}, 1);
        row("not shown yet", Notices{{false, false, 0}, {false, false, 0}}, -1);
    }
    void yields()
    {
        const auto [notices, index] = rowOf<QVector<mevo::OpenNotice>, int>();
        QCOMPARE(mevo::noticeThatYields(notices), index);
    }

    /// While its picture was on its way things may have changed: it asks before it slides, and again.
    void asksForItsPlace()
    {
        ScriptedHttp server;
        const QByteArray bytes = picture(200, 100);
        server.enqueue(ScriptedAnswer::late(ScriptedAnswer::body(bytes)));
        Notice notice;
        int asked = 0;
        std::optional<int> bottom;
        notice.dialog->setPlace([&](const CADShowDlg &) {
            ++asked;
            return std::exchange(bottom, 300); // not at the first time
        });
        notice.take(pictureFields(server.url(), bytes.size()));
        QTRY_COMPARE(server.requests.size(), 1);
        QCOMPARE(asked, 0);
        server.answerHeld();
        QTRY_COMPARE(asked, 1);
        QVERIFY(!notice.slides() && notice.dialog->standing().isEmpty());
        notice.slideToEnd();
        QCOMPARE(asked, 2);
        QCOMPARE(notice.dialog->y() + notice.dialog->height(), 300);
        QCOMPARE(notice.dialog->standing(), notice.dialog->geometry());
    }

    void noFrame()
    {
        Notice notice;
        notice.dialog->onTextMessageReceived("nonsense"_s);
        QCOMPARE(notice.closed, 1);
        QTRY_VERIFY(notice.dialog.isNull());
    }
};

QTEST_MAIN(TestNotice)
#include "tst_notice.moc"
