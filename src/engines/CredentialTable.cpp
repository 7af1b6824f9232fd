#include "engines/CredentialTable.h"

#include <algorithm>

namespace mevo {

namespace {

using S = EngineState;

constexpr QString S::*baidu[3] = {&S::BaiduAppId, &S::BaiduClientId, &S::BaiduClientSecret};

constexpr CredentialListRow baiduRow(CredentialList id, const char *file, Statement statement,
                                     int S::*expectedSize, bool S::*shownIf, const char *voiceType)
{
    return {id, file, statement, expectedSize, shownIf, voiceType, 3, {baidu[0], baidu[1], baidu[2]}};
}

constexpr std::array<CredentialListRow, 9> lists{{
    {CredentialList::XunFei,
     "besrfdssset.ini",
     Statement::XunFeiAccounts,
     &S::besrfdsssetlen,
     nullptr,
     nullptr,
     3,
     {&S::XunFeiAppId, &S::XunFeiApiKey, &S::XunFeiApiSecret}},
    {CredentialList::XunFeiMinor,
     "besrfdsssetFYSL.ini",
     Statement::XunFeiMinorAccounts,
     &S::besrfdsssetlen,
     nullptr,
     nullptr,
     3,
     {&S::XunFeiMinorAppId, &S::XunFeiMinorApiKey, &S::XunFeiMinorApiSecret}},
    baiduRow(CredentialList::BaiduFast, "bjsdsrbdssset.ini", Statement::BaiduFastAccounts,
             &S::bdsrbdsssetjslen, &S::ShowBdFtPTHI, "80001"),
    baiduRow(CredentialList::BaiduMandarin, "bbzdsrbdssset.ini", Statement::BaiduMandarinAccounts,
             &S::bdsrbdsssetbzlen, &S::ShowBdSdPTHI, "1537"),
    baiduRow(CredentialList::BaiduCantonese, "byydsrbdssset.ini", Statement::BaiduCantoneseAccounts,
             &S::bdsrbdsssetyylen, &S::ShowBdYYI, "1637"),
    baiduRow(CredentialList::BaiduEnglish, "bendsrbdssset.ini", Statement::BaiduEnglishAccounts,
             &S::bdsrbdsssetenlen, &S::ShowBdEnI, "1737"),
    baiduRow(CredentialList::BaiduSichuanese, "bschdsrbdssset.ini", Statement::BaiduSichuaneseAccounts,
             &S::bdsrbdsssetschlen, &S::ShowBdSCHI, "1837"),
    {CredentialList::BaiduTts,
     "bdsrbdsssettts.ini",
     Statement::BaiduTtsAccounts,
     &S::bdsrbdsssetttslen,
     nullptr,
     nullptr,
     3,
     {&S::BaiduTtsAppId, &S::BaiduTtsClientId, &S::BaiduTtsClientSecret}},
    {CredentialList::BaiduTranslate,
     "bdsrbdsssetfy.ini",
     Statement::BaiduTranslateAccounts,
     &S::bdsrbdsssetfylen,
     nullptr,
     nullptr,
     2,
     {&S::BaiduTranslateAppId, &S::BaiduTranslateKey, nullptr}},
}};

constexpr bool listsStandInOrder()
{
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (lists[i].id != static_cast<CredentialList>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(listsStandInOrder(), "rows in the order of the enumeration");

} // namespace

const std::array<CredentialListRow, 9> &credentialLists()
{
    return lists;
}

const CredentialListRow &credentialList(CredentialList id)
{
    return lists[static_cast<std::size_t>(id)];
}

const CredentialListRow *baiduCredentialList(const QString &voiceType)
{
    const auto found = std::find_if(lists.cbegin(), lists.cend(), [&](const CredentialListRow &row) {
        return row.voiceType != nullptr && voiceType == QLatin1String(row.voiceType);
    });
    return found == lists.cend() ? nullptr : &*found;
}

std::vector<CredentialList> listsOfOtherSize(const EngineState &state,
                                             const std::function<qint64(const QString &)> &sizeOf)
{
    std::vector<CredentialList> found;
    for (const CredentialListRow &row : lists) {
        if (row.id == CredentialList::XunFeiMinor) {
            continue;
        }
        const int expected = state.*row.expectedSize;
        if (expected < 0 || sizeOf(QLatin1String(row.file)) == expected) {
            continue;
        }
        found.push_back(row.id);
        if (row.id == CredentialList::XunFei) {
            found.push_back(CredentialList::XunFeiMinor);
        }
    }
    return found;
}

std::vector<CredentialList> listsWithoutSize(const EngineState &state)
{
    std::vector<CredentialList> found;
    for (const CredentialListRow &row : lists) {
        if (state.*row.expectedSize < 0 && (row.shownIf == nullptr || state.*row.shownIf)) {
            found.push_back(row.id);
        }
    }
    return found;
}

} // namespace mevo
