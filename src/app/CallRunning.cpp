#include "app/CallRunning.h"

#include "app/CommandLine.h"

#include <cstdio>

namespace mevo {

namespace {

/// Whoever lives takes a message at once; a machine that is busy has its time. A window is shown at once, a
/// text waits for what is being said and typed before it.
constexpr SingleInstance::CallWaits waitsForWindow{10000, 20000};
constexpr SingleInstance::CallWaits waitsForText{10000, 300000};

int fail(int code, const char *why)
{
    std::fprintf(stderr, "mevoinput: %s\n", why);
    return code;
}

} // namespace

QString instanceName()
{
    return QStringLiteral("mevoinput");
}

std::optional<int> callRunning(SingleInstance &instance, const InstanceCall &call)
{
    const bool types = call.what == InstanceCall::What::Type;
    const SingleInstance::CallResult result =
        instance.call(instanceName(), toMessage(call), types ? waitsForText : waitsForWindow);
    if (!result.reached || (result.closed && !(types && result.taken))) {
        return std::nullopt; // a text that was taken may have been typed for all that, and is not sent twice
    }
    if (!result.taken) {
        return fail(noAnswerExitCode, types ? "the running instance does not react; nothing has been typed"
                                            : "the running instance does not react");
    }
    const auto answer = readInstanceAnswer(result.answer);
    if (!answer) {
        return fail(noAnswerExitCode, types ? "the running instance has not said what became of the text"
                                            : "the running instance has not answered");
    }
    switch (*answer) {
    case InstanceAnswer::Done:
        return 0;
    case InstanceAnswer::Kept:
        return fail(keptExitCode, "the text could not be typed and is kept among the undelivered ones");
    case InstanceAnswer::Refused:
        return fail(noAnswerExitCode, "the running instance cannot do that now");
    case InstanceAnswer::NotUnderstood:
        break;
    }
    return fail(noAnswerExitCode, "the running instance is of another version");
}

std::optional<int> takeLockOrCall(SingleInstance &instance, Time &time, const InstanceCall &call)
{
    constexpr int longestWaitMs = 5000;
    constexpr int lookAgainMs = 50;
    const qint64 begin = time.monotonicMs();
    while (!instance.acquire(instanceName())) {
        if (const auto code = callRunning(instance, call)) {
            return code;
        }
        if (time.monotonicMs() - begin >= longestWaitMs) {
            return fail(noAnswerExitCode, "another instance, or an update, is under way and does not answer");
        }
        time.sleepMs(lookAgainMs);
    }
    return std::nullopt;
}

int typeByRunning(SingleInstance &instance, const InstanceCall &call)
{
    const auto code = callRunning(instance, call);
    return code ? *code : fail(noInstanceExitCode, "no instance is running that could type the text");
}

} // namespace mevo
