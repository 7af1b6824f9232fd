#include "desk/Speaker.h"

#include "receiver/WaitUntil.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace mevo::lab {

namespace {

constexpr int bytesPerMs = 32;
constexpr int frameBytes = 20 * bytesPerMs;
constexpr int pauseBytes = 800 * bytesPerMs; ///< as long as none within a sentence
constexpr double loud = 60;                  ///< root mean square of a frame

bool isLoud(const char *frame)
{
    double sum = 0;
    for (int at = 0; at < frameBytes; at += int(sizeof(qint16))) {
        qint16 sample = 0;
        std::memcpy(&sample, frame + at, sizeof sample);
        sum += double(sample) * sample;
    }
    return std::sqrt(sum / (frameBytes / int(sizeof(qint16)))) > loud;
}

/// Where the last loud frame of `pcm` ends; -1 without one.
int endOfSound(const QByteArray &pcm)
{
    for (int at = pcm.size() / frameBytes * frameBytes - frameBytes; at >= 0; at -= frameBytes) {
        if (isLoud(pcm.constData() + at))
            return at + frameBytes;
    }
    return -1;
}

} // namespace

Speaker::Speaker()
{
    m_recorder.start(QStringLiteral("parec"),
                     {QStringLiteral("-d"), QStringLiteral("spk.monitor"), QStringLiteral("--raw"),
                      QStringLiteral("--rate=16000"), QStringLiteral("--channels=1"),
                      QStringLiteral("--format=s16le"), QStringLiteral("--latency-msec=20")});
}

Speaker::~Speaker()
{
    m_recorder.kill();
    m_recorder.waitForFinished();
}

void Speaker::read()
{
    m_pcm += m_recorder.readAllStandardOutput();
}

bool Speaker::records(int timeoutMs)
{
    return waitUntil(
        [this] {
            read();
            return !m_pcm.isEmpty();
        },
        timeoutMs);
}

bool Speaker::isQuiet(int timeoutMs)
{
    m_pcm.clear();
    return waitUntil(
        [this] {
            read();
            return m_pcm.size() >= pauseBytes && endOfSound(m_pcm.right(pauseBytes)) < 0;
        },
        timeoutMs);
}

QByteArray Speaker::nextSound(int timeoutMs)
{
    m_pcm.clear();
    const bool ended = waitUntil(
        [this] {
            read();
            const int end = endOfSound(m_pcm);
            return end >= 0 && m_pcm.size() - end >= pauseBytes;
        },
        timeoutMs);
    return ended ? m_pcm : QByteArray();
}

} // namespace mevo::lab
