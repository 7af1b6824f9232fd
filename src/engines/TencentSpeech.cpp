#include "engines/TencentSpeech.h"

#include "base/ApplicationFiles.h"
#include "base/LogText.h"
#include "engines/BaiduRequest.h"
#include "engines/CurlPost.h"
#include "engines/TencentCredentials.h"
#include "engines/TencentRequest.h"

#include <QDebug>

#include <cstdio>

namespace mevo {

namespace {

/// On standard output, past the log: these lines are for whoever runs the program in a terminal.
void print(const QByteArray &line)
{
    std::fprintf(stdout, "%s\n", line.constData());
    std::fflush(stdout);
}

void printChunkSize(int size)
{
    print("size * nmemb：\n" + QByteArray::number(size));
    std::fprintf(stderr, "size * nmemb： %d\n", size);
}

} // namespace

TencentSpeech::TencentSpeech(MainState &state, EngineHost &host, const Time &time, Processes &processes,
                             EngineEndpoints endpoints, OnText onText, DrawNumber draw)
    : m_state(state)
    , m_host(host)
    , m_time(time)
    , m_processes(processes)
    , m_endpoints(std::move(endpoints))
    , m_onText(std::move(onText))
    , m_draw(std::move(draw))
{
}

QPair<bool, QString> TencentSpeech::recognise(const QByteArray &pcm, const SessionContext &session)
{
    const Tc3Credential credential = drawTencentCredential(m_state, m_endpoints, m_draw);
    if (credential.secretId.isEmpty() || credential.secretKey.isEmpty()) {
        qWarning("Tencent: no credentials are configured");
    }
    writeRecording(appFile(QStringLiteral("test.pcm")), pcm);
    const QByteArray payload = tencentPayload(
        {session.engine.tencentLanguage, m_state.TXASRConvertNum2CNMode, m_state.AddPunctuationWhenEnd, pcm});
    const TencentRequest request =
        tencentRequest(m_endpoints, credential, payload, m_time.now().toSecsSinceEpoch());
    print(request.authorization);

    QString text;
    int received = 0;
    bool refused = false;
    const auto onChunk = [&](const QByteArray &chunk) {
        printChunkSize(chunk.size());
        received += chunk.size();
        const TencentReply reply = parseTencentReply(chunk);
        switch (reply.kind) {
        case TencentReply::Kind::Unreadable:
            if (received == chunk.size()) { // said once a reply, at its first chunk
                qWarning("Tencent: a reply's %d bytes are no answer", chunk.size());
            }
            break;
        case TencentReply::Kind::Error:
            refused = true;
            onError(reply);
            return false;
        case TencentReply::Kind::Text:
            text = reply.text;
            if (!reply.hasText) {
                qWarning("Tencent: a reply's %d bytes hold no text", chunk.size());
            }
            m_state.dayCounts.count(CountColumn::Tencent, session.receiver);
            m_onText(text + QStringLiteral("__over__"),
                     session.number); // last: an event loop may run in it, and we may go
            break;
        }
        return received <= MaxReplyBytes;
    };
    CurlPost post(request.url, request.headers, m_endpoints.VerifyCertificates);
    switch (post.send(request.payload, onChunk)) {
    case CurlPost::Outcome::Done:
        std::fputs("result_code != CURLE_fail\n", stderr); // kept: it says that all went well
        if (received == 0) {
            qWarning("Tencent: the reply is empty");
        }
        return {true, text};
    case CurlPost::Outcome::NoHandle:
        qWarning("Tencent: libcurl gives no handle");
        return {true, text};
    case CurlPost::Outcome::Failed:
        break;
    }
    std::fprintf(stderr, "\ncurl_easy_perform() failed: %s\n", qPrintable(post.error()));
    if (!refused) { // else the reason has been said
        qWarning().noquote() << "Tencent: the request failed:" << logText(post.error());
    }
    return {false, text};
}

void TencentSpeech::onError(const TencentReply &reply)
{
    const QString message = tencentErrorMessage(reply);
    qWarning().noquote() << "Tencent: error" << logText(reply.code + QLatin1Char(' ') + reply.message);
    if (m_state.ShowTipsDlg && saysClockIsWrong(message)) {
        m_processes.openElevated(QStringLiteral("\\校时助手.exe"), {});
    }
    m_host.ensureEngineTip();
    m_host.showEngineTip(message, false);
}

} // namespace mevo
