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

} // namespace

QString withoutOverMarker(QString text)
{
    return text.remove(QLatin1String(overMarker));
}

ResultText makeResultText(const QString &buffer, const QString &out, bool addPunctuation, bool stripBoth)
{
    ResultText result{out, buffer};
    if (addPunctuation) {
        result.match.chop(1); // the engine's final mark is expected there, whatever it is
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
