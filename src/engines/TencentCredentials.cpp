#include "engines/TencentCredentials.h"

#include <QStringList>

namespace mevo {

namespace {

QByteArray drawFrom(const QString &list, const DrawNumber &draw)
{
    const QStringList entries = list.split(QLatin1Char(';'));
    return entries.at(draw(0, entries.size() - 1)).toUtf8();
}

} // namespace

Tc3Credential drawTencentCredential(const EngineState &state, const EngineEndpoints &endpoints,
                                    const DrawNumber &draw)
{
    if (state.ownAccounts.isComplete(AccountService::Tencent)) {
        const OwnAccounts::Values &own = state.ownAccounts.values(AccountService::Tencent);
        return {own[0].toUtf8(), own[1].toUtf8()};
    }
    const QString &ids = state.TXSCD.isEmpty() ? endpoints.TencentSecretIds : state.TXSCD;
    const QString &keys = state.TXSCK.isEmpty() ? endpoints.TencentSecretKeys : state.TXSCK;
    return {drawFrom(ids, draw), drawFrom(keys, draw)};
}

} // namespace mevo
