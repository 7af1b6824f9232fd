#pragma once

#include "service/Statements.h"
#include "state/EngineState.h"

#include <QString>

#include <array>
#include <functional>
#include <vector>

namespace mevo {

/// The lists of cloud accounts that are kept beside the program.
enum class CredentialList {
    XunFei,
    XunFeiMinor,
    BaiduFast,
    BaiduMandarin,
    BaiduCantonese,
    BaiduEnglish,
    BaiduSichuanese,
    BaiduTts,
    BaiduTranslate
};

/// One list: its file, where it comes from, and where an account drawn from it goes.
struct CredentialListRow
{
    CredentialList id;
    const char *file;
    Statement statement;
    int EngineState::*expectedSize;   ///< size of the file in bytes that the product record tells
    bool EngineState::*shownIf;       ///< menu entry that needs the list, null for those always needed
    const char *voiceType;            ///< Baidu language, null for others
    int keys;                         ///< values of an account: keys "0" up to this, from F0 on
    QString EngineState::*members[3]; ///< the values in memory
};

const std::array<CredentialListRow, 9> &credentialLists();
const CredentialListRow &credentialList(CredentialList id);
/// The Baidu list of a language, null for a language that has none.
const CredentialListRow *baiduCredentialList(const QString &voiceType);

/// Lists whose file has another size than the record tells; `sizeOf` gives a file's size by name, 0 for a
/// missing one. Lists without an expected size are left out. A difference in XunFei's main list takes
/// the minor one along, which has no size of its own.
std::vector<CredentialList> listsOfOtherSize(const EngineState &state,
                                             const std::function<qint64(const QString &)> &sizeOf);

/// Lists that the record tells no size of, and that something on the menu needs.
std::vector<CredentialList> listsWithoutSize(const EngineState &state);

} // namespace mevo
