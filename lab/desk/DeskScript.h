#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace mevo::lab {

/// One step of a script.
struct DeskStep
{
    int line = 0;   ///< counted from 1
    QString source; ///< as it stands in the script
    QString verb;
    QStringList arguments;          ///< without the options
    QMap<QString, QString> options; ///< such as "within" and its value

    /// The value of an option that holds milliseconds.
    int milliseconds(const QString &option, int otherwise) const;
};

struct DeskScript
{
    std::vector<DeskStep> steps;
    int errorLine = 0; ///< 0: the script is well formed
    QString error;

    bool valid() const { return errorLine == 0; }
};

/// Reads a script: one step a line, words apart by spaces, texts in double quotes (with \" \\ \n \r \t),
/// comments from "#" on, "${NAME}" for what `variable` gives. Stops at the first error.
DeskScript parseDeskScript(const QString &text,
                           const std::function<std::optional<QString>(const QString &name)> &variable);

/// The usage lines of all steps.
QStringList deskStepHelp();

} // namespace mevo::lab
