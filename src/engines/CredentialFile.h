#pragma once

#include "engines/CredentialTable.h"
#include "engines/RandomInRange.h"
#include "service/WebCipher.h"

#include <QJsonObject>

#include <vector>

namespace mevo {

/// Draws one account of a list from its file into `state`. False, and the account before it stays, when
/// the file has no account or the one that was drawn cannot be deciphered; the log says which.
bool drawAccount(const CredentialListRow &list, const QString &path, const WebCipher &cipher,
                 const DrawNumber &draw, EngineState &state);

/// Replaces the file of a list by these rows of the service. The file is exchanged in one step: after a
/// crash or on a full disk it holds the old accounts or the new ones. False when it could not be written.
bool writeCredentialFile(const CredentialListRow &list, const QString &path,
                         const std::vector<QJsonObject> &rows);

} // namespace mevo
