#include "base/FileStamp.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace mevo {

namespace {

constexpr qint64 finestStepMs = 100;
constexpr qint64 wholeSecondsMs = 2500; ///< where times are whole seconds, as on FAT and old servers

} // namespace

FileStamp FileStamp::of(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return {false, 0, 0, 0, true};
    }
    FileStamp stamp{true, info.size(), info.lastModified().toMSecsSinceEpoch(),
                    info.metadataChangeTime().toMSecsSinceEpoch(), false};
    const bool wholeSeconds = stamp.modifiedMs % 1000 == 0 && stamp.changedMs % 1000 == 0;
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - std::max(stamp.modifiedMs, stamp.changedMs);
    stamp.settled = age > (wholeSeconds ? wholeSecondsMs : finestStepMs);
    return stamp;
}

bool FileStamp::sameAs(const FileStamp &earlier) const
{
    return earlier.settled && exists == earlier.exists && size == earlier.size &&
           modifiedMs == earlier.modifiedMs && changedMs == earlier.changedMs;
}

} // namespace mevo
