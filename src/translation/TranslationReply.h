#pragma once

#include <QPair>
#include <QString>

namespace mevo {

/// What a reply of the translation service says, of `text` that was sent: (true, the first segment); (false,
/// `text`) when there is no reply; (false, "") when it is anything else. An error that it tells is logged.
QPair<bool, QString> translationResult(const QString &reply, const QString &text);

} // namespace mevo
