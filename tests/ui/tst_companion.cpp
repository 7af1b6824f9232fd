#include "support/FakePlatform.h"
#include "support/Rows.h"
#include "ui/Ask.h"
#include "ui/ClearPlace.h"
#include "ui/CompanionWindow.h"
#include "ui/OpaqueShape.h"
#include "ui/PlaceKeeping.h"

#include <QApplication>
#include <QMessageBox>
#include <QPainter>
#include <QScreen>
#include <QtTest>

namespace {

/// A window of 40 by 20 that paints its left half.
class HalfWindow : public QWidget
{
public:
    HalfWindow()
    {
        setAttribute(Qt::WA_TranslucentBackground);
        setWindowFlag(Qt::FramelessWindowHint);
        setFixedSize(40, 20);
        move(100, 100);
    }
    int painted = 20;

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(0, 0, painted, 20, Qt::blue); }
};

using Rectangles = std::vector<QRect>;

} // namespace

class TestCompanion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placeSteps_data()
    {
        const Rows<QPoint, QPoint, mevo::PlaceStep, mevo::PlaceStep> row; // believed, real, settling, settled
        using mevo::PlaceStep;
        const QPoint wanted(300, 200);
        row("all agree", wanted, wanted, PlaceStep::Nothing, PlaceStep::Nothing);
        row("rounded", wanted, {301, 199}, PlaceStep::Nothing, PlaceStep::Nothing);
        row("asked too early", {0, 0}, wanted, PlaceStep::Believe, PlaceStep::Believe);
        row("framed", {302, 222}, {302, 222}, PlaceStep::Move, PlaceStep::Adopt);
        row("framed, and not told", wanted, {302, 222}, PlaceStep::Move, PlaceStep::Adopt);
    }
    void placeSteps()
    {
        const auto [believed, real, settling, settled] =
            rowOf<QPoint, QPoint, mevo::PlaceStep, mevo::PlaceStep>();
        QCOMPARE(mevo::placeStep({300, 200}, believed, real, true), settling);
        QCOMPARE(mevo::placeStep({300, 200}, believed, real, false), settled);
    }

    void shapes_data()
    {
        // picture ('#' opaque, '+' just so, '-' not quite, '.' nothing), shape
        const Rows<QString, Rectangles> row;
        row("whole", "## ##", Rectangles{{0, 0, 2, 2}});
        row("corners", ".##. #### #### -++-", Rectangles{{1, 0, 2, 1}, {0, 1, 4, 2}, {1, 3, 2, 1}});
        row("parts", "#.# ... ..#", Rectangles{{0, 0, 1, 1}, {2, 0, 1, 1}, {2, 2, 1, 1}});
        row("nothing", ".. --", Rectangles{QRect()});
    }
    void shapes()
    {
        const auto [picture, shape] = rowOf<QString, Rectangles>();
        const QStringList rows = picture.split(u' ');
        QImage image(rows.first().size(), rows.size(), QImage::Format_ARGB32_Premultiplied);
        const QHash<QChar, int> alpha{{u'#', 255}, {u'+', 128}, {u'-', 127}, {u'.', 0}};
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                image.setPixelColor(x, y, QColor(10, 20, 30, alpha.value(rows[y][x])));
            }
        }
        QCOMPARE(mevo::opaqueShape(image), shape);
    }

    void uncoveredPlaces_data()
    {
        const Rows<QRect, QRect, QRect> row; // screen, taken, place (of a window of 819 by 687)
        row("the middle is free", {0, 0, 1920, 1080}, {1471, 881, 435, 185}, {550, 196, 819, 687});
        row("left of it", {0, 0, 1280, 720}, {831, 521, 435, 185}, {4, 16, 819, 687});
        row("above it", {0, 0, 1024, 768}, {575, 569, 435, 185}, {102, 48, 819, 513});
        row("no room", {0, 0, 800, 500}, {351, 301, 435, 185}, {0, 0, 800, 500});
    }
    void uncoveredPlaces()
    {
        const auto [screen, taken, place] = rowOf<QRect, QRect, QRect>();
        QCOMPARE(mevo::uncoveredPlace(screen, {819, 687}, taken), place);
    }

    void clearPlaces_data()
    {
        // taken, place (of a window of 200 by 100 on a screen of 1000 by 800)
        const Rows<Rectangles, QPoint> row;
        const QPoint middle(400, 350);
        row("free", Rectangles{{700, 600, 260, 45}}, middle);
        row("one in the middle", Rectangles{{420, 360, 149, 170}}, {400, 48});
        row("its title would be covered", Rectangles{{420, 310, 149, 20}}, {400, 48});
        row("middle and above", Rectangles{{420, 0, 20, 450}}, {400, 652});
        row("a column", Rectangles{{420, 0, 20, 800}}, {48, 350});
        row("only the right is free", Rectangles{{420, 0, 20, 800}, {0, 380, 90, 90}}, {752, 350});
        row("all taken", Rectangles{{0, 0, 1000, 800}}, middle);
    }
    void clearPlaces()
    {
        const auto [taken, place] = rowOf<Rectangles, QPoint>();
        QCOMPARE(mevo::clearPlace({0, 0, 1000, 800}, {200, 100}, taken), place);
    }

    void besidePlaces_data()
    {
        // screen, the bar, size, place
        const Rows<QRect, QRect, QSize, QPoint> row;
        const QRect screen(0, 0, 1920, 1080);
        const QSize size(600, 150);
        row("above the middle of the bar", screen, {800, 900, 260, 45}, size, {629, 702});
        row("bar at the right edge", screen, {1621, 900, 260, 45}, size, {1320, 702});
        row("bar at the left edge", screen, {0, 900, 260, 45}, size, {0, 702});
        row("below a bar at the top", screen, {800, 10, 260, 45}, size, {629, 55});
        row("vertical bar at the right edge", screen, {1821, 700, 45, 260}, size, {1320, 502});
        row("left of a bar as high as the screen", screen, {1821, 0, 45, 1080}, size, {1221, 0});
        row("right of it", screen, {20, 0, 45, 1080}, size, {65, 0});
        row("below a panel", {0, 200, 1920, 880}, {800, 390, 260, 45}, size, {629, 435});
        row("second screen below", {0, 1080, 1920, 1080}, {800, 1100, 260, 45}, size, {629, 1145});
        row("second screen at the left", {-1280, 0, 1280, 1024}, {-299, 900, 260, 45}, size, {-600, 702});
        row("larger than the screen", {0, 0, 500, 400}, {300, 300, 200, 45}, {600, 450}, {0, 0});
    }
    void besidePlaces()
    {
        const auto [screen, bar, size, place] = rowOf<QRect, QRect, QSize, QPoint>();
        QCOMPARE(mevo::besidePlace(screen, size, bar), place);
    }

    /// Before each showing, since window managers forget it at each hiding.
    void isNamedBeforeEachShowing()
    {
        FakeOwnWindows desktop;
        HalfWindow window;
        new mevo::CompanionWindow(&window, desktop);
        QVERIFY(desktop.unlisted.isEmpty());
        for (int showing = 1; showing <= 2; ++showing) {
            window.show();
            QCOMPARE(desktop.withoutFocus.size(), showing);
            QVERIFY(desktop.unlisted.contains(window.winId()));
            desktop.unlisted.clear();
            window.hide();
        }
    }

    void goesBackToItsPlace()
    {
        FakeOwnWindows desktop;
        HalfWindow window;
        new mevo::CompanionWindow(&window, desktop);
        desktop.real = QPoint(102, 122); // what a frame does
        window.show();
        QTRY_COMPARE(desktop.moves.value(0), QPoint(100, 100));
        desktop.real = QPoint(100, 100);
        window.move(300, 200); // the program's own wish, or the user's drag
        desktop.real = QPoint(300, 200);
        window.hide();
        window.show();
        QCOMPARE(window.pos(), QPoint(300, 200));

        // A window manager that insists gets its way, and what the toolkit believes is what is so.
        desktop.real = QPoint(17, 18);
        desktop.moves.clear();
        for (int i = 0; i < 20; ++i) {
            QTest::mousePress(&window, Qt::LeftButton);
        }
        QVERIFY(desktop.moves.size() >= 2 && desktop.moves.size() <= 4);
    }

    /// Menus and tips are placed by what the toolkit believes.
    void aWrongBeliefIsSetRight()
    {
        FakeOwnWindows desktop;
        HalfWindow window;
        new mevo::CompanionWindow(&window, desktop);
        window.show();
        desktop.real = QPoint(100, 100);
        QSignalSpy believed(window.windowHandle(), &QWindow::xChanged);
        window.windowHandle()->setX(7); // as an answer of the server from too early would
        QTRY_COMPARE(believed.size(), 2);
        QCOMPARE(window.pos(), QPoint(100, 100));
        QVERIFY(desktop.moves.isEmpty()); // it stands there already
    }

    void isCutWhereNothingComposites()
    {
        FakeOwnWindows desktop;
        desktop.composited = false;
        HalfWindow window;
        new mevo::CompanionWindow(&window, desktop);
        window.show();
        QCOMPARE(desktop.shape, (Rectangles{{0, 0, 20, 20}}));
        window.painted = 30;
        window.update();
        QTRY_COMPARE(desktop.shape, (Rectangles{{0, 0, 30, 20}}));
        const auto composite = [&desktop](bool on) {
            desktop.composited = on;
            for (const auto &handler : desktop.handlers) {
                handler();
            }
        };
        composite(true);
        QVERIFY(desktop.shape.empty());
        composite(false);
        QCOMPARE(desktop.shape, (Rectangles{{0, 0, 30, 20}}));
    }

    void questions_data()
    {
        const Rows<int, bool, int> row; // key (0 for the close box), exit, answer
        row("the exit's default", int(Qt::Key_Return), true, 0);
        row("the exit's Escape", int(Qt::Key_Escape), true, 1);
        row("the exit's close box", 0, true, 1);
        row("a message", int(Qt::Key_Return), false, 0);
        row("a message's Escape", int(Qt::Key_Escape), false, 0);
        row("a message's close box", 0, false, 0);
    }
    void questions()
    {
        const auto [key, exit, answer] = rowOf<int, bool, int>();
        FakePlatform fake;
        mevo::questionWindows = fake.windowSystem;
        HalfWindow parent; // stands where a question would
        parent.move(QGuiApplication::primaryScreen()->availableGeometry().center());
        parent.show();
        mevo::Question question{"title"_s, "text"_s, {"ok"_s}};
        if (exit) {
            question.buttons = list({"yes", "back", "no"});
            question.meanings = {mevo::Answer::Yes, mevo::Answer::Back, mevo::Answer::No};
        }
        QRect place;
        QTimer answers;
        answers.callOnTimeout([&, key = key] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box == nullptr || !box->isVisible()) {
                return;
            }
            answers.stop();
            place = box->geometry();
            if (key == 0) {
                box->close();
            } else {
                QTest::keyClick(box, Qt::Key(key));
            }
        });
        answers.start(1);
        QCOMPARE(mevo::ask(&parent, question), answer);
        QVERIFY(!place.isEmpty() && !place.intersects(parent.geometry()));
        QCOMPARE(fake.log.calls("activate"_s), list({"activate 10"}));
        mevo::questionWindows = nullptr;
    }
};

QTEST_MAIN(TestCompanion)
#include "tst_companion.moc"
