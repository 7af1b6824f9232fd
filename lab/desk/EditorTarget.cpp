#include "desk/EditorTarget.h"

#include "receiver/WaitUntil.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace mevo::lab {

namespace {

constexpr int readyTimeoutMs = 60000;
constexpr int saveTimeoutMs = 100; // an unchanged text is not written again
constexpr int clearTimeoutMs = 20000;

constexpr KeyboardReport keyCtrlA{0x01, 0x04, 0};
constexpr KeyboardReport keyCtrlS{0x01, 0x16, 0};
constexpr KeyboardReport keyDelete{0x00, 0x4C, 0};
constexpr KeyboardReport keyZ{0x00, 0x1D, 0};

} // namespace

EditorTarget::EditorTarget(const QString &kind, std::unique_ptr<Desktop> desktop,
                           std::unique_ptr<XTestKeyboard> keyboard)
    : TargetWindow(kind, std::move(desktop))
    , m_keyboard(std::move(keyboard))
{
}

std::unique_ptr<EditorTarget> EditorTarget::create(const QString &kind)
{
    std::unique_ptr<Desktop> desktop = Desktop::open();
    std::unique_ptr<XTestKeyboard> keyboard = XTestKeyboard::open();
    if (!desktop || !keyboard)
        return nullptr;
    return std::unique_ptr<EditorTarget>(new EditorTarget(kind, std::move(desktop), std::move(keyboard)));
}

std::unique_ptr<TargetWindow> EditorTarget::startMousepad()
{
    std::unique_ptr<EditorTarget> target = create(QStringLiteral("mousepad"));
    if (!target ||
        !target->launch(QStringLiteral("mousepad"), {QStringLiteral("--disable-server"), target->textFile()}))
        return nullptr;
    return target;
}

std::unique_ptr<TargetWindow> EditorTarget::startFeatherpad()
{
    std::unique_ptr<EditorTarget> target = create(QStringLiteral("featherpad"));
    if (!target)
        return nullptr;
    // By default it adds a line at each save, and the caret goes there.
    QDir(target->folder()).mkdir(QStringLiteral("featherpad"));
    QFile settings(QDir(target->folder()).filePath(QStringLiteral("featherpad/fp.conf")));
    if (settings.open(QIODevice::WriteOnly))
        settings.write("[text]\nappendEmptyLine=false\nremoveTrailingSpaces=false\n");
    settings.close();
    if (!target->launch(QStringLiteral("featherpad"), {QStringLiteral("--standalone"), target->textFile()}))
        return nullptr;
    return target;
}

std::unique_ptr<TargetWindow> EditorTarget::startKate()
{
    std::unique_ptr<EditorTarget> target = create(QStringLiteral("kate"));
    if (!target)
        return nullptr;
    QFile settings(QDir(target->folder()).filePath(QStringLiteral("katerc")));
    if (settings.open(QIODevice::WriteOnly))
        settings.write("[KTextEditor Document]\nNewline at End of File=false\nRemove Spaces=0\n"
                       "[KTextEditor View]\nAuto Brackets=false\nAuto Completion=false\n");
    settings.close();
    if (!target->launch(QStringLiteral("kate"),
                        {QStringLiteral("--startanon"), QStringLiteral("--new"), target->textFile()}))
        return nullptr;
    return target;
}

std::unique_ptr<TargetWindow> EditorTarget::startGnomeTextEditor()
{
    std::unique_ptr<EditorTarget> target = create(QStringLiteral("gnome-text-editor"));
    if (!target || !target->launch(QStringLiteral("gnome-text-editor"),
                                   {QStringLiteral("--standalone"), target->textFile()}))
        return nullptr;
    return target;
}

bool EditorTarget::waitReady()
{
    // The window is there before its keys work: it is ready when a letter has come through.
    const auto takesKeys = [this] {
        if (!focus())
            return false;
        if (savedText().isEmpty())
            m_keyboard->tap(keyZ);
        save();
        return savedText().startsWith('z');
    };
    return waitUntil(takesKeys, readyTimeoutMs, 50) && clear();
}

bool EditorTarget::save()
{
    const QFileInfo info(textFile());
    const QDateTime before = info.lastModified();
    m_keyboard->tap(keyCtrlS);
    return waitUntil([&] { return QFileInfo(textFile()).lastModified() != before; }, saveTimeoutMs, 2);
}

QString EditorTarget::peek()
{
    if (!hasFocus())
        focus();
    save();
    return QString::fromUtf8(savedText());
}

bool EditorTarget::clear()
{
    if (!focus())
        return false;
    m_keyboard->tap(keyCtrlA);
    m_keyboard->tap(keyDelete);
    return waitUntil(
        [this] {
            save();
            return savedText().isEmpty();
        },
        clearTimeoutMs);
}

} // namespace mevo::lab
