#pragma once

#include "desk/EditorTarget.h"

namespace mevo::lab {

/// LibreOffice Writer with a plain text file, and without what corrects or completes a text while it is
/// typed.
class OfficeTarget : public EditorTarget
{
public:
    /// With its own widgets on X11.
    static std::unique_ptr<TargetWindow> start();
    static bool isInstalled();
    /// With those of GTK 3, as GNOME and Xfce have it.
    static std::unique_ptr<TargetWindow> startGtk3();
    static bool isGtk3Installed();

protected:
    using EditorTarget::EditorTarget;
    QByteArray savedText() const override;

private:
    static std::unique_ptr<TargetWindow> startWith(const QString &kind, const QString &widgets);
};

} // namespace mevo::lab
