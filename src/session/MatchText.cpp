#include "session/MatchText.h"

namespace mevo {

namespace {

const QLatin1String overLimitCode("11201");

void removeAll(QString &text, std::initializer_list<QChar> marks)
{
    for (const QChar mark : marks) {
        text.remove(mark);
    }
}

/// Removes every occurrence, those too that only come about by a removal. One pass, whatever the text.
QString withoutWord(const QString &text, QLatin1String word)
{
    QString rest;
    rest.reserve(text.size());
    for (const QChar character : text) {
        rest += character;
        if (rest.endsWith(word)) {
            rest.chop(word.size());
        }
    }
    return rest;
}

void removeLastCharacter(QString &text)
{
    const int size = text.size();
    const bool pair = size > 1 && text.at(size - 1).isLowSurrogate() && text.at(size - 2).isHighSurrogate();
    text.chop(pair ? 2 : 1);
}

} // namespace

QString withoutOverMarker(const QString &text)
{
    return withoutWord(text, QLatin1String(overMarker));
}

ResultText makeResultText(const QString &buffer, const QString &out, bool addPunctuation, bool stripBoth)
{
    ResultText result{out, buffer};
    if (addPunctuation) {
        removeLastCharacter(result.match); // the engine's final mark is expected there, whatever it is
        // "。" and "?" stay: tables written by users rely on both.
        removeAll(result.match, {u',', u'，', u'！', u'!', u'？'});
    } else if (stripBoth) {
        removeAll(result.match, {u'。', u'，', u'！', u'？'});
        removeAll(result.out, {u'。', u'，', u'！', u'？'});
    }
    return result;
}

bool isOverLimitText(const QString &text)
{
    return text.indexOf(overLimitCode, 1, Qt::CaseSensitive) > 0;
}

} // namespace mevo
