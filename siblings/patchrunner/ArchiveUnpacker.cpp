#include "patchrunner/ArchiveUnpacker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mevo::patchrunner {

namespace {

constexpr std::size_t readBlock = 256 * 1024;
constexpr int executableBit = 0100;
constexpr mode_t programMode = 0755;
constexpr mode_t fileMode = 0644;

struct Link
{
    QString name;
    QString target;
};

/// A name of a member. They are in UTF-8, whatever the session's locale is; it is only where that is another
/// one that the library may have taken a name into it, which it then gives back in UTF-8 as well.
QString nameOf(const char *bytes, const char *utf8)
{
    const QString name = QString::fromUtf8(bytes);
    return name.contains(QChar::ReplacementCharacter) && utf8 != nullptr ? QString::fromUtf8(utf8) : name;
}

/// The parts of a member's name; empty when it leads elsewhere. "./" at its beginning and "/" at its end,
/// which tar likes, do no harm.
QStringList partsOf(const QString &name)
{
    if (name.startsWith(QLatin1Char('/')) || name.contains(QChar::ReplacementCharacter)) {
        return {};
    }
    QStringList parts;
    for (const QString &part : name.split(QLatin1Char('/'))) {
        if (part == QLatin1String("..")) {
            return {};
        }
        if (!part.isEmpty() && part != QLatin1String(".")) {
            parts.append(part);
        }
    }
    return parts;
}

/// Whether a link stays in the folder: it goes up only at its beginning, and no further than it lies deep.
/// The folders above it are real ones, so each ".." there is one step.
bool staysInside(const Link &link)
{
    int depth = link.name.count(QLatin1Char('/'));
    bool goingDown = false;
    if (link.target.isEmpty() || link.target.startsWith(QLatin1Char('/')) ||
        link.target.contains(QChar::ReplacementCharacter)) {
        return false;
    }
    for (const QString &part : link.target.split(QLatin1Char('/'))) {
        if (part == QLatin1String("..")) {
            if (goingDown || --depth < 0) {
                return false;
            }
        } else if (!part.isEmpty() && part != QLatin1String(".")) {
            goingDown = true;
        }
    }
    return goingDown;
}

class Unpacker
{
public:
    Unpacker(const QString &folder, const UnpackLimits &limits)
        : m_folder(folder)
        , m_limits(limits)
    {
    }

    Unpacked run(const QString &archivePath)
    {
        const std::unique_ptr<archive, decltype(&archive_read_free)> reader(archive_read_new(),
                                                                            &archive_read_free);
        archive_read_support_filter_xz(reader.get());
        archive_read_support_format_tar(reader.get());
        if (archive_read_open_filename(reader.get(), QFile::encodeName(archivePath).constData(), readBlock) !=
            ARCHIVE_OK) {
            fail(archiveError(reader.get()));
            return m_result;
        }
        archive_entry *entry = nullptr;
        int result = ARCHIVE_OK;
        while (m_result.error.isEmpty() &&
               isHeader(reader.get(), result = archive_read_next_header(reader.get(), &entry))) {
            take(reader.get(), entry);
        }
        if (m_result.error.isEmpty() && result != ARCHIVE_EOF) {
            fail(archiveError(reader.get()));
        }
        if (m_result.error.isEmpty() && archive_filter_code(reader.get(), 0) != ARCHIVE_FILTER_XZ) {
            fail(QStringLiteral("it is not compressed by xz"));
        }
        makeLinks();
        return m_result;
    }

private:
    void fail(const QString &error)
    {
        if (m_result.error.isEmpty()) {
            m_result.error = error;
        }
    }
    void failBySystem(const QString &name)
    {
        m_result.noSpace = errno == ENOSPC || errno == EDQUOT;
        fail(QStringLiteral("%1: %2").arg(name, QString::fromLocal8Bit(std::strerror(errno))));
    }
    /// A name that the session's locale has no letters for is a warning, and the name is there all the same.
    static bool isHeader(archive *reader, int result)
    {
        return result == ARCHIVE_OK || (result == ARCHIVE_WARN && archive_errno(reader) == EILSEQ);
    }
    static QString archiveError(archive *reader)
    {
        const char *text = archive_error_string(reader);
        return text != nullptr ? QString::fromLocal8Bit(text) : QStringLiteral("it cannot be read");
    }

    void take(archive *reader, archive_entry *entry)
    {
        // What is no UTF-8 becomes a replacement character, and is refused.
        const QString given = nameOf(archive_entry_pathname(entry), archive_entry_pathname_utf8(entry));
        const QStringList parts = partsOf(given);
        const auto type = archive_entry_filetype(entry);
        if (++m_members > m_limits.members) {
            fail(QStringLiteral("it has too many members"));
        } else if (parts.isEmpty()) {
            if (type != AE_IFDIR || given.isEmpty() || !partsOf(given + QStringLiteral("/x")).size()) {
                fail(QStringLiteral("a member leaves the folder"));
            }
        } else if (archive_entry_hardlink(entry) != nullptr) {
            fail(QStringLiteral("%1 is a hard link").arg(parts.join(QLatin1Char('/'))));
        } else if (type == AE_IFDIR) {
            makeFolders(parts);
        } else if (type == AE_IFLNK) {
            makeFolders(parts.mid(0, parts.size() - 1));
            takeLink({parts.join(QLatin1Char('/')),
                      nameOf(archive_entry_symlink(entry), archive_entry_symlink_utf8(entry))});
        } else if (type == AE_IFREG) {
            makeFolders(parts.mid(0, parts.size() - 1));
            takeFile(reader, parts.join(QLatin1Char('/')),
                     (archive_entry_mode(entry) & executableBit) != 0 ? programMode : fileMode);
        } else {
            fail(QStringLiteral("%1 is neither file nor folder").arg(parts.join(QLatin1Char('/'))));
        }
    }

    void makeFolders(const QStringList &parts)
    {
        QString path = m_folder;
        for (const QString &part : parts) {
            path += QLatin1Char('/') + part;
            if (mkdir(QFile::encodeName(path).constData(), programMode) != 0 &&
                (errno != EEXIST || !QFileInfo(path).isDir())) {
                failBySystem(path);
                return;
            }
        }
    }

    void takeLink(const Link &link)
    {
        if (!staysInside(link)) {
            fail(QStringLiteral("the link %1 leaves the folder").arg(link.name));
        }
        m_links.push_back(link); // made at the end, so that nothing is written through one
    }

    void takeFile(archive *reader, const QString &name, mode_t mode)
    {
        if (!m_result.error.isEmpty()) {
            return;
        }
        const QByteArray path = QFile::encodeName(m_folder + QLatin1Char('/') + name);
        const int file = open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
        if (file < 0) {
            failBySystem(name);
            return;
        }
        fchmod(file, mode); // whatever the umask is
        m_result.files.insert(name);
        std::vector<char> buffer(readBlock);
        la_ssize_t got = 0;
        while (m_result.error.isEmpty() &&
               (got = archive_read_data(reader, buffer.data(), buffer.size())) > 0) {
            m_bytes += got;
            if (m_bytes > m_limits.bytes) {
                fail(QStringLiteral("it is too large"));
            }
            for (la_ssize_t done = 0; m_result.error.isEmpty() && done < got;) {
                const ssize_t written =
                    write(file, buffer.data() + done, static_cast<std::size_t>(got - done));
                if (written >= 0) {
                    done += written;
                } else if (errno != EINTR) {
                    failBySystem(name);
                }
            }
        }
        if (got < 0) {
            fail(archiveError(reader));
        }
        if (close(file) != 0) {
            failBySystem(name);
        }
    }

    void makeLinks()
    {
        for (const Link &link : m_links) {
            if (!m_result.error.isEmpty()) {
                return;
            }
            const QString path = m_folder + QLatin1Char('/') + link.name;
            if (symlink(QFile::encodeName(link.target).constData(), QFile::encodeName(path).constData()) !=
                0) {
                failBySystem(link.name);
            }
            m_result.files.insert(link.name);
        }
        // What the rule above says is looked at once more where it counts: on the disk.
        const QString inside = QFileInfo(m_folder).canonicalFilePath() + QLatin1Char('/');
        for (const Link &link : m_links) {
            const QString path = m_folder + QLatin1Char('/') + link.name;
            if (m_result.error.isEmpty() && !QFileInfo(path).canonicalFilePath().startsWith(inside)) {
                fail(QStringLiteral("the link %1 leads nowhere").arg(link.name));
            }
        }
    }

    const QString m_folder;
    const UnpackLimits m_limits;
    Unpacked m_result;
    std::vector<Link> m_links;
    qint64 m_bytes = 0;
    int m_members = 0;
};

} // namespace

Unpacked unpackArchive(const QString &archive, const QString &folder, const UnpackLimits &limits)
{
    return Unpacker(folder, limits).run(archive);
}

} // namespace mevo::patchrunner
