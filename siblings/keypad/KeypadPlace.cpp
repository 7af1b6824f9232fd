#include "keypad/KeypadPlace.h"

#include "base/SettingsFile.h"

#include <algorithm>

namespace mevo::keypad {

namespace {

constexpr int bottomMargin = 16;
constexpr int smallestShare = 4; ///< a quarter must be on the screen for the place to count
constexpr int farthest = 1000000;

const QString group = QStringLiteral("Keypad");
const QString leftKey = QStringLiteral("Left");
const QString topKey = QStringLiteral("Top");

qint64 areaOf(const QRect &rectangle)
{
    return rectangle.isEmpty() ? 0 : qint64(rectangle.width()) * rectangle.height();
}

QPoint into(const QRect &screen, const QRect &window)
{
    const int left = std::min(window.left(), screen.left() + screen.width() - window.width());
    const int top = std::min(window.top(), screen.top() + screen.height() - window.height());
    return {std::max(left, screen.left()), std::max(top, screen.top())};
}

std::optional<int> coordinate(const QVariant &value)
{
    bool isNumber = false;
    const int number = value.toString().toInt(&isNumber);
    return isNumber && std::abs(number) <= farthest ? std::optional<int>(number) : std::nullopt;
}

} // namespace

QPoint keypadPlace(const std::optional<QPoint> &kept, const QSize &size, const std::vector<QRect> &screens)
{
    if (screens.empty()) {
        return kept.value_or(QPoint());
    }
    if (kept) {
        const QRect window(*kept, size);
        const auto most =
            std::max_element(screens.begin(), screens.end(), [&](const QRect &a, const QRect &b) {
                return areaOf(a & window) < areaOf(b & window);
            });
        if (areaOf(*most & window) * smallestShare >= areaOf(window)) {
            return into(*most, window);
        }
    }
    const QRect &screen = screens.front();
    const QPoint bottom(screen.left() + (screen.width() - size.width()) / 2,
                        screen.top() + screen.height() - size.height() - bottomMargin);
    return into(screen, QRect(bottom, size));
}

PlaceMemory::PlaceMemory(QString path)
    : m_path(std::move(path))
{
}

std::optional<QPoint> PlaceMemory::load() const
{
    const SettingsFile file(group, m_path);
    const std::optional<int> left = coordinate(file.value(leftKey));
    const std::optional<int> top = coordinate(file.value(topKey));
    return left && top ? std::optional<QPoint>({*left, *top}) : std::nullopt;
}

void PlaceMemory::save(const QPoint &place) const
{
    SettingsFile file(group, m_path);
    file.setValue(leftKey, place.x());
    file.setValue(topKey, place.y());
}

} // namespace mevo::keypad
