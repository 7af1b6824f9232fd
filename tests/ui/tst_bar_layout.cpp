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
    }

    /// Left, top, right and bottom, flat and upright, as the pictures of the bar want them.
    void coordinates_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QList<int>>("flat");
        QTest::addColumn<QList<int>>("upright");
        const auto add = [](const char *name, int index, QList<int> flat, QList<int> upright) {
            QTest::newRow(name) << index << std::move(flat) << std::move(upright);
        };
        add("pushButton_Close", mevo::BarClose, {251, 7, 258, 14}, {30, 251, 37, 258});
        add("pushButton_Mic", mevo::BarMicrophone, {53, 11, 67, 34}, {15, 51, 29, 74});
        add("pushBuutton_VoiceType", mevo::BarLanguage, {75, 13, 110, 32}, {13, 80, 32, 114});
        add("pushBuutton_VoiceKeypad", mevo::BarKeyboard, {116, 13, 141, 32}, {10, 123, 35, 142});
        add("pushBuutton_HandWriter", mevo::BarHandwriting, {150, 12, 171, 33}, {12, 146, 33, 167});
        add("pushBuutton_CommandWord", mevo::BarCommandWord, {178, 12, 199, 33}, {12, 175, 33, 196});
        add("pushBuutton_Translate", mevo::BarTranslate, {205, 12, 226, 33}, {12, 203, 33, 224});
        add("pushBuutton_Setting", mevo::BarSetting, {234, 12, 254, 32}, {12, 232, 32, 252});
    }
    void coordinates()
    {
        QFETCH(int, index);
        const mevo::BarButton &button = mevo::barButtons().at(std::size_t(index));
        const auto corners = [](const QRect &place) {
            return QList<int>{place.left(), place.top(), place.right(), place.bottom()};
        };
        QCOMPARE(button.name, QTest::currentDataTag());
        QTEST(corners(button.horizontal), "flat");
        QTEST(corners(button.vertical), "upright");
    }

    void positionAtArrival_data()
    {
        QTest::addColumn<QPoint>("saved");
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<QPoint>("place");
        QTest::newRow("first") << QPoint(0, 0) << false << QPoint(1620, 880);
        QTest::newRow("first, upright: as far down as it goes") << QPoint(0, 0) << true << QPoint(1620, 820);
        QTest::newRow("left alone") << QPoint(300, 0) << false << QPoint(1620, 880);
        QTest::newRow("saved") << QPoint(300, 400) << false << QPoint(300, 400);
        QTest::newRow("saved, upright") << QPoint(300, 400) << true << QPoint(300, 400);
        QTest::newRow("saved on a screen that is gone") << QPoint(2000, 400) << false << QPoint(1620, 880);
    }
    void positionAtArrival()
    {
        QFETCH(QPoint, saved);
        QFETCH(bool, vertical);
        const mevo::BarPlace place{saved.x(), saved.y(), vertical};
        QTEST(mevo::barPositionAtArrival(place, oneScreen, {oneScreen}), "place");
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
