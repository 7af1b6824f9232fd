#pragma once

#include "base/ServiceEndpoints.h"
#include "state/SettingsState.h"

#include <QList>
#include <QUrl>

namespace mevo {

/// The pages that a search for `text`, whatever signs are in it, opens: one for each search engine that is
/// switched on.
QList<QUrl> searchAddresses(const QString &text, const SettingsState &settings,
                            const EngineEndpoints &endpoints);

} // namespace mevo
