#include "support/Rows.h"
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
        // saved, vertical, top (of the upright bar's default place), screen, second (the screen to the right
        // is there too), place
        const Rows<QPoint, bool, int, QRect, bool, QPoint> add;
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
        const auto [saved, vertical, top, screen, second, expectedPlace] =
            rowOf<QPoint, bool, int, QRect, bool, QPoint>();
        mevo::BarPlace place;
        place.savedLeft = saved.x();
        place.savedTop = saved.y();
        place.vertical = vertical;
        place.verticalTop = top;
        std::vector<QRect> screens{second ? oneScreen : screen};
        if (second) {
            screens.push_back(rightScreen);
        }
        QCOMPARE(mevo::barPosition(place, screen, screens), expectedPlace);
    }

    /// Buttons lie inside the bar, apart from each other and in the table's order in both layouts; the
    /// close button alone stands over the corner of another.
    void buttons_data()
    {
        const Rows<bool, QSize> row; // vertical, size
        row("horizontal", false, {260, 45});
        row("vertical", true, {45, 260});
    }

    void buttons()
    {
        const auto [vertical, size] = rowOf<bool, QSize>();
        QCOMPARE(mevo::barSize(vertical), size);
        const std::vector<mevo::BarButton> &buttons = mevo::barButtons();
        QCOMPARE(buttons.size(), std::size_t(mevo::BarSetting + 1));
        QCOMPARE(buttons[mevo::BarMicrophone].horizontal, QRect(QPoint(53, 11), QPoint(67, 34)));
        QCOMPARE(buttons[mevo::BarMicrophone].vertical, QRect(QPoint(15, 51), QPoint(29, 74)));
        for (std::size_t i = 0; i < buttons.size(); ++i) {
            const QRect place = vertical ? buttons[i].vertical : buttons[i].horizontal;
            QVERIFY2(QRect(QPoint(), mevo::barSize(vertical)).contains(place), buttons[i].name);
            for (std::size_t other = 0; other < i; ++other) {
                const QRect beside = vertical ? buttons[other].vertical : buttons[other].horizontal;
                const bool inOrder = vertical ? beside.top() < place.top() : beside.left() < place.left();
                QVERIFY2(other == mevo::BarClose || (inOrder && !place.intersects(beside)), buttons[i].name);
            }
        }
    }

    void positionAtArrival_data()
    {
        const Rows<QPoint, bool, QPoint> row; // saved, vertical, place
        row("first", {0, 0}, false, {1620, 880});
        row("first, upright: as far down as it goes", {0, 0}, true, {1620, 820});
        row("left alone", {300, 0}, false, {1620, 880});
        row("saved", {300, 400}, false, {300, 400});
        row("saved, upright", {300, 400}, true, {300, 400});
        row("saved on a screen that is gone", {2000, 400}, false, {1620, 880});
    }
    void positionAtArrival()
    {
        const auto [saved, vertical, expectedPlace] = rowOf<QPoint, bool, QPoint>();
        const mevo::BarPlace place{saved.x(), saved.y(), vertical};
        QCOMPARE(mevo::barPositionAtArrival(place, oneScreen, {oneScreen}), expectedPlace);
    }

    void buttonStyle()
    {
        QCOMPARE(mevo::barButtonStyle("Mic"_s),
                 "QPushButton{border-image: url(:/rec/Mic_On.png);}QPushButton:hover{border-image: "
                 "url(:/rec/Mic_Hover.png);}QPushButton:pressed{border-image: "
                 "url(:/rec/Mic_On.png);}"_s);
    }
};

QTEST_GUILESS_MAIN(TestBarLayout)
#include "tst_bar_layout.moc"
