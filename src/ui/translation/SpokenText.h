#pragma once

#include "state/SessionContext.h"

#include <QString>

namespace mevo {

/// A sentence that was spoken, or what has become of it, with the session that it was spoken in.
struct SpokenText
{
    QString text;
    SessionContext session;
};

} // namespace mevo
