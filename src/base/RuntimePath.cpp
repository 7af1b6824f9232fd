#include "base/RuntimePath.h"

#include <QFileInfo>

#include <unistd.h>

namespace mevo {

QString runtimePath(const QString &name, const QString &suffix)
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isWritable()) {
        return QStringLiteral("%1/%2%3").arg(runtime, name, suffix);
    }
    return QStringLiteral("/tmp/%1-%2%3").arg(name).arg(geteuid()).arg(suffix);
}

} // namespace mevo
