#pragma once

#include <QByteArray>
#include <QString>

/// A folder of application files for one test program. Construct it before anything asks for an
/// application file (as a static of the test file); it is removed at the end.
class ScratchHome
{
public:
    ScratchHome();
    ~ScratchHome();
    /// Full path of a file in it.
    QString path(const QString &name) const;
    void write(const QString &name, const QByteArray &content) const;
    /// Content of a file, empty when it is not there.
    QByteArray read(const QString &name) const;
    void remove(const QString &name) const;

private:
    QString m_folder;
};
