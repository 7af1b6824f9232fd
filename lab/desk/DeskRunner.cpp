#include "desk/DeskRunner.h"

#include "desk/HttpGet.h"
#include "desk/Speaker.h"
#include "desk/SpeechClip.h"
#include "receiver/LaunchEnvironment.h"
#include "receiver/WaitUntil.h"
#include "recognisers/SpeechDecoder.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace mevo::lab {

namespace {

using Result = DeskRunner::Result;

// A wait ends as soon as it has what it waits for: long bounds cost nothing, and a loaded machine needs them.
constexpr int defaultWaitMs = 20000;
constexpr int defaultQuietMs = 1000;
constexpr int toolTimeoutMs = 60000;
constexpr int retryPauseMs = 50;  ///< between two tries of a command or a request
constexpr int keysAwakeMs = 3000; ///< after this a key is pressed whether its receiver is awake or not
constexpr int stillMs = 60;       ///< a window that is clicked at has stood for so long
constexpr int logLinesOnFailure = 30;

QString within()
{
    return QStringLiteral("within");
}

void say(const QString &line)
{
    std::printf("%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

/// A text so that control characters can be seen.
QString visible(const QString &text)
{
    QString result = text;
    result.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    result.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    result.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    result.replace(QLatin1Char('\t'), QLatin1String("\\t"));
    result.replace(QLatin1Char('\x1b'), QLatin1String("\\e"));
    return QLatin1Char('"') + result + QLatin1Char('"');
}

/// Tries at once and again until it goes well or the time is over, also when one try alone outlasts it.
bool repeat(int timeoutMs, const std::function<bool()> &attempt)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!attempt()) {
        if (elapsed.elapsed() >= timeoutMs)
            return false;
        waitUntil([] { return false; }, retryPauseMs);
    }
    return true;
}

QString lastLines(const QByteArray &text, int count)
{
    const QList<QByteArray> lines = text.trimmed().split('\n');
    return QString::fromUtf8(lines.mid(std::max(0, lines.size() - count)).join('\n'));
}

} // namespace

Result Result::failed(const QString &expected, const QString &seen)
{
    return {false, {}, expected, seen};
}

struct DeskRunner::Verb
{
    const char *name;
    Result (DeskRunner::*run)(Step step);
};

const DeskRunner::Verb DeskRunner::verbs[] = {
    {"set", &DeskRunner::set},
    {"start-program", &DeskRunner::startProgram},
    {"stop-program", &DeskRunner::stopProgram},
    {"wait-exit", &DeskRunner::waitExit},
    {"expect-running", &DeskRunner::expectRunning},
    {"target", &DeskRunner::openTarget},
    {"close", &DeskRunner::closeTarget},
    {"focus", &DeskRunner::focusTarget},
    {"clear", &DeskRunner::clearTarget},
    {"wait-text", &DeskRunner::waitText},
    {"expect-text", &DeskRunner::expectText},
    {"wait-log", &DeskRunner::waitLog},
    {"no-log", &DeskRunner::noLog},
    {"wait-file", &DeskRunner::waitFile},
    {"expect-feature", &DeskRunner::expectFeature},
    {"wait-window", &DeskRunner::waitWindow},
    {"wait-menu", &DeskRunner::waitMenu},
    {"no-window", &DeskRunner::noWindow},
    {"speak", &DeskRunner::speak},
    {"hear", &DeskRunner::hear},
    {"hold", &DeskRunner::hold},
    {"key", &DeskRunner::key},
    {"click", &DeskRunner::click},
    {"pointer", &DeskRunner::movePointer},
    {"button", &DeskRunner::mouseButton},
    {"expect-near", &DeskRunner::expectNear},
    {"expect-place", &DeskRunner::expectPlace},
    {"expect-focus", &DeskRunner::expectFocus},
    {"screenshot", &DeskRunner::screenshot},
    {"http", &DeskRunner::http},
    {"sh", &DeskRunner::shell},
    {"note", &DeskRunner::note},
    {"log", &DeskRunner::printLog},
    {"clock", &DeskRunner::startClock},
    {"lap", &DeskRunner::lap},
    {"moment", &DeskRunner::moment},
};

DeskRunner::DeskRunner(Options options, KeyboardPort *keyboard)
    : m_options(std::move(options))
    , m_console(keyboard)
{
}

bool DeskRunner::run(const DeskScript &script)
{
    const qint64 start = monotonicNs();
    const auto msSinceStart = [start] { return double(monotonicNs() - start) / 1e6; };
    for (const DeskStep &step : script.steps) {
        const double began = msSinceStart();
        const Result result = runStep(step);
        QString line = QStringLiteral("[%1 ms] +%2 ms  %3: %4")
                           .arg(began, 9, 'f', 1)
                           .arg(msSinceStart() - began, 0, 'f', 1)
                           .arg(step.line)
                           .arg(step.source);
        if (result.ok) {
            say(result.note.isEmpty() ? line : line + QStringLiteral("  -> ") + result.note);
            continue;
        }
        say(line);
        say(QStringLiteral("FAILED at line %1\n  expected: %2\n  seen:     %3")
                .arg(step.line)
                .arg(result.expected, result.seen));
        if (!m_program.log().isEmpty())
            say(QStringLiteral("--- the program's last lines\n") +
                lastLines(m_program.log(), logLinesOnFailure));
        const QString picture =
            m_options.artifacts.absoluteFilePath(QStringLiteral("%1-failed.png").arg(m_options.name));
        if (readyToFind({}).ok && m_desktop->screenshot(picture))
            say(QStringLiteral("--- the screen: ") + picture);
        return false;
    }
    return true;
}

Result DeskRunner::runStep(const DeskStep &step)
{
    const auto *verb = std::find_if(std::begin(verbs), std::end(verbs), [&step](const Verb &row) {
        return step.verb == QLatin1String(row.name);
    });
    if (verb != std::end(verbs))
        return (this->*verb->run)(step);
    if (step.verb == QLatin1String("mark"))
        m_logMark = m_program.log().size();
    // On a loaded machine a heartbeat may be late: the user presses again then.
    if (step.verb == QLatin1String("press"))
        waitUntil([this] { return !m_console.receiver().voiceKeysSilent(); }, keysAwakeMs);
    const ReceiverConsole::Answer answer = m_console.execute(QStringList{step.verb} + step.arguments);
    return answer.ok ? Result{true, answer.text, {}, {}} : Result::failed(step.source, answer.text);
}

Result DeskRunner::set(Step step)
{
    m_options.environment.insert(step.arguments.at(0), step.arguments.at(1));
    return {};
}

Result DeskRunner::startProgram(Step step)
{
    const QString started = QStringLiteral("the program starts");
    const QString program = step.options.value(QStringLiteral("file"), m_options.program);
    if (program.isEmpty())
        return Result::failed(started, QStringLiteral("no --program is given"));
    if (m_program.running())
        return Result::failed(started, QStringLiteral("it is running"));
    m_logMark = m_program.log().size();
    if (!m_program.start(program, step.arguments,
                         launchEnvironment(m_console.bed().root(), program, m_options.environment)))
        return Result::failed(started, m_program.errorText());
    return {};
}

Result DeskRunner::stopProgram(Step step)
{
    if (!m_program.running())
        return Result::failed(QStringLiteral("the program ends"), QStringLiteral("it is not running"));
    if (!m_program.stop(step.milliseconds(within(), defaultWaitMs)))
        return Result::failed(QStringLiteral("the program ends"), QStringLiteral("it had to be killed"));
    return {true, QStringLiteral("exit code %1").arg(m_program.exitCode()), {}, {}};
}

Result DeskRunner::waitExit(Step step)
{
    const QString expected = QStringLiteral("exit code %1").arg(step.arguments.first());
    if (!waitUntil([this] { return !m_program.running(); }, step.milliseconds(within(), defaultWaitMs)))
        return Result::failed(expected, QStringLiteral("it is still running"));
    const QString code = QString::number(m_program.exitCode());
    return code == step.arguments.first() ? Result{}
                                          : Result::failed(expected, QStringLiteral("exit code ") + code);
}

Result DeskRunner::expectRunning(Step)
{
    if (m_program.running())
        return {};
    return Result::failed(QStringLiteral("the program runs"),
                          QStringLiteral("it ended with exit code %1").arg(m_program.exitCode()));
}

TargetWindow *DeskRunner::targetOf(const QString &name) const
{
    const auto entry = m_targets.find(name.isEmpty() ? m_current : name);
    return entry == m_targets.end() ? nullptr : entry->second.get();
}

Result DeskRunner::openTarget(Step step)
{
    const QString kind = step.arguments.first();
    const QString name = step.options.value(QStringLiteral("as"), kind);
    std::unique_ptr<TargetWindow> target = TargetWindow::start(kind);
    if (!target)
        return Result::failed(kind + QStringLiteral(" takes keys"), QStringLiteral("it does not come up"));
    m_targets[name] = std::move(target);
    m_current = name;
    return {};
}

Result DeskRunner::closeTarget(Step step)
{
    return m_targets.erase(step.arguments.first()) == 1
               ? Result{}
               : Result::failed(QStringLiteral("a target of this name"), QStringLiteral("none"));
}

Result DeskRunner::focusTarget(Step step)
{
    TargetWindow *target = targetOf(step.arguments.first());
    if (!target)
        return Result::failed(QStringLiteral("a target of this name"), QStringLiteral("none"));
    m_current = step.arguments.first();
    return target->focus()
               ? Result{}
               : Result::failed(QStringLiteral("it gets the focus"), QStringLiteral("another has it"));
}

Result DeskRunner::clearTarget(Step step)
{
    TargetWindow *target = targetOf(step.arguments.value(0));
    if (!target)
        return Result::failed(QStringLiteral("a target"), QStringLiteral("none"));
    return target->clear() ? Result{}
                           : Result::failed(QStringLiteral("an empty target"), QStringLiteral("text"));
}

Result DeskRunner::waitText(Step step)
{
    TargetWindow *target = targetOf(step.options.value(QStringLiteral("in")));
    if (!target)
        return Result::failed(QStringLiteral("a target"), QStringLiteral("none"));
    const QString wanted = step.arguments.first();
    QString seen;
    const auto holds = [&] {
        seen = target->peek();
        return seen.contains(wanted);
    };
    if (waitUntil(holds, step.milliseconds(within(), defaultWaitMs)))
        return {true, visible(seen), {}, {}};
    return Result::failed(QStringLiteral("a text with ") + visible(wanted), visible(seen));
}

Result DeskRunner::expectText(Step step)
{
    TargetWindow *target = targetOf(step.options.value(QStringLiteral("in")));
    if (!target)
        return Result::failed(QStringLiteral("a target"), QStringLiteral("none"));
    const QString wanted = step.arguments.first();
    waitUntil([&] { return target->peek() == wanted; }, step.milliseconds(within(), defaultWaitMs), 20);
    const QString seen = target->text(wanted.size(), 0); // what comes after it counts as well
    return seen == wanted ? Result{} : Result::failed(visible(wanted), visible(seen));
}

QByteArray DeskRunner::logSinceMark() const
{
    return m_program.log().mid(m_logMark);
}

Result DeskRunner::waitLog(Step step)
{
    const QByteArray wanted = step.arguments.first().toUtf8();
    if (waitUntil([&] { return logSinceMark().contains(wanted); },
                  step.milliseconds(within(), defaultWaitMs)))
        return {};
    return Result::failed(QStringLiteral("a log line with ") + visible(step.arguments.first()),
                          QStringLiteral("%1 bytes without it").arg(logSinceMark().size()));
}

Result DeskRunner::noLog(Step step)
{
    const QByteArray unwanted = step.arguments.first().toUtf8();
    if (!waitUntil([&] { return logSinceMark().contains(unwanted); },
                   step.milliseconds(QStringLiteral("for"), defaultQuietMs)))
        return {};
    return Result::failed(QStringLiteral("no log line with ") + visible(step.arguments.first()),
                          QStringLiteral("it is there"));
}

Result DeskRunner::waitFile(Step step)
{
    const QString wanted = step.arguments.at(1);
    QString seen;
    const auto holds = [&] {
        QFile file(step.arguments.first());
        seen = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        return seen.contains(wanted);
    };
    if (waitUntil(holds, step.milliseconds(within(), defaultWaitMs)))
        return {};
    return Result::failed(QStringLiteral("a file with ") + visible(wanted), visible(seen));
}

Result DeskRunner::expectFeature(Step step)
{
    const QStringList words =
        QStringList{QStringLiteral("wait-feature")} + step.arguments +
        QStringList{within(), QString::number(step.milliseconds(within(), defaultWaitMs))};
    const ReceiverConsole::Answer answer = m_console.execute(words);
    return answer.ok ? Result{} : Result::failed(step.arguments.join(QLatin1Char(' ')), answer.text);
}

Result DeskRunner::readyToFind(const QString &pattern)
{
    const QRegularExpression expression(pattern);
    if (!expression.isValid())
        return Result::failed(QStringLiteral("a pattern"), expression.errorString());
    if (!m_desktop)
        m_desktop = Desktop::open();
    return m_desktop ? Result{} : Result::failed(QStringLiteral("a display"), QStringLiteral("none"));
}

Result DeskRunner::windowStep(const QString &pattern, bool wanted, int timeoutMs)
{
    const Result ready = readyToFind(pattern);
    if (!ready.ok)
        return ready;
    const QRegularExpression expression(pattern);
    const auto reached = [&] { return m_desktop->findWindow(expression).has_value() == wanted; };
    if (waitUntil(reached, timeoutMs, 20))
        return {};
    QStringList titles;
    for (const Desktop::Window window : m_desktop->clientWindows())
        titles.append(m_desktop->title(window));
    return Result::failed((wanted ? QStringLiteral("a window ") : QStringLiteral("no window ")) + pattern,
                          QStringLiteral("managed windows: ") + titles.join(QStringLiteral("; ")));
}

Result DeskRunner::withWindow(const QString &pattern,
                              const std::function<Result(Desktop::Window window)> &action)
{
    const Result ready = readyToFind(pattern);
    if (!ready.ok)
        return ready;
    const QRegularExpression expression(pattern);
    std::optional<Desktop::Window> window;
    waitUntil([&] { return (window = m_desktop->findWindow(expression)).has_value(); }, defaultWaitMs, 20);
    return window ? action(*window)
                  : Result::failed(QStringLiteral("a window ") + pattern, QStringLiteral("none"));
}

Result DeskRunner::waitWindow(Step step)
{
    return windowStep(step.arguments.first(), true, step.milliseconds(within(), defaultWaitMs));
}

Result DeskRunner::waitMenu(Step step)
{
    const int timeoutMs = step.milliseconds(within(), defaultWaitMs);
    const Result shown = windowStep(step.arguments.first(), true, timeoutMs);
    if (!shown.ok)
        return shown;
    return waitUntil([this] { return m_desktop->keyboardIsGrabbed(); }, timeoutMs, 20)
               ? Result{}
               : Result::failed(QStringLiteral("the menu takes the keys"), QStringLiteral("it does not"));
}

Result DeskRunner::noWindow(Step step)
{
    return windowStep(step.arguments.first(), false, step.milliseconds(within(), defaultWaitMs));
}

Result DeskRunner::speak(Step step)
{
    QString clip = step.arguments.first();
    QString reason;
    QTemporaryDir folder;
    if (!QFileInfo(clip).isFile()) {
        const QString text = clip;
        clip = folder.filePath(QStringLiteral("speech.wav"));
        const QString voice = step.options.value(QStringLiteral("voice"), QStringLiteral("rms"));
        if (!speakIntoFile(text, voice, clip, &reason))
            return Result::failed(QStringLiteral("a spoken sentence"), reason);
    }
    return playIntoMicrophone(clip, &reason) ? Result{}
                                             : Result::failed(QStringLiteral("a played clip"), reason);
}

Result DeskRunner::hear(Step step)
{
    constexpr int soundTimeoutMs = 30000;
    const QString wanted = step.arguments.first();
    DeskStep clicking = step;
    clicking.arguments.removeFirst();
    ::lab::SpeechDecoder decoder;
    Speaker speaker;
    if (!decoder.isReady() || !speaker.records(soundTimeoutMs))
        return Result::failed(QStringLiteral("a recogniser and a speaker"),
                              QStringLiteral("one is not there"));
    QStringList heard;
    Result clicked;
    const bool understood = repeat(step.milliseconds(within(), defaultWaitMs), [&] {
        if (!speaker.isQuiet(soundTimeoutMs)) // another reading plays
            return false;
        clicked = click(clicking);
        if (!clicked.ok)
            return true;
        const QByteArray sound = speaker.nextSound(soundTimeoutMs);
        heard.append(sound.isEmpty() ? QStringLiteral("(nothing)") : decoder.recognise(sound).trimmed());
        return heard.last() == wanted;
    });
    if (!clicked.ok)
        return clicked;
    const QString all = heard.join(QStringLiteral("; "));
    return understood ? Result{true, all, {}, {}}
                      : Result::failed(QStringLiteral("to hear ") + visible(wanted), all);
}

Result DeskRunner::hold(Step step)
{
    bool isNumber = false;
    const int milliseconds = step.arguments.first().toInt(&isNumber);
    if (!isNumber)
        return Result::failed(QStringLiteral("milliseconds"), step.arguments.first());
    waitUntil([] { return false; }, milliseconds);
    return {};
}

Result DeskRunner::runTool(const QString &tool, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(tool, arguments);
    if (!process.waitForStarted() ||
        !waitUntil([&process] { return process.state() == QProcess::NotRunning; }, toolTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        return Result::failed(tool + QStringLiteral(" ends"), process.errorString());
    }
    const QString output = QString::fromUtf8(process.readAll()).trimmed();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return Result::failed(tool + QStringLiteral(" succeeds"),
                              QStringLiteral("exit code %1: %2").arg(process.exitCode()).arg(output));
    return {true, output, {}, {}};
}

Result DeskRunner::key(Step step)
{
    return runTool(QStringLiteral("xdotool"), {QStringLiteral("key"), step.arguments.first()});
}

Result DeskRunner::movePointer(Step step)
{
    const auto moveFrom = [&](const QPoint &corner) {
        return runTool(QStringLiteral("xdotool"),
                       {QStringLiteral("mousemove"),
                        QString::number(corner.x() + step.arguments.at(0).toInt()),
                        QString::number(corner.y() + step.arguments.at(1).toInt())});
    };
    const QString pattern = step.options.value(QStringLiteral("over"));
    return pattern.isEmpty() ? moveFrom({}) : withWindow(pattern, [&](Desktop::Window window) {
        // A window manager may still be about to put it elsewhere.
        QPoint corner = m_desktop->corner(window);
        QElapsedTimer still;
        still.start();
        waitUntil(
            [&] {
                const QPoint now = m_desktop->corner(window);
                if (now != corner)
                    still.restart();
                corner = now;
                return still.elapsed() >= stillMs;
            },
            defaultWaitMs, 10);
        return moveFrom(corner);
    });
}

Result DeskRunner::click(Step step)
{
    const Result moved = movePointer(step);
    return moved.ok ? runTool(QStringLiteral("xdotool"),
                              {QStringLiteral("click"), step.arguments.value(2, QStringLiteral("1"))})
                    : moved;
}

Result DeskRunner::mouseButton(Step step)
{
    const bool down = step.arguments.first() == QLatin1String("down");
    return runTool(QStringLiteral("xdotool"),
                   {down ? QStringLiteral("mousedown") : QStringLiteral("mouseup"), step.arguments.at(1)});
}

Result DeskRunner::placeStep(Step step,
                             const std::function<bool(const QRect &place, const QPoint &point)> &fits)
{
    const QPoint offset(step.arguments.value(0).toInt(), step.arguments.value(1).toInt());
    return withWindow(step.arguments.value(2), [&](Desktop::Window window) {
        QPoint origin;
        const QString reference = step.options.value(QStringLiteral("over"));
        if (!reference.isEmpty()) {
            const Result found = withWindow(reference, [&](Desktop::Window other) {
                origin = m_desktop->corner(other);
                return Result{};
            });
            if (!found.ok)
                return found;
        }
        QRect place;
        const auto holds = [&] { return fits(place = m_desktop->rectangle(window), origin + offset); };
        if (waitUntil(holds, step.milliseconds(within(), defaultWaitMs), 20))
            return Result{};
        const QPoint wanted = origin + offset;
        return Result::failed(QStringLiteral("it is at %1, %2").arg(wanted.x()).arg(wanted.y()),
                              QStringLiteral("%1, %2, %3 wide and %4 high")
                                  .arg(place.x())
                                  .arg(place.y())
                                  .arg(place.width())
                                  .arg(place.height()));
    });
}

Result DeskRunner::expectNear(Step step)
{
    constexpr int reach = 12;
    return placeStep(step, [](const QRect &place, const QPoint &point) {
        return place.adjusted(-reach, -reach, reach, reach).contains(point);
    });
}

Result DeskRunner::expectPlace(Step step)
{
    constexpr int reach = 2;
    return placeStep(step, [](const QRect &place, const QPoint &point) {
        const QPoint apart = place.topLeft() - point;
        return !place.isEmpty() && qAbs(apart.x()) <= reach && qAbs(apart.y()) <= reach;
    });
}

Result DeskRunner::expectFocus(Step step)
{
    const int timeoutMs = step.milliseconds(within(), defaultWaitMs);
    const auto wait = [&](const std::function<bool()> &focused) {
        if (waitUntil(focused, timeoutMs, 20))
            return Result{};
        return Result::failed(QStringLiteral("it has the focus"),
                              m_desktop->title(m_desktop->focusedWindow()));
    };
    const QString name = step.arguments.first();
    if (const TargetWindow *target = targetOf(name)) {
        const Result ready = readyToFind({});
        return ready.ok ? wait([target] { return target->hasFocus(); }) : ready;
    }
    return withWindow(
        name, [&](Desktop::Window window) { return wait([&] { return m_desktop->hasFocus(window); }); });
}

Result DeskRunner::screenshot(Step step)
{
    const QString file = m_options.artifacts.absoluteFilePath(step.arguments.first());
    const auto take = [&](Desktop::Window window) {
        return m_desktop->screenshot(file, window) ? Result{true, file, {}, {}}
                                                   : Result::failed(QStringLiteral("a picture in ") + file,
                                                                    QStringLiteral("it cannot be made"));
    };
    if (step.options.contains(QStringLiteral("of")))
        return withWindow(step.options.value(QStringLiteral("of")), take);
    const Result ready = readyToFind({});
    return ready.ok ? take(0) : ready;
}

Result DeskRunner::http(Step step)
{
    if (step.arguments.first() != QLatin1String("GET"))
        return Result::failed(QStringLiteral("GET"), step.arguments.first());
    const int timeoutMs = step.milliseconds(within(), defaultWaitMs);
    const QString wanted = step.options.value(QStringLiteral("contains"));
    HttpAnswer answer;
    const bool found = repeat(timeoutMs, [&] {
        answer = httpGet(QUrl(step.arguments.at(1), QUrl::StrictMode), timeoutMs);
        return !answer.error.isEmpty() || QString::fromUtf8(answer.body).contains(wanted);
    });
    const QString body = QString::fromUtf8(answer.body);
    if (!answer.error.isEmpty())
        return Result::failed(QStringLiteral("an answer"),
                              QStringLiteral("status %1, %2 %3").arg(answer.status).arg(answer.error, body));
    return found ? Result{true, body.simplified(), {}, {}}
                 : Result::failed(QStringLiteral("an answer with ") + visible(wanted), visible(body));
}

Result DeskRunner::shell(Step step)
{
    Result result;
    repeat(step.milliseconds(within(), 0), [&] {
        result = runTool(QStringLiteral("env"),
                         {QStringLiteral("PROGRAM_PID=%1").arg(m_program.processId()), QStringLiteral("sh"),
                          QStringLiteral("-c"), step.arguments.first()});
        return result.ok;
    });
    return result;
}

Result DeskRunner::note(Step step)
{
    say(step.arguments.first());
    return {};
}

Result DeskRunner::printLog(Step)
{
    say(QString::fromUtf8(m_program.log()));
    return {};
}

Result DeskRunner::startClock(Step)
{
    m_clock.start();
    return {};
}

Result DeskRunner::lap(Step step)
{
    if (!m_clock.isValid())
        return Result::failed(QStringLiteral("a started clock"), QStringLiteral("none"));
    const QString milliseconds = QString::number(double(m_clock.nsecsElapsed()) / 1e6, 'f', 1);
    say(QStringLiteral("LAP %1: %2 ms").arg(step.arguments.first(), milliseconds));
    return {};
}

Result DeskRunner::moment(Step step)
{
    say(QStringLiteral("MOMENT %1: %2")
            .arg(step.arguments.first())
            .arg(double(monotonicNs()) / 1e6, 0, 'f', 2));
    return {};
}

} // namespace mevo::lab
