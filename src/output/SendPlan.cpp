#include "output/SendPlan.h"

#include "output/TextEffects.h"

namespace mevo {

namespace {

constexpr int usageS = 0x16;
constexpr int usageEnter = 0x28;
constexpr int usageBackspace = 0x2a;
constexpr int usageDelete = 0x4c;

/// One row: a word of `words` sends `keys`, when `enabled` is on.
struct MappedKey
{
    bool SettingsState::*enabled;
    QString SettingsState::*words;
    KeyCombination keys;
};

/// One family of rows, with its own switch and its choice whether the word is typed as well.
struct MappedGroup
{
    bool SettingsState::*enabled;
    bool SettingsState::*typeWord;
    std::vector<MappedKey> rows;
};

const std::vector<MappedGroup> &mappedGroups()
{
    using S = SettingsState;
    static const std::vector<MappedGroup> groups = {
        {&S::VoiceSend,
         &S::VoiceSend_MapWords2Screen,
         {{&S::VoiceSend_AltS, &S::VoiceSend_AltS_MapWords, {false, false, true, false, false, usageS}},
          {&S::VoiceSend_Enter,
           &S::VoiceSend_Enter_MapWords,
           {false, false, false, false, false, usageEnter}},
          {&S::VoiceSend_CtrlEnter,
           &S::VoiceSend_CtrlEnter_MapWords,
           {false, true, false, false, false, usageEnter}}}},
        {&S::VoiceClear,
         &S::VoiceClear_MapWords2Screen,
         {{&S::VoiceClear_Backspace,
           &S::VoiceClear_Backspace_MapWords,
           {false, false, false, false, false, usageBackspace}},
          {&S::VoiceClear_Delete,
           &S::VoiceClear_Delete_MapWords,
           {false, false, false, false, false, usageDelete}}}},
    };
    return groups;
}

/// Adds the keys of the words that `key` is; false when the word itself is not typed.
bool planMappedWords(const QString &key, const MainState &state, std::vector<KeyCombination> &keys)
{
    if (key.isEmpty()) {
        return true;
    }
    for (const MappedGroup &group : mappedGroups()) {
        if (!(state.*group.enabled)) {
            continue;
        }
        for (const MappedKey &row : group.rows) {
            if (!(state.*row.enabled) || !isMappedWord(state.*row.words, key)) {
                continue;
            }
            keys.push_back(row.keys);
            if (!(state.*group.typeWord)) {
                return false;
            }
        }
    }
    return true;
}

SendPlan::Way chooseWay(int method, WindowId window, bool translationDialogOpen, bool canPost,
                        bool &lostFocus)
{
    if (translationDialogOpen || method == 2 || !canPost) {
        return SendPlan::Way::Clipboard;
    }
    if (window != 0) {
        return SendPlan::Way::Post;
    }
    if (method == 1 || method > 2) {
        lostFocus = true;
        return SendPlan::Way::Nothing;
    }
    return SendPlan::Way::Clipboard;
}

} // namespace

SendPlan planSend(const QString &text, const MainState &state, const SessionContext &session,
                  bool translationDialogOpen, bool canPost, bool focusElsewhere)
{
    SendPlan plan;
    if ((state.ThirdPartyActive && session.typeMode) ||
        (session.commandMode && state.DontSend2ScreenWhenCmdStatus)) {
        return plan;
    }
    plan.text = text;
    if (state.AddPunctuationWhenEnd && state.Juhao2Douhao) {
        plan.text.replace(QChar(u'。'), QChar(u'，'));
    }
    if (state.Output2Tranditional) {
        plan.text = toTraditional(plan.text);
    }
    QString key = plan.text.toLower();
    if (state.AddPunctuationWhenEnd) {
        key.chop(1);
    }
    if (planMappedWords(key, state, plan.keys) && !plan.text.isEmpty()) {
        plan.way = chooseWay(state.Send2ScreenMethod, session.window, translationDialogOpen, canPost,
                             plan.lostFocus);
    }
    if (focusElsewhere && !plan.keys.empty()) {
        plan.keys.clear();
        plan.keysDropped = true;
    }
    return plan;
}

WindowId onlyWindowOf(const MainState &state, const SessionContext &session, bool translationDialogOpen)
{
    return translationDialogOpen && state.Send2ScreenMethod != 2 ? session.pressWindow : 0;
}

SessionContext translationContext(SessionContext session, bool spoken, bool byHand)
{
    if (!spoken || session.number != 0 || byHand) {
        session.typeMode = false; // only what an input method has heard is typed by that
    }
    if (byHand) {
        session.commandMode = false;
    }
    session.number = 0; // how long it took has been the user's choice
    return session;
}

SendPlan::Way typingWay(const MainState &state, WindowId window, bool translationDialogOpen, bool canPost)
{
    bool lostFocus = false;
    return chooseWay(state.Send2ScreenMethod, window, translationDialogOpen, canPost, lostFocus);
}

} // namespace mevo
