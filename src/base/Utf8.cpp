#include "base/Utf8.h"

#include <QTextCodec>

#include <algorithm>

namespace mevo {

QString textOfUtf8(std::string_view bytes, bool *broken)
{
    const int size = int(bytes.size());
    if (std::all_of(bytes.begin(), bytes.end(), [](char byte) { return uchar(byte) < 0x80; })) {
        return QString::fromLatin1(bytes.data(), size);
    }
    constexpr int mibOfUtf8 = 106;
    static const QTextCodec *const codec = QTextCodec::codecForMib(mibOfUtf8);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text = codec->toUnicode(bytes.data(), size, &state);
    if (state.remainingChars > 0) {
        text += QChar(QChar::ReplacementCharacter);
    }
    if (broken != nullptr && (state.invalidChars > 0 || state.remainingChars > 0)) {
        *broken = true;
    }
    return text;
}

} // namespace mevo
