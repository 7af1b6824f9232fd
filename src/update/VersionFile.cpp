#include "update/VersionFile.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace mevo {

const QString archiveVersionFile = QStringLiteral("UpdateVersion");

namespace {

constexpr int versionDigits = 3;
constexpr int sha256Digits = 64;
constexpr int longestName = 120;

/// Three digits, as in "108".
std::optional<int> versionNumber(const QString &text)
{
    const bool digits = std::all_of(text.cbegin(), text.cend(),
                                    [](QChar character) { return character >= u'0' && character <= u'9'; });
    return digits && text.size() == versionDigits ? std::make_optional(text.toInt()) : std::nullopt;
}

} // namespace

QString updateModeText(UpdateMode mode)
{
    return mode == UpdateMode::All ? QStringLiteral("All") : QStringLiteral("Part");
}

std::optional<UpdateMode> updateModeOf(const QString &text)
{
    for (UpdateMode mode : {UpdateMode::All, UpdateMode::Part}) {
        if (text == updateModeText(mode)) {
            return mode;
        }
    }
    return std::nullopt;
}

std::optional<VersionFile> parseVersionFile(const QByteArray &content)
{
    if (content.size() > largestVersionFile) {
        return std::nullopt;
    }
    QStringList fields = QString::fromUtf8(content).split(QStringLiteral(";;"));
    for (QString &field : fields) {
        field = field.trimmed();
    }
    if (fields.size() < 3) {
        return std::nullopt;
    }
    const auto version = versionNumber(fields[0]);
    const auto mode = updateModeOf(fields[1]);
    if (!version || !mode || !isArchiveName(fields[2])) {
        return std::nullopt;
    }
    VersionFile file{*version, *mode, fields[2], {}};
    const QString digest = fields.value(3).toLower();
    if (!digest.isEmpty()) {
        static const QRegularExpression hex(QStringLiteral("^[0-9a-f]+$"));
        if (digest.size() != sha256Digits || !hex.match(digest).hasMatch()) {
            return std::nullopt; // a check that was asked for and cannot be made
        }
        file.sha256 = digest.toLatin1();
    }
    return file;
}

std::optional<int> parseArchiveVersion(const QByteArray &content)
{
    return content.size() <= largestVersionFile ? versionNumber(QString::fromUtf8(content).trimmed())
                                                : std::nullopt;
}

bool isArchiveName(const QString &name)
{
    static const QRegularExpression plain(QStringLiteral("^[\\p{L}\\p{N}][\\p{L}\\p{N}_.+~-]*\\.tar\\.xz\\z"),
                                          QRegularExpression::UseUnicodePropertiesOption);
    return name.size() <= longestName && plain.match(name).hasMatch();
}

} // namespace mevo
