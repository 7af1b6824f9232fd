#pragma once

#include "patchrunner/UpdateRun.h"

namespace mevo::patchrunner {

struct FailureText
{
    QString title;
    QString text;
};

/// What the user reads when an update was not installed, in the language of this locale ("zh_CN", "zh_TW",
/// "en_US", ...).
FailureText failureText(Outcome outcome, const QString &locale);

} // namespace mevo::patchrunner
