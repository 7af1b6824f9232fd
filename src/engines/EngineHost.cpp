#include "engines/EngineHost.h"

#include <QDebug>

namespace mevo {

QPair<bool, QString> EngineHost::recogniseWithTencent(const QByteArray &pcm, const SessionContext &)
{
    qWarning("Tencent: this build has no engine for it; %d bytes of audio are dropped", pcm.size());
    return {false, QString()};
}

} // namespace mevo
