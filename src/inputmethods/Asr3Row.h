#pragma once

#include <QJsonObject>
#include <QString>

namespace mevo {

/// How an input method is found, operated and had: a row of the service's table, with its columns' names.
struct Asr3Row
{
    QString ASR3DownWeb;         ///< address of the installer, empty for none
    QString ASR3DownWebXP;       ///< the same for systems of the class of Windows XP
    qint64 ASR3SetupPKGSize = 0; ///< its size in bytes, as the service has it
    int ASR3ShortCutKey = 0;     ///< HID keyboard usage of the method's key
    QString ASR3RegInstallPath;  ///< registry path of the installation
    QString ASR3RegSearchValue;  ///< name of the value there that holds its folder
    QString ASR3ExeInstallPath;  ///< of the program, below a folder of programs, from a "/" on
    QString ASR3ExeFileName;
    QString ASR3Name; ///< for messages
    QString ASR3WindowName;
    QString ASR3WinClassName;
    bool thirdGeneration = false; ///< it is of the table for XunFei's third generation
};

/// The table of the service that has the rows for this installation.
QString asr3Table(bool thirdGeneration);

/// What is known without the service, of method 1 (XunFei) or 2 (Sogou); `thirdGeneration` is XunFei's.
Asr3Row builtInAsr3Row(int index, bool thirdGeneration);

/// What is known without the service of a custom method, by the base name of its program.
Asr3Row customAsr3Row(const QString &baseName);

/// A row as the service has it. A column that is absent, empty, too long or no use (a file name with a
/// path, a path that leaves its folder, a key that no keyboard has) is taken from the built-in row: a window
/// without class and title would be anybody's.
Asr3Row readAsr3Row(const QJsonObject &columns, const Asr3Row &builtIn);

} // namespace mevo
