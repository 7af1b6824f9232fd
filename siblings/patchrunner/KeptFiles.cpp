#include "patchrunner/KeptFiles.h"

#include <QFile>

#include <cerrno>
#include <filesystem>

#include <unistd.h>

namespace mevo::patchrunner {

namespace fs = std::filesystem;

namespace {

fs::path pathOf(const QString &text)
{
    return {QFile::encodeName(text).toStdString()};
}

bool isIni(const fs::path &path)
{
    return QFile::decodeName(path.extension().c_str()).compare(QLatin1String(".ini"), Qt::CaseInsensitive) ==
           0;
}

/// Mode and time go with the content.
void copyWhole(const fs::path &from, const fs::path &to)
{
    fs::copy_file(from, to);
    fs::last_write_time(to, fs::last_write_time(from));
}

void keepFile(const fs::path &from, const fs::path &to)
{
    const fs::file_status there = fs::symlink_status(to);
    if (isIni(from)) {
        if (fs::is_directory(there)) {
            throw fs::filesystem_error("a folder stands in its place", from, to,
                                       std::make_error_code(std::errc::is_a_directory));
        }
        fs::remove(to);
        copyWhole(from, to);
    } else if (!fs::exists(there)) {
        std::error_code refused;
        fs::create_hard_link(from, to, refused);
        if (refused) {
            copyWhole(from, to);
        }
    }
}

void keepEntries(const fs::path &from, const fs::path &to)
{
    for (const fs::directory_entry &entry : fs::directory_iterator(from)) {
        const fs::path target = to / entry.path().filename();
        const fs::file_status kind = entry.symlink_status();
        const fs::file_status there = fs::symlink_status(target);
        if (fs::is_symlink(kind)) {
            if (isIni(entry.path()) && !fs::is_directory(there)) {
                fs::remove(target);
            }
            if (!fs::exists(fs::symlink_status(target))) {
                fs::copy_symlink(entry.path(), target);
            }
        } else if (fs::is_directory(kind)) {
            if (!fs::exists(there)) {
                fs::create_directory(target, entry.path());
            } else if (!fs::is_directory(there)) {
                // The user's files in it would have no place.
                throw fs::filesystem_error("a file stands in the place of a folder", entry.path(),
                                           std::make_error_code(std::errc::not_a_directory));
            }
            keepEntries(entry.path(), target);
        } else if (fs::is_regular_file(kind)) {
            keepFile(entry.path(), target);
        }
        // Sockets and the like belong to programs that have ended.
    }
}

} // namespace

Kept keepFiles(const QString &oldFolder, const QString &newFolder)
{
    try {
        keepEntries(pathOf(oldFolder), pathOf(newFolder));
    } catch (const fs::filesystem_error &error) {
        const bool noSpace = error.code() == std::errc::no_space_on_device ||
                             error.code() == std::error_code(EDQUOT, std::generic_category());
        return {QString::fromLocal8Bit(error.what()), noSpace};
    }
    return {};
}

void removeFolder(const QString &folder)
{
    std::error_code ignored; // what is left is removed by the next update
    fs::remove_all(pathOf(folder), ignored);
}

} // namespace mevo::patchrunner
