#pragma once

#include "platform/Processes.h"

#include <QUrl>

namespace mevo {

/// Opens an address, file or folder with what the desktop has for it, and starts a program that a file
/// is. Returns at once and passes nothing through a shell. When nothing opens it a log line says so.
void openUrl(const QUrl &url, Processes &processes);

} // namespace mevo
