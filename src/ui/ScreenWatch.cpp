#include "ui/ScreenWatch.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

namespace mevo {

void watchScreens(QObject *context, const std::function<void()> &changed)
{
    constexpr int settleMs = 200; // several signals come for one change
    auto *soon = new QTimer(context);
    soon->setSingleShot(true);
    soon->setInterval(settleMs);
    QObject::connect(soon, &QTimer::timeout, context, changed);
    const auto start = [soon] { soon->start(); };
    const auto watch = [context, start](const QScreen *screen) {
        QObject::connect(screen, &QScreen::geometryChanged, context, start);
        QObject::connect(screen, &QScreen::availableGeometryChanged, context, start);
    };
    for (const QScreen *screen : QGuiApplication::screens()) {
        watch(screen);
    }
    const auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    QObject::connect(application, &QGuiApplication::screenAdded, context, [watch, start](QScreen *screen) {
        watch(screen);
        start();
    });
    QObject::connect(application, &QGuiApplication::screenRemoved, context, start);
}

} // namespace mevo
