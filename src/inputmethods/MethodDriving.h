#pragma once

namespace mevo {

/// How the window of XunFei's input method is brought up.
enum class WindowStart {
    Nothing,
    Open,      ///< as any program
    OpenToType ///< with the rights that it needs to type everywhere
};

struct WindowStartFacts
{
    bool windowFound = false;
    bool thirdGeneration = false; ///< XFVM3
    bool xpClass = false;
};

/// An older XunFei brings its window up by itself, but for systems of the class of Windows XP.
WindowStart startOfXunFeiWindow(const WindowStartFacts &facts);

/// How an input method's window is left.
enum class WindowLeave {
    Nothing,
    Close,     ///< by a close message
    EndProgram ///< by force: it takes no close message
};

/// At a change of engine or of input method, from the method numbered `index`. Only a window that this
/// program has started is closed.
WindowLeave leaveAtChoice(int index, bool windowThere, bool startedByUs, bool thirdGeneration);

/// When the receiver or the program goes: the method's keys can come no more.
WindowLeave leaveWithoutKeys(bool windowThere, bool startedByUs, bool thirdGeneration);

/// What a click on the microphone button does while an input method is chosen.
enum class MicClick { Nothing, StartXunFei, StartOther, Close, EndProgram };

struct MicClickFacts
{
    int index = 0; ///< LocalUseASR3Index
    bool active = false;
    bool hasProgram = false;  ///< its path is known
    bool windowThere = false; ///< or, where its window is not known, its program runs
    bool startedByUs = false; ///< ThirdPartyWindowOpen
    bool runs = false;        ///< its program does
    bool thirdGeneration = false;
};

MicClick clickOnMicrophone(const MicClickFacts &facts);

} // namespace mevo
