#pragma once

#include <QColor>
#include <QObject>

#include <functional>
#include <optional>

class QDBusVariant;

namespace mevo::keypad {

/// The desktop's wish as the portal tells it: "color-scheme" of "org.freedesktop.appearance", 1 for dark, 2
/// for light, 0 for none (XDG Desktop Portal, org.freedesktop.portal.Settings). Without one the toolkit's
/// background says what goes with the rest.
bool isDark(const std::optional<uint> &scheme, const QColor &background);

/// Whether windows are dark on this desktop, from now on.
class DesktopTheme : public QObject
{
    Q_OBJECT

public:
    /// `changed` is called from the event loop when isDark() changes. The portal is asked without waiting.
    explicit DesktopTheme(std::function<void()> changed, QObject *parent = nullptr);
    bool isDark() const { return m_dark; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void decide();

    std::function<void()> m_changed;
    std::optional<uint> m_scheme;
    bool m_dark = false;
};

} // namespace mevo::keypad
