#include "base/SettingsFile.h"

#include "base/ApplicationFiles.h"
#include "base/FileStamp.h"
#include "base/IniText.h"
#include "base/IniValue.h"
#include "base/WholeFile.h"

#include <QDebug>
#include <QFileInfo>
#include <QHash>
#include <QLockFile>
#include <QMap>

#include <algorithm>
#include <mutex>
#include <optional>

namespace mevo {

namespace {

constexpr int otherProgramsTurnMs = 500;

/// Keeps a text that cannot be understood whole beside its file, under the first free name. Once: not when
/// an earlier copy has all of its odd lines. False when it cannot be kept.
bool keepBroken(const QString &path, const IniText &text)
{
    const QByteArrayList odd = text.oddLines();
    if (odd.isEmpty()) {
        return true;
    }
    QString copy = path + QStringLiteral(".broken");
    for (int number = 2; QFileInfo::exists(copy); ++number) {
        const QByteArrayList kept = IniText(readWholeFile(copy).value_or(QByteArray())).oddLines();
        if (std::all_of(odd.begin(), odd.end(),
                        [&](const QByteArray &line) { return kept.contains(line); })) {
            return true;
        }
        copy = path + QStringLiteral(".broken%1").arg(number);
    }
    const QString failure = replaceWholeFile(copy, text.text());
    if (failure.isEmpty()) {
        qWarning().noquote() << "Settings:" << path << "cannot be read whole; a copy is kept as" << copy;
    } else {
        qWarning().noquote() << "Settings:" << copy << "cannot be written:" << failure;
    }
    return failure.isEmpty();
}

} // namespace

/// One file as all its openings see it.
class SettingsFile::Store
{
public:
    explicit Store(QString path)
        : m_path(std::move(path))
    {
    }

    void refresh()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        read();
    }
    QVariant value(const QString &key)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto written = m_written.constFind(key);
        return written != m_written.constEnd() ? *written : m_text.value(key);
    }
    bool contains(const QString &key)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_written.contains(key) || m_text.contains(key);
    }
    void setValue(const QString &key, const QVariant &value)
    {
        // In the form in which the file will give it back.
        const QByteArray text = iniValueText(value);
        const QVariant stored = readIniValue({text.constData(), std::size_t(text.size())}).value;
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_written.insert(key, stored);
    }
    bool save()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_written.isEmpty()) {
            return m_readable;
        }
        read();
        if (m_readable && withWritten().text() == m_content) {
            m_written.clear();
            return true; // as at each load, which stores what is there
        }
        // Other programs with Qt's settings take the same lock. One that hangs on to it is not waited for.
        QLockFile otherPrograms(m_path + QStringLiteral(".lock"));
        otherPrograms.tryLock(otherProgramsTurnMs);
        read();
        if (!m_readable) {
            qWarning().noquote() << "Settings:" << m_path << "cannot be read, and is not written over";
        }
        return m_readable && write();
    }

private:
    void read()
    {
        const FileStamp stamp = FileStamp::of(m_path);
        if (m_content && stamp.sameAs(m_stamp)) {
            return;
        }
        std::optional<QByteArray> content = readWholeFile(m_path);
        if (m_readable && !content) {
            qWarning().noquote() << "Settings:" << m_path << "cannot be read";
        }
        m_readable = content.has_value();
        QByteArray text = content.value_or(QByteArray());
        if (m_content != text) {
            m_text = IniText(text);
            m_content = std::move(text);
        }
        m_stamp = stamp;
    }

    IniText withWritten() const
    {
        IniText text = m_text;
        for (auto entry = m_written.cbegin(); entry != m_written.cend(); ++entry) {
            text.setValue(entry.key(), entry.value());
        }
        return text;
    }

    /// Puts all that was set into the file.
    bool write()
    {
        IniText text = withWritten();
        const QByteArray content = text.text();
        if (!keepBroken(m_path, m_text)) {
            return false;
        }
        const QString failure = replaceWholeFile(m_path, content);
        if (!failure.isEmpty()) {
            qWarning().noquote() << "Settings:" << m_path << "cannot be written:" << failure;
            return false;
        }
        m_text = std::move(text);
        m_content = content;
        m_stamp = FileStamp::of(m_path);
        m_written.clear();
        return true;
    }

    std::mutex m_mutex;
    const QString m_path;
    FileStamp m_stamp;
    std::optional<QByteArray> m_content; ///< of the file when it was last read or written
    IniText m_text;                      ///< the same
    bool m_readable = true;
    QMap<QString, QVariant> m_written; ///< set, and not yet on the disk
};

std::shared_ptr<SettingsFile::Store> SettingsFile::storeOf(const QString &path)
{
    static std::mutex mutex;
    static QHash<QString, std::shared_ptr<Store>> stores;
    const QString place = QFileInfo(path).absoluteFilePath();
    const std::lock_guard<std::mutex> lock(mutex);
    std::shared_ptr<Store> &store = stores[place];
    if (store == nullptr) {
        store = std::make_shared<Store>(place);
    }
    return store;
}

SettingsFile::SettingsFile(const QString &group, const QString &path)
    : m_store(storeOf(path))
    , m_prefix(group.isEmpty() ? QString() : group + QLatin1Char('/'))
{
    m_store->refresh();
}

SettingsFile::~SettingsFile()
{
    if (m_changed) {
        save();
    }
}

QString SettingsFile::defaultPath()
{
    return appFile(QStringLiteral("MEVOSetting.ini"));
}

QVariant SettingsFile::value(const QString &key, const QVariant &fallback) const
{
    return contains(key) ? m_store->value(m_prefix + key) : fallback;
}

bool SettingsFile::contains(const QString &key) const
{
    return m_store->contains(m_prefix + key);
}

void SettingsFile::setValue(const QString &key, const QVariant &value)
{
    const bool isText = value.canConvert(QMetaType::QString) && value.type() != QVariant::StringList;
    if (value.isValid() && !isText) {
        qWarning().noquote() << "Settings:" << key << "cannot take a" << value.typeName();
        return;
    }
    m_store->setValue(m_prefix + key, value);
    m_changed = true;
}

bool SettingsFile::save()
{
    m_changed = false;
    return m_store->save();
}

} // namespace mevo
