#include "ui/BarLayout.h"

#include <QtGlobal>

#include <algorithm>
#include <optional>

namespace mevo {

namespace {

QRect corners(int left, int top, int right, int bottom)
{
    return {QPoint(left, top), QPoint(right, bottom)};
}

} // namespace

const std::vector<BarButton> &barButtons()
{
    static const std::vector<BarButton> buttons = {
        {"pushButton_Close", corners(251, 7, 258, 14), corners(30, 251, 37, 258), nullptr, nullptr,
         QT_TRANSLATE_NOOP("MainWindow", "菜单")},
        {"pushButton_Mic", corners(53, 11, 67, 34), corners(15, 51, 29, 74), "Mic",
         QT_TRANSLATE_NOOP("MainWindow", "打开的麦克风窗口可设置语音命令或语音搜索的功能;\r "
                                         "当用讯飞语音输入法时，打开的讯飞麦克风窗口可设置方言等功能"),
         QT_TRANSLATE_NOOP("MainWindow", "麦克风")},
        {"pushBuutton_VoiceType", corners(75, 13, 110, 32), corners(13, 80, 32, 114), nullptr,
         QT_TRANSLATE_NOOP("MainWindow", "点击选择语言"), QT_TRANSLATE_NOOP("MainWindow", "语言")},
        {"pushBuutton_VoiceKeypad", corners(116, 13, 141, 32), corners(10, 123, 35, 142), "KeyPad",
         QT_TRANSLATE_NOOP("MainWindow", "点击打开虚拟键盘"), QT_TRANSLATE_NOOP("MainWindow", "虚拟键盘")},
        {"pushBuutton_HandWriter", corners(150, 12, 171, 33), corners(12, 146, 33, 167), "HandWriter",
         nullptr, QT_TRANSLATE_NOOP("MainWindow", "手写")},
        {"pushBuutton_CommandWord", corners(178, 12, 199, 33), corners(12, 175, 33, 196), "CommandWord",
         QT_TRANSLATE_NOOP("MainWindow", "点击打开设置语音命令词"),
         QT_TRANSLATE_NOOP("MainWindow", "语音命令词")},
        {"pushBuutton_Translate", corners(205, 12, 226, 33), corners(12, 203, 33, 224), "Translate",
         QT_TRANSLATE_NOOP("MainWindow", "点击打开翻译窗口"), QT_TRANSLATE_NOOP("MainWindow", "翻译")},
        {"pushBuutton_Setting", corners(234, 12, 254, 32), corners(12, 232, 32, 252), "Setting",
         QT_TRANSLATE_NOOP("MainWindow", "点击打开设置窗口"), QT_TRANSLATE_NOOP("MainWindow", "设置")},
    };
    return buttons;
}

namespace {

/// The nearest place at which all of the bar is seen; its upper left end when the screen is too small.
QPoint insideOf(const QRect &screen, const QPoint &place, const QSize &size)
{
    return {qBound(screen.left(), place.x(), qMax(screen.left(), screen.right() - size.width() + 1)),
            qBound(screen.top(), place.y(), qMax(screen.top(), screen.bottom() - size.height() + 1))};
}

std::optional<QPoint> savedPosition(const BarPlace &place, const std::vector<QRect> &screens)
{
    const QPoint saved(place.savedLeft, place.savedTop);
    // What was saved is where the pointer let the bar go, so that it lies on a screen as long as that
    // screen is there; the bar may be longer than what is left of it.
    const auto room = std::find_if(screens.begin(), screens.end(),
                                   [&saved](const QRect &candidate) { return candidate.contains(saved); });
    if (!place.isSaved() || room == screens.end()) {
        return std::nullopt;
    }
    return insideOf(*room, saved, barSize(place.vertical));
}

} // namespace

QSize barSize(bool vertical)
{
    return vertical ? QSize(45, 260) : QSize(260, 45);
}

QPoint barPosition(const BarPlace &place, const QRect &screen, const std::vector<QRect> &screens)
{
    const QSize size = barSize(place.vertical);
    if (const std::optional<QPoint> saved = savedPosition(place, screens)) {
        return *saved;
    }
    const int left = screen.left() + screen.width() - (place.vertical ? 99 : place.fromRight);
    const int top =
        place.vertical ? screen.top() + place.verticalTop : screen.top() + screen.height() - place.fromBottom;
    return insideOf(screen, {left, top}, size);
}

QPoint barPositionAtArrival(const BarPlace &place, const QRect &screen, const std::vector<QRect> &screens)
{
    if (const std::optional<QPoint> saved = savedPosition(place, screens)) {
        return *saved;
    }
    return insideOf(screen, {screen.right() - 299, screen.bottom() - 199}, barSize(place.vertical));
}

QString barButtonStyle(const QString &stem)
{
    return QStringLiteral("QPushButton{border-image: url(:/rec/%1_On.png);}"
                          "QPushButton:hover{border-image: url(:/rec/%1_Hover.png);}"
                          "QPushButton:pressed{border-image: url(:/rec/%1_On.png);}")
        .arg(stem);
}

} // namespace mevo
