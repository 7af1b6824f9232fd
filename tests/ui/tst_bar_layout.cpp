#include "ui/BarLayout.h"

#include <QtTest>

namespace {
const QRect oneScreen(0, 0, 1920, 1080);
const QRect rightScreen(1920, 0, 1280, 1024);
} // namespace

class TestBarLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void position_data()
    {
        QTest::addColumn<QPoint>("saved");
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<int>("top"); // of the upright bar's default place
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<bool>("second"); // the screen to the right is there too
        QTest::addColumn<QPoint>("place");
        const auto add = [](const char *name, QPoint saved, bool vertical, int top, const QRect &screen,
                            bool second, QPoint place) {
            QTest::newRow(name) << saved << vertical << top << screen << second << place;
        };
        const QPoint flat(1920 - 299, 1080 - 199);
        add("default", {0, 0}, false, 200, oneScreen, false, flat);
        add("default upright at start", {0, 0}, true, 200, oneScreen, false, {1920 - 99, 200});
        add("default upright from the menu", {0, 0}, true, 100, oneScreen, false, {1920 - 99, 100});
        add("saved", {300, 400}, false, 200, oneScreen, false, {300, 400});
        add("saved, upright", {300, 400}, true, 200, oneScreen, false, {300, 400});
        add("left alone", {300, 0}, false, 200, oneScreen, false, flat);
        add("top alone", {0, 300}, false, 200, oneScreen, false, flat);
        add("over the right edge", {1800, 50}, false, 200, oneScreen, false, {1920 - 260, 50});
        add("over the lower edge, upright", {300, 900}, true, 200, oneScreen, false, {300, 1080 - 260});
        add("on the second screen", {2000, 400}, false, 200, oneScreen, true, {2000, 400});
        add("on a screen that is gone", {2000, 400}, false, 200, oneScreen, false, flat);
        add("the corner is left in sight", {1919, 1079}, false, 200, oneScreen, false,
            {1920 - 260, 1080 - 45});
        add("default on the second screen", {0, 0}, false, 200, rightScreen, true,
            {1920 + 1280 - 299, 1024 - 199});
        add("small screen", {0, 0}, false, 200, {0, 0, 280, 150}, false, {0, 0});
        add("smaller than the bar", {0, 0}, true, 200, {0, 0, 30, 100}, false, {0, 0});
    }

    void position()
    {
        QFETCH(QPoint, saved);
        QFETCH(QRect, screen);
        QFETCH(bool, second);
        QFETCH(bool, vertical);
        QFETCH(int, top);
        mevo::BarPlace place;
        place.savedLeft = saved.x();
        place.savedTop = saved.y();
        place.vertical = vertical;
        place.verticalTop = top;
        std::vector<QRect> screens{second ? oneScreen : screen};
        if (second) {
            screens.push_back(rightScreen);
        }
        QTEST(mevo::barPosition(place, screen, screens), "place");
    }

    /// Buttons lie inside the bar, apart from each other and in the table's order in both layouts; the
    /// close button alone stands over the corner of another.
    void buttons_data()
    {
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<QSize>("size");
        QTest::newRow("horizontal") << false << QSize(260, 45);
        QTest::newRow("vertical") << true << QSize(45, 260);
    }

    void buttons()
    {
        QFETCH(bool, vertical);
        QTEST(mevo::barSize(vertical), "size");
        const std::vector<mevo::BarButton> &buttons = mevo::barButtons();
        QCOMPARE(buttons.size(), std::size_t(mevo::BarSetting + 1));
        for (std::size_t i = 0; i < buttons.size(); ++i) {
            const QRect place = vertical ? buttons[i].vertical : buttons[i].horizontal;
            QVERIFY2(QRect(QPoint(), mevo::barSize(vertical)).contains(place), buttons[i].name);
            for (std::size_t other = 0; other < i; ++other) {
                const QRect beside = vertical ? buttons[other].vertical : buttons[other].horizontal;
                const bool inOrder = vertical ? beside.top() < place.top() : beside.left() < place.left();
                QVERIFY2(other == mevo::BarClose || (inOrder && !place.intersects(beside)), buttons[i].name);
            }
        }
        QCOMPARE(buttons[mevo::BarLanguage].horizontal.right(), 110);
        QCOMPARE(buttons[mevo::BarLanguage].vertical.bottom(), 114);
        QCOMPARE(QByteArray(buttons[mevo::BarSetting].name), QByteArray("pushBuutton_Setting"));
    }

    void buttonStyle()
    {
        QCOMPARE(
            mevo::barButtonStyle(QStringLiteral("Mic")),
            QStringLiteral("QPushButton{border-image: url(:/rec/Mic_On.png);}QPushButton:hover{border-image: "
                           "url(:/rec/Mic_Hover.png);}QPushButton:pressed{border-image: "
                           "url(:/rec/Mic_On.png);}"));
    }
};

QTEST_GUILESS_MAIN(TestBarLayout)
#include "tst_bar_layout.moc"
