#pragma once

#include <QString>

#include <vector>

namespace mevo {

enum class Engine { Baidu, Tencent, XunFei, ThirdParty };

/// A language that an engine offers in the menu.
struct LanguageRow
{
    Engine engine;
    const char *label;         ///< source text of the context "AsrLanMenu"
    const char *code;          ///< the service's own code; a third-party method's index
    const char *image;         ///< stem of the picture
    const char *verticalImage; ///< stem of the upright picture
};

/// The rows of the menu in their order: Tencent, Baidu, XunFei, third-party methods.
const std::vector<LanguageRow> &menuLanguages();

/// A dialect or language of XunFei's full set.
struct XunFeiLanguage
{
    const char *label;
    const char *code; ///< as the service knows it: "lmz" and "ru-ru" are no slips
    const char *image;
};
const std::vector<XunFeiLanguage> &xunFeiLanguages();

} // namespace mevo
