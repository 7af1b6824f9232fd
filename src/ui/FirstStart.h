#pragma once

#include <QString>

#include <vector>

namespace mevo {

/// What there is on this computer for voice input.
struct FirstStartFacts
{
    bool account = false;         ///< of a service that recognises speech
    bool accountsUnread = false;  ///< there may be one among those that could not be read yet
    bool inputMethod = false;     ///< an input method of the computer recognises instead
    bool receiver = false;        ///< it is there and open
    bool receiverRefused = false; ///< it is there, and may not be opened
    bool receiverNeeded = true;   ///< the product is of no use without one
    bool microphone = false;
};

/// What a button of the window leads to.
enum class FirstStartHelp { OwnAccount, InputMethod, Microphone, UdevRule };

/// One line of the window: what works or what is missing, and the buttons that help.
struct FirstStartLine
{
    enum class State { Works, Missing, Unknown };
    State state = State::Missing;
    QString text; ///< translated
    std::vector<FirstStartHelp> helps;
};

std::vector<FirstStartLine> firstStartLines(const FirstStartFacts &facts);

/// Whether a first start shows the window: something is surely missing.
bool isFirstStartHelpNeeded(const FirstStartFacts &facts);

/// Text of a button, translated.
QString firstStartHelpText(FirstStartHelp help);

/// That the receiver is there and may not be opened, translated.
QString receiverRefusedText();

/// The command that lets whoever sits at the computer use the receiver, to be given in a terminal.
QString udevRuleCommand();

} // namespace mevo
