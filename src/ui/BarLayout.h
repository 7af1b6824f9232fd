#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <vector>

namespace mevo {

/// One button of the bar: where it stands in either layout, its pictures and its texts. Texts are
/// sources of the context "MainWindow"; a button without a tool-tip has none.
struct BarButton
{
    const char *name; ///< object name
    QRect horizontal;
    QRect vertical;
    const char *picture; ///< stem of NAME_On.png and NAME_Hover.png; null for its own style
    const char *toolTip;
    const char *accessibleName;
};

enum BarButtonIndex {
    BarClose,
    BarMicrophone,
    BarLanguage,
    BarKeyboard,
    BarHandwriting,
    BarCommandWord,
    BarTranslate,
    BarSetting
};

/// The bar's buttons in the order of BarButtonIndex.
const std::vector<BarButton> &barButtons();

QSize barSize(bool vertical);

/// Where the bar stands on a screen: the saved position when both coordinates are set and it is on one
/// of `screens`, else the given distances from the right and bottom (horizontal) or the right and top
/// (vertical) of `screen`, kept inside it.
struct BarPlace
{
    int savedLeft = 0;
    int savedTop = 0;
    bool vertical = false;
    int fromRight = 299;
    int fromBottom = 199;
    int verticalTop = 200;

    bool isSaved() const { return savedLeft != 0 && savedTop != 0; }
};
QPoint barPosition(const BarPlace &place, const QRect &screen, const std::vector<QRect> &screens);

/// Where the bar stands when a receiver arrives: the saved position as above, else one place for either
/// layout, a pixel further in than a start gives, as it has always been; kept inside `screen`.
QPoint barPositionAtArrival(const BarPlace &place, const QRect &screen, const std::vector<QRect> &screens);

/// Style sheet of a button that changes its picture under the pointer.
QString barButtonStyle(const QString &stem);

} // namespace mevo
