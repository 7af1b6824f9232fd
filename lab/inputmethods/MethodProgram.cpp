#include "inputmethods/MethodProgram.h"

#include "inputmethods/KeyWatch.h"
#include "inputmethods/MethodFiles.h"
#include "inputmethods/MethodTable.h"
#include "inputmethods/MethodWindow.h"
#include "inputmethods/Microphone.h"
#include "inputmethods/Recogniser.h"
#include "inputmethods/Typist.h"
#include "receiver/QuitOnSignal.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <X11/Xlib.h>

#include <cstdio>
#include <memory>

namespace lab {

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

unsigned keyOf(const Method &method, const QString &dataFolder)
{
    const QLatin1String name(method.name);
    if (name == QLatin1String("iFlyVoice")) {
        return xunFeiKey(contentOf(xunFeiSettings(dataFolder) + QStringLiteral("config.xml")));
    }
    return name == QLatin1String("SpeechInput") ? baiduKey(contentOf(baiduSettings(dataFolder)))
                                                : method.keysym;
}

/// The parts of a method that runs, and what passes between them.
class RunningMethod : public QObject
{
public:
    RunningMethod(Display *display, const Method &method)
        : m_display(display)
        , m_method(method)
        , m_window(display, method)
        , m_key(method.use)
        , m_watch(display,
                  {[this](qint64 ms) { carryOut(m_key.down(ms)); },
                   [this](qint64 ms) { carryOut(m_key.up(ms)); }, [this] { carryOut(m_key.otherKey()); }})
        , m_typist(display)
    {
    }

    bool start(unsigned keysym)
    {
        if (keysym == 0) {
            say("has no hot key");
        } else if (!m_watch.watch(keysym)) {
            say("cannot have its hot key");
            return false;
        }
        if (m_method.listensAtStart) {
            m_key.setListening(true);
            carryOut(Dictation::Begin);
        }
        return true;
    }

    void takeEvents()
    {
        while (XPending(m_display) > 0) {
            XEvent event;
            XNextEvent(m_display, &event);
            if (m_watch.take(event) || !m_window.isCloseRequest(event)) {
                continue;
            }
            say(m_method.takesClose ? "closed" : "stays open");
            if (m_method.takesClose) {
                QCoreApplication::quit();
            }
        }
    }

private:
    void say(const char *what, const QString &text = {}) const
    {
        std::fprintf(stderr, "%s: %s%s\n", m_method.name, what, qPrintable(text));
    }

    void carryOut(Dictation step)
    {
        switch (step) {
        case Dictation::Nothing:
            return;
        case Dictation::Begin:
            if (!m_microphone.begin()) {
                say("no microphone");
                m_key.setListening(false);
                return;
            }
            m_window.show(MethodWindow::Colour::Listening);
            say("listening");
            return;
        case Dictation::Cancel:
            m_microphone.cancel();
            m_window.show(MethodWindow::Colour::Waiting);
            say("let go");
            return;
        case Dictation::End:
            m_window.show(MethodWindow::Colour::Recognising);
            m_microphone.end([this](const QByteArray &pcm) {
                m_recogniser.recognise(pcm, this, [this](const QString &text) { typeOut(text); });
            });
            return;
        }
    }

    void typeOut(const QString &text)
    {
        if (!m_key.isListening()) {
            m_window.show(MethodWindow::Colour::Waiting);
        }
        if (text.isEmpty()) {
            say("heard nothing");
            return;
        }
        const int typed = m_typist.type(text);
        say("typed ", QStringLiteral("%1 of %2 characters").arg(typed).arg(text.size()));
    }

    Display *m_display;
    const Method &m_method;
    MethodWindow m_window;
    HotKey m_key;
    KeyWatch m_watch;
    Typist m_typist;
    Microphone m_microphone;
    Recogniser m_recogniser;
};

} // namespace

int runMethod(int &argc, char **argv, const QString &name)
{
    const QCoreApplication application(argc, argv);
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const int generation =
        generationOf(contentOf(xunFeiSettings(dataFolder) + QStringLiteral("iflyImeCfg.xml")));
    const Method *method = methodOf(name, generation);
    if (method == nullptr) {
        std::fprintf(stderr, "no input method %s\n", qPrintable(name));
        return 2;
    }
    const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (display == nullptr) {
        std::fprintf(stderr, "%s: no display\n", method->name);
        return 1;
    }
    mevo::lab::quitOnSignals();
    RunningMethod running(display.get(), *method);
    if (!running.start(keyOf(*method, dataFolder))) {
        return 1;
    }
    const QSocketNotifier notifier(ConnectionNumber(display.get()), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&running] { running.takeEvents(); });
    // Requests read events from the connection, too, which the notifier then no longer sees.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &running,
                     [&running] { running.takeEvents(); });
    std::fprintf(stderr, "%s: ready\n", method->name);
    return QCoreApplication::exec();
}

} // namespace lab
