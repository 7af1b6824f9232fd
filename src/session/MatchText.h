#pragma once

#include <QString>

namespace mevo {

/// A result in its two forms.
struct ResultText
{
    QString out;   ///< as received, markers removed: what goes to the screen
    QString match; ///< punctuation stripped: what is compared with words
};

/// The marker that ends an engine's text, and the one by which an engine ends a session.
constexpr char overMarker[] = "__over__";
constexpr char autoOverMarker[] = "__AutoOver__";

/// Removes every end marker, until none is left.
QString withoutOverMarker(const QString &text);

/// Makes both forms. `buffer` is the session's text so far including `out`; `addPunctuation` is the
/// setting that asks the engine for punctuation; `stripBoth` says that the engine (Baidu, Tencent) adds
/// sentence marks that nobody asked for, so they go from both forms.
ResultText makeResultText(const QString &buffer, const QString &out, bool addPunctuation, bool stripBoth);

/// What XunFei answers when the day's quota is used up: its code anywhere but at the very start.
bool isOverLimitText(const QString &text);

} // namespace mevo
