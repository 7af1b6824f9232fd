#pragma once

#include "services/LabHttpServer.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <functional>

namespace lab {

/// An installer that the lab's server offers.
struct Installer
{
    const char *file;    ///< its name
    const char *program; ///< name of the program that it puts in place
    const char *title;   ///< for people
    const char *version;
    const char *folder; ///< of the program, below a folder of programs
};

/// Null when there is none of that file name.
const Installer *installerNamed(const QString &file);

/// The installer's content, a shell script with the program in it.
QByteArray makeInstaller(const Installer &installer, const QByteArray &program);

/// The download server of the input methods' installers, below "/installers/". What is asked for below
/// "/installers/moved/" has moved to there.
class InstallerServer
{
public:
    using Note = std::function<void(const QJsonObject &)>;

    /// `programs` is the folder of the input methods' programs.
    InstallerServer(QString programs, Note note);
    static bool takes(const QByteArray &path);
    void handle(const HttpRequest &request, const LabHttpServer::Reply &reply) const;

private:
    QString m_programs;
    Note m_note;
};

} // namespace lab
