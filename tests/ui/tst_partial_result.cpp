#include "support/Rows.h"
#include "ui/CPatialResultDialog.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScreen>
#include <QtTest>

class TestPartialResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void staysOnTheScreen_data()
    {
        const Rows<QPoint, QPoint> row; // place, seenAt (of a strip 310 wide)
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        const QPoint last = screen.bottomRight() - QPoint(309, 64);
        row("free", {40, 50}, {40, 50});
        row("right edge", {screen.right(), 50}, {last.x(), 50});
        row("lower edge", {40, screen.bottom() - 3}, {40, last.y()});
        row("outside", {-500, -500}, screen.topLeft());
    }
    void staysOnTheScreen()
    {
        const auto [place, seenAt] = rowOf<QPoint, QPoint>();
        CPatialResultDialog strip;
        strip.placeAt(place);
        QCOMPARE(strip.size(), QSize(310, 65));
        QCOMPARE(strip.pos(), seenAt);
    }

    void isAsWideAsItsText()
    {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        CPatialResultDialog strip;
        strip.placeAt(screen.topRight());
        auto *line = strip.findChild<QLineEdit *>("lineEdit_PatialResult"_s);
        QVERIFY(line != nullptr);
        const QFontMetrics metrics(line->font());
        const QString text = "今天天气"_s;
        strip.setText(text);
        QCOMPARE(strip.text(), text);
        QCOMPARE(strip.width(), metrics.horizontalAdvance(text) + metrics.lineSpacing());
        QCOMPARE(strip.geometry().right(), screen.right());
        QCOMPARE(line->size(), strip.size());

        strip.setText(text.repeated(200));
        QCOMPARE(strip.geometry().left(), screen.left());
        QCOMPARE(strip.width(), screen.width());
        QCOMPARE(line->cursorPosition(), text.size() * 200); // its end can be seen
        strip.setText(text);
        QCOMPARE(strip.geometry().right(), screen.right());
    }

    void neverTakesTheFocus()
    {
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        CPatialResultDialog strip;
        strip.setText("好"_s);
        strip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&strip));
        QVERIFY(other.isActiveWindow() && !strip.isActiveWindow());
        QVERIFY(strip.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    }
};

QTEST_MAIN(TestPartialResult)
#include "tst_partial_result.moc"
