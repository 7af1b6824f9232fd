#pragma once

#include "engines/CredentialTable.h"
#include "engines/RandomInRange.h"
#include "service/WebCipher.h"

#include <QJsonObject>

#include <vector>

namespace mevo {

/// Draws one account of a list from its file into `state`. False, and the account before it stays, when
/// the file has no account. A value that cannot be deciphered is empty, with a log line: the service then
/// says that this account is none.
bool drawAccount(const CredentialListRow &list, const QString &path, const WebCipher &cipher,
                 const DrawNumber &draw, EngineState &state);

/// Replaces the file of a list by these rows of the service. The file is exchanged in one step: after a
/// crash or on a full disk it holds the old accounts or the new ones. False, with a log line, when it could
/// not be written, and when a row lacks one of its texts.
bool writeCredentialFile(const CredentialListRow &list, const QString &path,
                         const std::vector<QJsonObject> &rows);

} // namespace mevo
