#include "inputmethods/MethodDriving.h"

#include "state/ThirdPartyMethod.h"

namespace mevo {

WindowStart startOfXunFeiWindow(const WindowStartFacts &facts)
{
    if (facts.windowFound) {
        return WindowStart::Nothing;
    }
    if (facts.xpClass) {
        return WindowStart::Open;
    }
    return facts.thirdGeneration ? WindowStart::OpenToType : WindowStart::Nothing;
}

WindowLeave leaveAtChoice(int index, bool windowThere, bool startedByUs, bool thirdGeneration)
{
    if (!windowThere || !startedByUs || (index != thirdPartyXunFei && index != thirdPartySogou)) {
        return WindowLeave::Nothing;
    }
    return thirdGeneration && index == thirdPartyXunFei ? WindowLeave::EndProgram : WindowLeave::Close;
}

WindowLeave leaveWithoutKeys(bool windowThere, bool startedByUs, bool thirdGeneration)
{
    return windowThere && startedByUs && !thirdGeneration ? WindowLeave::Close : WindowLeave::Nothing;
}

MicClick clickOnMicrophone(const MicClickFacts &facts)
{
    // What this program has started and what has been ended since is not open any more.
    const bool open = facts.startedByUs && (facts.windowThere || facts.runs);
    if (!open && !facts.windowThere) {
        if (!facts.active || !facts.hasProgram) {
            return MicClick::Nothing;
        }
        return facts.index == thirdPartyXunFei ? MicClick::StartXunFei : MicClick::StartOther;
    }
    if (!open || !facts.windowThere) {
        return MicClick::Nothing;
    }
    if (facts.index != thirdPartyXunFei) {
        return MicClick::Nothing; // Sogou's window stays until it is left
    }
    return facts.thirdGeneration ? MicClick::EndProgram : MicClick::Close;
}

} // namespace mevo
