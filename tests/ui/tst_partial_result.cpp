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
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QPoint>("seenAt"); // of a strip 310 wide
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        const QPoint last = screen.bottomRight() - QPoint(309, 64);
        QTest::newRow("free") << QPoint(40, 50) << QPoint(40, 50);
        QTest::newRow("right edge") << QPoint(screen.right(), 50) << QPoint(last.x(), 50);
        QTest::newRow("lower edge") << QPoint(40, screen.bottom() - 3) << QPoint(40, last.y());
        QTest::newRow("outside") << QPoint(-500, -500) << screen.topLeft();
    }
    void staysOnTheScreen()
    {
        QFETCH(QPoint, place);
        CPatialResultDialog strip;
        strip.placeAt(place);
        QCOMPARE(strip.size(), QSize(310, 65));
        QTEST(strip.pos(), "seenAt");
    }

    void isAsWideAsItsText()
    {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        CPatialResultDialog strip;
        strip.placeAt(screen.topRight());
        auto *line = strip.findChild<QLineEdit *>(QStringLiteral("lineEdit_PatialResult"));
        QVERIFY(line != nullptr);
        const QFontMetrics metrics(line->font());
        const QString text = QStringLiteral("今天天气");
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
        strip.setText(QStringLiteral("好"));
        strip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&strip));
        QVERIFY(other.isActiveWindow() && !strip.isActiveWindow());
        QVERIFY(strip.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    }
};

QTEST_MAIN(TestPartialResult)
#include "tst_partial_result.moc"
