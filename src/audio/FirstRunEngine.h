#pragma once

#include <QString>

namespace mevo {

/// Statement that makes Tencent the engine of a device's record at the first run.
QString firstRunStatement(const QString &schema, bool baiduFastVersion, const QString &dongleId);

} // namespace mevo
