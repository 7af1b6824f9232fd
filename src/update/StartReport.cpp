#include "update/StartReport.h"

#include <QDebug>
#include <QFile>

namespace mevo {

const QString updatePendingFile = QStringLiteral("UpdatePending");

void reportStart(const QString &programFolder)
{
    const QString pending = programFolder + QLatin1Char('/') + updatePendingFile;
    if (QFile::exists(pending) && QFile::remove(pending)) {
        qInfo("Update: this version has come up");
    }
}

} // namespace mevo
