#pragma once

#include "service/WebCipher.h"

#include <QString>
#include <QUrl>

#include <array>

namespace mevo {

/// Tags that tell the backend what a request is.
constexpr char SqlTag[] = "newsql___";
constexpr char ProbeTag[] = "newGetNewVer___";
constexpr char ColumnWriteTag[] = "updateIP___";

/// What the version probe sends in place of a statement.
constexpr char ProbeWord[] = "newGetNewVer";

/// The address of one request: base, tag, the number of characters of `statement` (not of its cipher)
/// as "%03d", and the cipher. A base of a host alone gets a "/".
QUrl webApiUrl(const WebCipher &cipher, const QString &base, const char *tag, const QString &statement);

/// A call with a shorter time-out is sent without waiting for its answer.
constexpr int ShortestWaitMs = 11;

/// Time-outs of the three addresses that a record is asked from, in milliseconds and in order.
using FailoverTimeouts = std::array<int, 3>;
constexpr FailoverTimeouts DeviceRecordTimeouts{2000, 1000, 1000};
constexpr FailoverTimeouts ProductRecordTimeouts{3000, 1000, 2000};

} // namespace mevo
