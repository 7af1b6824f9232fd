#include "platform/linux/WindowsLocaleId.h"

namespace mevo {

namespace {

struct Row
{
    QLocale::Language language;
    QLocale::Country country; ///< AnyCountry: every country that has no row before this one
    int id;
};

constexpr Row Rows[] = {
    {QLocale::Chinese, QLocale::Taiwan, 0x0404},
    {QLocale::Chinese, QLocale::HongKong, 0x0C04},
    {QLocale::Chinese, QLocale::Macau, 0x1404},
    {QLocale::Chinese, QLocale::Singapore, 0x1004},
    {QLocale::Chinese, QLocale::AnyCountry, 0x0804},
    {QLocale::English, QLocale::UnitedKingdom, 0x0809},
    {QLocale::English, QLocale::Australia, 0x0C09},
    {QLocale::English, QLocale::Canada, 0x1009},
    {QLocale::Arabic, QLocale::AnyCountry, 0x0401},
    {QLocale::Czech, QLocale::AnyCountry, 0x0405},
    {QLocale::Danish, QLocale::AnyCountry, 0x0406},
    {QLocale::German, QLocale::Austria, 0x0C07},
    {QLocale::German, QLocale::Switzerland, 0x0807},
    {QLocale::German, QLocale::AnyCountry, 0x0407},
    {QLocale::Greek, QLocale::AnyCountry, 0x0408},
    {QLocale::Spanish, QLocale::Mexico, 0x080A},
    {QLocale::Spanish, QLocale::AnyCountry, 0x0C0A},
    {QLocale::Finnish, QLocale::AnyCountry, 0x040B},
    {QLocale::French, QLocale::Canada, 0x0C0C},
    {QLocale::French, QLocale::AnyCountry, 0x040C},
    {QLocale::Hebrew, QLocale::AnyCountry, 0x040D},
    {QLocale::Hungarian, QLocale::AnyCountry, 0x040E},
    {QLocale::Italian, QLocale::AnyCountry, 0x0410},
    {QLocale::Japanese, QLocale::AnyCountry, 0x0411},
    {QLocale::Korean, QLocale::AnyCountry, 0x0412},
    {QLocale::Dutch, QLocale::AnyCountry, 0x0413},
    {QLocale::NorwegianBokmal, QLocale::AnyCountry, 0x0414},
    {QLocale::Polish, QLocale::AnyCountry, 0x0415},
    {QLocale::Portuguese, QLocale::Portugal, 0x0816},
    {QLocale::Portuguese, QLocale::AnyCountry, 0x0416},
    {QLocale::Romanian, QLocale::AnyCountry, 0x0418},
    {QLocale::Russian, QLocale::AnyCountry, 0x0419},
    {QLocale::Swedish, QLocale::AnyCountry, 0x041D},
    {QLocale::Thai, QLocale::AnyCountry, 0x041E},
    {QLocale::Turkish, QLocale::AnyCountry, 0x041F},
    {QLocale::Indonesian, QLocale::AnyCountry, 0x0421},
    {QLocale::Ukrainian, QLocale::AnyCountry, 0x0422},
    {QLocale::Vietnamese, QLocale::AnyCountry, 0x042A},
    {QLocale::Hindi, QLocale::AnyCountry, 0x0439},
    {QLocale::Malay, QLocale::AnyCountry, 0x043E},
};
constexpr int UsEnglish = 0x0409;

} // namespace

int windowsLocaleId(const QLocale &locale)
{
    for (const Row &row : Rows) {
        if (row.language == locale.language() &&
            (row.country == QLocale::AnyCountry || row.country == locale.country())) {
            return row.id;
        }
    }
    return UsEnglish;
}

} // namespace mevo
