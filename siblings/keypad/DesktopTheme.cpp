#include "keypad/DesktopTheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace mevo::keypad {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");

constexpr uint preferDark = 1;
constexpr uint preferLight = 2;
constexpr int middleLightness = 128;

/// The portal's older question answers with a variant within a variant.
std::optional<uint> schemeIn(QVariant value)
{
    for (int depth = 0; depth < 3 && value.userType() == qMetaTypeId<QDBusVariant>(); ++depth) {
        value = value.value<QDBusVariant>().variant();
    }
    bool isNumber = false;
    const uint scheme = value.toUInt(&isNumber);
    return isNumber ? std::optional<uint>(scheme) : std::nullopt;
}

} // namespace

bool isDark(const std::optional<uint> &scheme, const QColor &background)
{
    if (scheme == preferDark || scheme == preferLight) {
        return *scheme == preferDark;
    }
    return background.lightness() < middleLightness;
}

DesktopTheme::DesktopTheme(std::function<void()> changed, QObject *parent)
    : QObject(parent)
    , m_dark(keypad::isDark({}, QGuiApplication::palette().color(QPalette::Window)))
{
    m_changed = std::move(changed);
    QCoreApplication::instance()->installEventFilter(this);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                    SLOT(settingChanged(QString, QString, QDBusVariant)));
        ask();
    }
}

void DesktopTheme::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << appearance << colorScheme;
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) { // many desktops have no portal
            m_scheme = schemeIn(reply.value().variant());
            decide();
        }
    });
}

void DesktopTheme::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == appearance && key == colorScheme) {
        m_scheme = schemeIn(value.variant());
        decide();
    }
}

bool DesktopTheme::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()) {
        QMetaObject::invokeMethod(this, &DesktopTheme::decide, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void DesktopTheme::decide()
{
    const bool dark = keypad::isDark(m_scheme, QGuiApplication::palette().color(QPalette::Window));
    if (dark != m_dark) {
        m_dark = dark;
        m_changed();
    }
}

} // namespace mevo::keypad
