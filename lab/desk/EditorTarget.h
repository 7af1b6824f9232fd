#pragma once

#include "desk/TargetWindow.h"
#include "receiver/XTestKeyboard.h"

namespace mevo::lab {

/// A text editor; its text is read by having it save.
class EditorTarget : public TargetWindow
{
public:
    static std::unique_ptr<TargetWindow> startMousepad();
    static std::unique_ptr<TargetWindow> startFeatherpad();
    static std::unique_ptr<TargetWindow> startKate();
    static std::unique_ptr<TargetWindow> startGnomeTextEditor();
    QString peek() override;
    bool clear() override;

protected:
    bool waitReady() override;
    /// The text in its file as UTF-8.
    virtual QByteArray savedText() const { return textFileContent(); }
    EditorTarget(const QString &kind, std::unique_ptr<Desktop> desktop,
                 std::unique_ptr<XTestKeyboard> keyboard);

private:
    static std::unique_ptr<EditorTarget> create(const QString &kind);
    bool save();

    std::unique_ptr<XTestKeyboard> m_keyboard;
};

} // namespace mevo::lab
