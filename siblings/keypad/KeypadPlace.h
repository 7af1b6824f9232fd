#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <optional>
#include <vector>

namespace mevo::keypad {

/// Where the keyboard of that size is to stand: at its kept place, moved so far that all of it is on the
/// screen; without one, and when hardly a part of it would be on any screen, at the bottom of the first.
/// `screens` are the areas free of panels, the first screen's first; without any, the kept place or 0, 0.
QPoint keypadPlace(const std::optional<QPoint> &kept, const QSize &size, const std::vector<QRect> &screens);

/// The place in a settings file, between one run and the next.
class PlaceMemory
{
public:
    explicit PlaceMemory(QString path);
    /// Nothing when none is kept, or it cannot be read.
    std::optional<QPoint> load() const;
    void save(const QPoint &place) const;

private:
    QString m_path;
};

} // namespace mevo::keypad
