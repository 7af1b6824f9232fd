#include "update/StartReport.h"

#include <QDebug>
#include <QFile>

namespace mevo {

const QString updatePendingFile = QStringLiteral("UpdatePending");

void reportStart(const QString &programFolder)
{
    const QString pending = programFolder + QLatin1Char('/') + updatePendingFile;
    QFile mark(pending);
    if (!mark.exists()) {
        return;
    }
    if (mark.remove()) {
        qInfo("Update: this version has come up");
    } else { // the updater will take it for one that has not
        qWarning().noquote() << "Update: that this version has come up cannot be told:" << mark.errorString();
    }
}

} // namespace mevo
