#pragma once

#include <QString>

namespace lab {

/// Runs one of the lab's voice input methods until it is ended. Returns the exit code.
int runMethod(int &argc, char **argv, const QString &name);

} // namespace lab
