#pragma once

#include <QString>

#include <string_view>

namespace mevo {

/// The text of these bytes, every character of it: QString's own way takes a U+FEFF off the front. What is
/// no UTF-8 becomes U+FFFD, and sets `*broken`.
QString textOfUtf8(std::string_view bytes, bool *broken = nullptr);

} // namespace mevo
