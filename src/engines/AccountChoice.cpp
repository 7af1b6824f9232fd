#include "engines/AccountChoice.h"

namespace mevo {

namespace {

/// Whether an account has been drawn for the service.
bool isDrawn(AccountService service, const EngineState &state)
{
    switch (service) {
    case AccountService::Baidu:
        return !state.BaiduClientId.isEmpty() && !state.BaiduClientSecret.isEmpty();
    case AccountService::XunFei:
        return !state.XunFeiAppId.isEmpty() && !state.XunFeiApiKey.isEmpty() &&
               !state.XunFeiApiSecret.isEmpty();
    case AccountService::BaiduTranslate:
        return !state.BaiduTranslateAppId.isEmpty() && !state.BaiduTranslateKey.isEmpty();
    case AccountService::Tencent:
        break;
    }
    return false;
}

} // namespace

AccountService accountServiceOf(CredentialList list)
{
    switch (list) {
    case CredentialList::XunFei:
    case CredentialList::XunFeiMinor:
        return AccountService::XunFei;
    case CredentialList::BaiduTranslate:
        return AccountService::BaiduTranslate;
    default:
        return AccountService::Baidu;
    }
}

AccountSource accountInForce(AccountService service, const EngineState &state,
                             const EngineEndpoints &endpoints)
{
    if (state.ownAccounts.isComplete(service)) {
        return AccountSource::Own;
    }
    if (service != AccountService::Tencent) {
        return isDrawn(service, state) ? AccountSource::List : AccountSource::None;
    }
    // Each list by itself, as they are drawn.
    const bool told = !state.TXSCD.isEmpty() || !state.TXSCK.isEmpty();
    const bool whole = (!state.TXSCD.isEmpty() || !endpoints.TencentSecretIds.isEmpty()) &&
                       (!state.TXSCK.isEmpty() || !endpoints.TencentSecretKeys.isEmpty());
    if (!whole) {
        return AccountSource::None;
    }
    return told ? AccountSource::Record : AccountSource::Deployment;
}

std::optional<OwnAccounts::Values> ownAccountFor(const CredentialListRow &list, const OwnAccounts &accounts)
{
    const AccountService service = accountServiceOf(list.id);
    if (!accounts.isComplete(service)) {
        return std::nullopt;
    }
    const OwnAccounts::Values &own = accounts.values(service);
    // A list of Baidu's has the id of the application before key and secret, which no request needs.
    return service == AccountService::Baidu ? OwnAccounts::Values{QString(), own[0], own[1]} : own;
}

} // namespace mevo
