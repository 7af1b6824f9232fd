#pragma once

#include <QStringList>

namespace lab {

/// Runs the lab's services until the process is ended. Options: --home FOLDER (database, and updates/ with
/// what the download server has; default the current folder), --port-backend, --baidu-http, --baidu-https,
/// --tencent-https, --xunfei, --push, --translate, --tts, --control (ports, 0 or absent: any), --schema NAME,
/// --write-endpoints FILE. Prints one line of JSON with the ports when all of them answer.
int runServices(const QStringList &arguments);

} // namespace lab
