#pragma once

#include "platform/SystemServices.h"

namespace mevo {

/// Linux has no registry of installed programs: nothing is ever found.
class NoRegistry : public Registry
{
public:
    std::optional<QString> value(const QString &, const QString &) const override { return std::nullopt; }
};

} // namespace mevo
