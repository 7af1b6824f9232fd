#include "engines/WavImage.h"

#include <QtEndian>

#include <array>

namespace mevo {

namespace {

constexpr int HeaderBytes = 44;
constexpr quint32 SampleRate = 16000;
constexpr quint16 Channels = 1;
constexpr quint16 SampleBits = 16;
constexpr quint16 FrameBytes = Channels * SampleBits / 8;
constexpr quint16 PcmFormat = 1;
constexpr quint32 FormatChunkBytes = 16;

template <typename Number>
void append(QByteArray &image, Number number)
{
    std::array<char, sizeof(Number)> bytes{};
    qToLittleEndian(number, bytes.data());
    image.append(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

QByteArray wavImage(const QByteArray &pcm)
{
    const auto length = static_cast<quint32>(pcm.size());
    QByteArray image;
    image.reserve(HeaderBytes + pcm.size());
    image += "RIFF";
    append<quint32>(image, length + 32);
    image += "WAVEfmt ";
    append<quint32>(image, FormatChunkBytes);
    append<quint16>(image, PcmFormat);
    append<quint16>(image, Channels);
    append<quint32>(image, SampleRate);
    append<quint32>(image, SampleRate * FrameBytes);
    append<quint16>(image, FrameBytes);
    append<quint16>(image, SampleBits);
    image += "data";
    append<quint32>(image, length & 0xffff);
    image += pcm;
    return image;
}

} // namespace mevo
