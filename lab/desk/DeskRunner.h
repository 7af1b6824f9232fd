#pragma once

#include "desk/DeskScript.h"
#include "desk/ProgramUnderTest.h"
#include "desk/TargetWindow.h"
#include "receiver/ReceiverConsole.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcessEnvironment>

#include <functional>
#include <map>
#include <memory>

namespace mevo::lab {

/// Carries out the steps of a script on the desk that the environment names (DISPLAY, PULSE_SERVER, ...).
class DeskRunner
{
public:
    struct Options
    {
        QString program; ///< the program under test; may be empty when no step starts it
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        QDir artifacts = QDir::current(); ///< where screenshots with relative names go
        QString name;                     ///< of the script; a failed step's screenshot is NAME-failed.png
    };

    /// What became of a step.
    struct Result
    {
        bool ok = true;
        QString note;     ///< for the report when it went well
        QString expected; ///< when it did not
        QString seen;

        static Result failed(const QString &expected, const QString &seen);
    };

    /// `keyboard` may be null: then the receiver types nowhere.
    DeskRunner(Options options, KeyboardPort *keyboard);

    /// Runs all steps, printing each with the milliseconds since the first and its own. False at the first
    /// step that fails, after printing its line, what was expected and what was seen.
    bool run(const DeskScript &script);
    /// Runs one step.
    Result runStep(const DeskStep &step);

    ReceiverConsole &console() { return m_console; }

private:
    struct Verb;
    static const Verb verbs[];

    using Step = const DeskStep &;
    Result set(Step step);
    Result startProgram(Step step);
    Result stopProgram(Step step);
    Result waitExit(Step step);
    Result expectRunning(Step);
    Result openTarget(Step step);
    Result closeTarget(Step step);
    Result focusTarget(Step step);
    Result clearTarget(Step step);
    Result waitText(Step step);
    Result expectText(Step step);
    Result waitLog(Step step);
    Result noLog(Step step);
    Result waitFile(Step step);
    Result expectFeature(Step step);
    Result waitWindow(Step step);
    Result waitMenu(Step step);
    Result noWindow(Step step);
    Result speak(Step step);
    Result hear(Step step);
    Result hold(Step step);
    Result key(Step step);
    Result click(Step step);
    Result movePointer(Step step);
    Result mouseButton(Step step);
    Result expectNear(Step step);
    Result expectPlace(Step step);
    Result placeStep(Step step, const std::function<bool(const QRect &place, const QPoint &point)> &fits);
    Result expectFocus(Step step);
    Result screenshot(Step step);
    Result http(Step step);
    Result shell(Step step);
    Result note(Step step);
    Result printLog(Step);
    Result startClock(Step);
    Result lap(Step step);
    Result moment(Step step);

    TargetWindow *targetOf(const QString &name) const;
    QByteArray logSinceMark() const;
    Result windowStep(const QString &pattern, bool wanted, int timeoutMs);
    /// Opens the display, once; fails without one and at a bad pattern.
    Result readyToFind(const QString &pattern);
    /// Acts on a visible window, waiting for it first.
    Result withWindow(const QString &pattern, const std::function<Result(Desktop::Window window)> &action);
    Result runTool(const QString &tool, const QStringList &arguments);

    Options m_options;
    ReceiverConsole m_console;
    ProgramUnderTest m_program;
    std::unique_ptr<Desktop> m_desktop;
    std::map<QString, std::unique_ptr<TargetWindow>> m_targets;
    QString m_current; ///< the target that texts are read from
    int m_logMark = 0;
    QElapsedTimer m_clock;
};

} // namespace mevo::lab
