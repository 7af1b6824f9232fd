#include "service/NoticePictures.h"

#include "base/ApplicationFiles.h"
#include "base/LogText.h"
#include "base/SettingsFile.h"
#include "base/WholeFile.h"
#include "service/PushFrame.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace mevo {

namespace {

const QString listKey = QStringLiteral("NoticePictures");

/// The oldest first. An edited list may name anything: what is no picture's name is left alone.
QStringList keptNames(const SettingsFile &settings)
{
    QStringList names;
    for (const QString &name : settings.value(listKey).toString().split(QLatin1Char(';'))) {
        if (isPictureName(name)) {
            names.append(name);
        }
    }
    return names;
}

bool isPlainFile(const QFileInfo &file)
{
    return file.isFile() && !file.isSymLink();
}

} // namespace

std::optional<QByteArray> keptNoticePicture(const QString &name, int size)
{
    const QFileInfo file(appFile(name));
    return isPlainFile(file) && file.size() == size ? readWholeFile(file.filePath()) : std::nullopt;
}

void keepNoticePicture(const QString &name, const QByteArray &bytes)
{
    SettingsFile settings;
    QStringList names = keptNames(settings);
    const QFileInfo file(appFile(name));
    const bool taken = file.exists() || file.isSymLink();
    if (taken && (!names.contains(name) || !isPlainFile(file))) {
        qWarning("Notice: the picture is not kept: another file has its name");
        return;
    }
    names.removeAll(name);
    names.append(name);
    while (names.size() > mostNoticePictures) {
        QFile::remove(appFile(names.takeFirst()));
    }
    settings.setValue(listKey,
                      names.join(QLatin1Char(';'))); // before the picture: it is ours whatever happens
    const QString failure = replaceWholeFile(file.filePath(), bytes);
    if (!failure.isEmpty()) {
        qWarning().noquote() << "Notice: the picture is not kept:" << logText(failure);
    }
}

} // namespace mevo
