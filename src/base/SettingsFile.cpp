#include "base/SettingsFile.h"

#include "base/ApplicationFiles.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QSaveFile>
#include <QTextCodec>

namespace mevo {

namespace {

/// Whether a quoted part of the line is not closed; a backslash takes the next character's meaning.
bool endsInQuotes(const QByteArray &line)
{
    bool quoted = false;
    for (int i = 0; i < line.size(); ++i) {
        if (line[i] == '\\') {
            ++i;
        } else if (line[i] == '"') {
            quoted = !quoted;
        }
    }
    return quoted;
}

/// Whether text that somebody may have written by hand can be read to its last line as INI in UTF-8.
/// QSettings itself reads over most damage without a word, and would write back only what it understood.
bool isReadable(const QByteArray &content)
{
    QTextCodec::ConverterState conversion;
    QTextCodec::codecForName("UTF-8")->toUnicode(content.constData(), content.size(), &conversion);
    if (content.contains('\0') || conversion.invalidChars > 0 || conversion.remainingChars > 0) {
        return false;
    }
    for (const QByteArray &raw : content.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(';') || line.startsWith('#')) {
            continue;
        }
        if (line.startsWith('[') ? !line.endsWith(']') : !line.contains('=') || endsInQuotes(line)) {
            return false;
        }
    }
    return true;
}

/// The same text with quotes around every unquoted value that holds a "," or ";": QSettings would split
/// the value at the first and end it at the second. A ";" after a blank begins a remark.
QByteArray withQuotes(const QByteArray &content)
{
    QByteArray quoted;
    for (const QByteArray &line : content.split('\n')) {
        const int equals = line.indexOf('=');
        QByteArray value = line.mid(equals + 1).trimmed();
        QByteArray remark;
        const int blank = value.indexOf(" ;");
        if (blank >= 0) {
            remark = value.mid(blank);
            value.truncate(blank);
        }
        const char first = line.trimmed().isEmpty() ? ';' : line.trimmed().front();
        const bool split = value.contains(',') || value.contains(';');
        const bool plain = !value.contains('"') && !value.endsWith('\\');
        if (equals > 0 && split && plain && first != ';' && first != '#' && first != '[') {
            quoted +=
                line.left(equals + 1) + '"' + value + '"' + remark + (line.endsWith('\r') ? "\r\n" : "\n");
        } else {
            quoted += line + '\n';
        }
    }
    quoted.chop(1);
    return quoted;
}

/// Looks at a file once for each of its states, before QSettings does: a broken one is kept under
/// another name, one that was typed by hand gets its quotes. Gives back `path`.
QString prepared(const QString &path)
{
    static QMutex mutex;
    static QHash<QString, QPair<QDateTime, qint64>> seen;
    const QFileInfo info(path);
    if (!info.isFile()) {
        return path;
    }
    const QMutexLocker lock(&mutex);
    const auto state = qMakePair(info.lastModified(), info.size());
    if (seen.value(path) == state) {
        return path;
    }
    seen.insert(path, state);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return path;
    }
    const QByteArray content = file.readAll();
    if (isReadable(content)) {
        const QByteArray quoted = withQuotes(content);
        QSaveFile rewritten(path);
        if (quoted != content && rewritten.open(QIODevice::WriteOnly)) {
            rewritten.write(quoted);
            rewritten.commit(); // where it cannot be written the values stay as QSettings sees them
        }
        return path;
    }
    QString kept = path + QStringLiteral(".broken");
    for (int copy = 2; QFile::exists(kept); ++copy) {
        kept = path + QStringLiteral(".broken%1").arg(copy);
    }
    file.copy(kept);
    qWarning().noquote() << "Settings:" << path << "cannot be read whole; a copy is kept as" << kept;
    return path;
}

} // namespace

SettingsFile::SettingsFile(const QString &group, const QString &path)
    : QSettings(prepared(path), QSettings::IniFormat)
{
    setIniCodec(QTextCodec::codecForName("UTF-8"));
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

} // namespace mevo
