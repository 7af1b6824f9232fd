// The on-screen keyboard: types into the window that has the focus, and never takes it.

#include "base/InterfaceLanguage.h"
#include "keypad/KeypadHost.h"
#include "keypad/WordDoor.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/SilentBus.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/X11Keyboard.h"
#include "platform/linux/X11OwnWindows.h"
#include "platform/linux/X11WindowSystem.h"

#include <QApplication>
#include <QDebug>
#include <QTranslator>

#include <cstdio>

namespace {

constexpr int deliveryMs = 5000;

/// Without a display the toolkit would abort.
bool hasDisplay()
{
    const QString toolkit = qEnvironmentVariable("QT_QPA_PLATFORM", QStringLiteral("xcb"));
    return !toolkit.startsWith(QLatin1String("xcb")) || bool(mevo::X11Connection());
}

/// Nothing of it needs a display.
mevo::keypad::WordDoor::Outcome enter(mevo::keypad::WordDoor &door, mevo::keypad::Wish wish, int &argc,
                                      char *argv[])
{
    const QCoreApplication application(argc, argv);
    return door.enter(wish, deliveryMs);
}

} // namespace

int main(int argc, char *argv[])
{
    using mevo::keypad::Wish;
    using mevo::keypad::WordDoor;

    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    const mevo::keypad::CommandLine line = mevo::keypad::readCommandLine(arguments);
    if (!line.wish) {
        std::fputs(line.text.toLocal8Bit().constData(), line.refused ? stderr : stdout);
        return line.exitCode();
    }
    int ownName = 1; // the words are not the toolkit's
    WordDoor door;
    switch (enter(door, *line.wish, ownName, argv)) {
    case WordDoor::Outcome::Delivered:
        return 0;
    case WordDoor::Outcome::Unheard:
        std::fputs("KeypadHost: the keyboard that runs does not answer\n", stderr);
        return 1;
    case WordDoor::Outcome::First:
        break;
    }
    if (line.wish == Wish::Exit) {
        return 0; // none runs
    }
    if (!hasDisplay()) {
        std::fputs("KeypadHost: there is no X display\n", stderr);
        return 1;
    }
    // Nothing here draws with OpenGL, whose software implementation takes 50 MB.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION")) {
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    }
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    const mevo::SilentBus silentBus;
    const QApplication application(ownName, argv);
    QApplication::setApplicationName(QStringLiteral("mevoinput")); // whose tables it reads
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setFallbackSessionManagementEnabled(false);

    QTranslator translator;
    const QString language = mevo::translationFileFor(mevo::LinuxSystemFacts().localeId());
    if (!language.isEmpty() && translator.load(QStringLiteral(":/translations/") + language)) {
        QCoreApplication::installTranslator(&translator);
    }
    mevo::X11WindowSystem windows;
    mevo::X11OwnWindows desktop;
    mevo::X11Keyboard keyboard;
    if (!windows.canPostText()) {
        qWarning("Keypad: this desktop lets no characters be typed");
    }
    mevo::keypad::KeypadHost host(windows, keyboard, desktop);
    QObject signalContext;
    // A start that follows need not wait until the rest has been typed.
    QObject::connect(&host, &mevo::keypad::KeypadHost::closed, &host, [&door] { door.close(); });
    QObject::connect(&host, &mevo::keypad::KeypadHost::ended, &host, &QCoreApplication::quit);
    mevo::onTerminationSignal(&signalContext, [&host] { host.endSoon(); });
    if (!door.listen([&host](Wish wish) { host.carryOut(wish); })) {
        std::fputs("KeypadHost: no further start could be heard\n", stderr);
        return 1;
    }
    host.carryOut(*line.wish);
    return QApplication::exec();
}
