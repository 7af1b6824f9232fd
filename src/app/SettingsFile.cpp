#include "app/SettingsFile.h"

#include "app/ApplicationFiles.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QTextCodec>

namespace mevo {

namespace {

/// Whether text that somebody may have written by hand can be read to its last line as INI in UTF-8.
/// QSettings itself reads over most damage without a word, and would write back only what it understood.
bool isReadable(const QByteArray &content)
{
    QTextCodec::ConverterState conversion;
    QTextCodec::codecForName("UTF-8")->toUnicode(content.constData(), content.size(), &conversion);
    if (content.contains('\0') || conversion.invalidChars > 0) {
        return false;
    }
    for (const QByteArray &raw : content.split('\n')) {
        const QByteArray line = raw.trimmed();
        const int quotes = line.count('"') - line.count("\\\"");
        if (line.isEmpty() || line.startsWith(';') || line.startsWith('#')) {
            continue;
        }
        if (line.startsWith('[') ? !line.endsWith(']') : !line.contains('=') || quotes % 2 != 0) {
            return false;
        }
    }
    return true;
}

/// Looks at a file once for each of its states; a broken one is kept under another name.
void keepIfBroken(const QString &path, bool unparsed)
{
    static QMutex mutex;
    static QHash<QString, QPair<QDateTime, qint64>> seen;
    const QFileInfo info(path);
    if (!info.isFile()) {
        return;
    }
    const QMutexLocker lock(&mutex);
    const auto state = qMakePair(info.lastModified(), info.size());
    if (seen.value(path) == state) {
        return;
    }
    seen.insert(path, state);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || (isReadable(file.readAll()) && !unparsed)) {
        return;
    }
    QString kept = path + QStringLiteral(".broken");
    for (int copy = 2; QFile::exists(kept); ++copy) {
        kept = path + QStringLiteral(".broken%1").arg(copy);
    }
    file.copy(kept);
    qWarning().noquote() << "Settings:" << path << "cannot be read whole; a copy is kept as" << kept;
}

} // namespace

SettingsFile::SettingsFile(const QString &group, const QString &path)
    : QSettings(path, QSettings::IniFormat)
{
    setIniCodec(QTextCodec::codecForName("UTF-8"));
    keepIfBroken(path, status() == QSettings::FormatError);
    if (!group.isEmpty()) {
        beginGroup(group);
    }
}

SettingsFile::~SettingsFile()
{
    if (!m_saved) {
        save();
    }
}

QString SettingsFile::defaultPath()
{
    return appFile(QStringLiteral("MEVOSetting.ini"));
}

bool SettingsFile::save()
{
    sync();
    m_saved = true;
    if (status() == QSettings::AccessError) {
        qWarning().noquote() << "Settings:" << fileName() << "cannot be read or written";
        return false;
    }
    return true;
}

QStringList SettingsFile::list(const QString &key) const
{
    QByteArray text = value(key).toByteArray();
    const int end = text.indexOf('\0');
    if (end >= 0) {
        text.truncate(end);
    }
    return QString::fromUtf8(text).split(QLatin1Char(';'));
}

} // namespace mevo
