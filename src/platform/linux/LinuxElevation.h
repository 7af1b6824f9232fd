#pragma once

#include "platform/SystemServices.h"

namespace mevo {

/// The mark is a key of the user's configuration that names the program which it is for.
class LinuxElevation : public Elevation
{
public:
    /// `program` is the full path of the program, by default this one.
    explicit LinuxElevation(const QString &file = defaultFile(), const QString &program = defaultProgram());

    bool isSet() const override;
    bool set() override;
    bool clear() override;

private:
    static QString defaultFile();
    static QString defaultProgram();

    QString m_file;
    QString m_program;
};

} // namespace mevo
