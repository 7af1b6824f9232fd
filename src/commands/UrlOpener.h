#pragma once

#include "platform/Processes.h"

#include <QUrl>

namespace mevo {

/// Opens an address, file or folder with what the desktop has for it, and starts a program that a file
/// is. Returns at once and passes nothing through a shell. False, with a log line, when nothing opens it.
bool openUrl(const QUrl &url, Processes &processes);

} // namespace mevo
