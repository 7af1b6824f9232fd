// A window that is moved in small steps while the display server alone paints it, on a real X server.

#include "platform/linux/X11StillWindow.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QtTest>

#include <xcb/xcb.h>

namespace {

constexpr int side = 60;

/// One colour above another.
class Stripes : public QWidget
{
public:
    Stripes()
        : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint)
    {
        resize(side, side);
    }
    QColor below = Qt::green;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(0, 0, side, side / 2, Qt::red);
        painter.fillRect(0, side / 2, side, side / 2, below);
    }
};

/// What the display server tells the toolkit of a window.
class Told : public QAbstractNativeEventFilter
{
public:
    explicit Told(WId window)
        : m_window(window)
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
    bool nativeEventFilter(const QByteArray &, void *message, long *) override
    {
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        switch (event->response_type & 0x7f) {
        case XCB_EXPOSE:
            exposures += reinterpret_cast<const xcb_expose_event_t *>(event)->window == m_window;
            break;
        case XCB_MAP_NOTIFY:
            shown = shown || reinterpret_cast<const xcb_map_notify_event_t *>(event)->window == m_window;
            break;
        case XCB_CONFIGURE_NOTIFY:
            moves += reinterpret_cast<const xcb_configure_notify_event_t *>(event)->window == m_window;
            break;
        default:
            break;
        }
        return false;
    }
    bool shown = false;
    int exposures = 0;
    int moves = 0;

private:
    WId m_window;
};

QColor onScreen(const QPoint &place)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), 1, 1)
        .toImage()
        .pixelColor(0, 0);
}

} // namespace

class TestX11StillWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slidesWithoutAWord()
    {
        Stripes window;
        const int bottom = QGuiApplication::primaryScreen()->geometry().bottom() + 1;
        window.move(20, bottom);
        Told told(window.winId());
        window.show();
        QTRY_VERIFY(told.shown);
        mevo::X11StillWindow still;
        if (!still.hold(window.winId(), window.grab().toImage())) {
            QSKIP("built without Qt's X11 extras");
        }
        QVERIFY(still.isHeld(window.winId()) && !still.isHeld(window.winId() + 1));
        told.moves = told.exposures = 0;
        for (int y = bottom; y > bottom - side + 10; y -= 10) {
            window.move(20, y - 10);
            QCoreApplication::processEvents();
        }
        const QPoint upper(30, window.y() + 5), lower(30, window.y() + side / 2 + 5);
        QTRY_COMPARE(onScreen(upper), QColor(Qt::red)); // the server has painted what came onto the screen
        QTRY_COMPARE(onScreen(lower), QColor(Qt::green));
        QCOMPARE(told.moves + told.exposures, 0);

        still.release();
        QVERIFY(!still.isHeld(window.winId()));
        window.move(20, bottom - side);
        QTRY_VERIFY(told.exposures > 0 && told.moves > 0); // the toolkit hears of it again
        window.below = Qt::blue;
        window.update();
        QTRY_COMPARE(onScreen({30, bottom - 5}), QColor(Qt::blue));
        QCOMPARE(onScreen({30, bottom - side + 5}), QColor(Qt::red));
    }

    /// Neither a picture that is none nor a window that has gone does any harm.
    void nothingToHold()
    {
        mevo::X11StillWindow still;
        Stripes window;
        window.show();
        QVERIFY(!still.hold(window.winId(), QImage()));
        QImage picture(side, side, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(!still.hold(1, picture));
        still.release();
        QVERIFY(!still.isHeld(0));
        QTRY_COMPARE(onScreen(window.geometry().center() - QPoint(0, side / 4)), QColor(Qt::red));
    }
};

QTEST_MAIN(TestX11StillWindow)
#include "tst_x11_still_window.moc"
