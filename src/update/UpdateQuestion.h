#pragma once

#include "update/VersionFile.h"

namespace mevo {

/// What follows from a version file.
enum class UpdateStep {
    Nothing,
    ClearNotice, ///< asked from the settings, and there is nothing new
    ShowNotice,  ///< asked from the settings: a line there says that there is a new version
    Ask
};

UpdateStep updateStep(const VersionFile &file, int currentVersion, bool manual, bool notified);

/// The question's text in the interface language, the product's title before it. Where no signature can be
/// checked it says so at its end.
QString updateQuestion(const VersionFile &file, bool forced, const QString &title, bool isSigned);

} // namespace mevo
