#include "desk/BrowserTarget.h"

#include "receiver/WaitUntil.h"
#include "services/LabHttpServer.h"

#include <QDir>

namespace mevo::lab {

namespace {

constexpr int readyTimeoutMs = 60000;
constexpr int clearTimeoutMs = 20000;

constexpr KeyboardReport keyCtrlA{0x01, 0x04, 0};
constexpr KeyboardReport keyDelete{0x00, 0x4C, 0};
constexpr KeyboardReport keyZ{0x00, 0x1D, 0};

// One message at a time, so that none overtakes another.
const char page[] = R"(<!doctype html><meta charset=utf-8><title>text area</title>
<body style="margin:0"><textarea id=area autofocus autocomplete=off spellcheck=false
 style="box-sizing:border-box;width:100vw;height:100vh"></textarea>
<script>
const area = document.getElementById('area');
let told = null, busy = false;
async function tell() {
    if (busy)
        return;
    busy = true;
    while (told !== area.value) {
        const value = area.value;
        try {
            await fetch('/text', {method: 'POST', body: value});
            told = value;
        } catch (error) {
            await new Promise(again => setTimeout(again, 100));
        }
    }
    busy = false;
}
area.addEventListener('input', tell);
area.focus();
</script>)";

} // namespace

BrowserTarget::BrowserTarget(std::unique_ptr<Desktop> desktop, std::unique_ptr<XTestKeyboard> keyboard)
    : TargetWindow(QStringLiteral("chromium"), std::move(desktop))
    , m_keyboard(std::move(keyboard))
    , m_server(std::make_unique<::lab::LabHttpServer>(
          [this](const ::lab::HttpRequest &request, const ::lab::LabHttpServer::Reply &reply) {
              if (request.path() == "/text")
                  m_text = QString::fromUtf8(request.body);
              reply({request.path() == "/" || request.path() == "/text" ? 200 : 404,
                     "text/html; charset=utf-8", request.path() == "/" ? page : ""});
          }))
{
}

BrowserTarget::~BrowserTarget()
{
    stop(); // before the server that its page talks to
}

std::unique_ptr<TargetWindow> BrowserTarget::start()
{
    std::unique_ptr<Desktop> desktop = Desktop::open();
    std::unique_ptr<XTestKeyboard> keyboard = XTestKeyboard::open();
    if (!desktop || !keyboard)
        return nullptr;
    std::unique_ptr<BrowserTarget> target(new BrowserTarget(std::move(desktop), std::move(keyboard)));
    if (!target->m_server->start(0))
        return nullptr;
    // It shows nothing but our own page, and a sandbox is not to be had for every user on every kernel.
    const QStringList arguments{
        QStringLiteral("--no-sandbox"),
        QStringLiteral("--no-first-run"),
        QStringLiteral("--no-proxy-server"),
        QStringLiteral("--disable-gpu"),
        QStringLiteral("--disable-dev-shm-usage"),
        QStringLiteral("--disable-background-networking"),
        QStringLiteral("--disable-component-update"),
        QStringLiteral("--disable-sync"),
        QStringLiteral("--password-store=basic"),
        QStringLiteral("--user-data-dir=") + QDir(target->folder()).filePath(QStringLiteral("profile")),
        QStringLiteral("--window-size=700,500"),
        QStringLiteral("--app=http://127.0.0.1:%1/").arg(target->m_server->serverPort())};
    if (!target->launch(QStringLiteral("chromium"), arguments))
        return nullptr;
    return target;
}

bool BrowserTarget::waitReady()
{
    const auto takesKeys = [this] {
        if (!focus())
            return false;
        m_keyboard->tap(keyZ);
        return waitUntil([this] { return m_text.startsWith(QLatin1Char('z')); }, 1000);
    };
    return waitUntil(takesKeys, readyTimeoutMs, 50) && clear();
}

bool BrowserTarget::clear()
{
    // It is empty when a letter has come and gone: what is empty already tells nothing of the keys' way.
    if (!focus())
        return false;
    m_keyboard->tap(keyZ);
    if (!waitUntil([this] { return !m_text.isEmpty(); }, clearTimeoutMs))
        return false;
    m_keyboard->tap(keyCtrlA);
    m_keyboard->tap(keyDelete);
    return waitUntil([this] { return m_text.isEmpty(); }, clearTimeoutMs);
}

} // namespace mevo::lab
