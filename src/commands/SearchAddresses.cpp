#include "commands/SearchAddresses.h"

namespace mevo {

namespace {

struct SearchEngine
{
    bool SettingsState::*enabled;
    QString EngineEndpoints::*host;
    const char *scheme;
    const char *query; ///< path and query, the text follows
};

constexpr SearchEngine engines[] = {
    {&SettingsState::SearchEngines_Baidu, &EngineEndpoints::SearchBaidu, "https", "/s?ie=UTF-8&wd="},
    {&SettingsState::SearchEngines_Sogou, &EngineEndpoints::SearchSogou, "https", "/webquery=?"}, // kept
    {&SettingsState::SearchEngines_360, &EngineEndpoints::Search360, "https", "/s?ie=utf-8&q="},
    {&SettingsState::SearchEngines_Google, &EngineEndpoints::SearchGoogle, "http", "/search?q="},
    {&SettingsState::SearchEngines_Bing, &EngineEndpoints::SearchBing, "https", "/search?q=+"}, // kept
};

/// The signs that end a text within a query or mean another one there; QUrl encodes the rest.
QString escaped(const QString &text)
{
    QString out;
    for (const QChar character : text) {
        out += QLatin1String("#&+%").contains(character)
                   ? QLatin1Char('%') + QString::number(character.unicode(), 16).toUpper()
                   : QString(character);
    }
    return out;
}

} // namespace

QList<QUrl> searchAddresses(const QString &text, const SettingsState &settings,
                            const EngineEndpoints &endpoints)
{
    QList<QUrl> addresses;
    const QString query = escaped(text);
    for (const SearchEngine &engine : engines) {
        if (!(settings.*engine.enabled)) {
            continue;
        }
        const QString host = endpoints.*engine.host;
        const QString scheme = host.contains(QLatin1String("://"))
                                   ? QString()
                                   : QLatin1String(engine.scheme) + QStringLiteral("://");
        addresses.append(QUrl(scheme + host + QLatin1String(engine.query) + query, QUrl::TolerantMode));
    }
    return addresses;
}

} // namespace mevo
