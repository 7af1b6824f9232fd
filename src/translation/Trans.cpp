#include "translation/Trans.h"

#include "translation/TranslationRequest.h"

namespace {

const QString automatic = QStringLiteral("auto");

} // namespace

Trans::Trans(MainState &state, mevo::WebApi &api, mevo::TranslationHost &host,
             mevo::EngineEndpoints endpoints, QObject *parent)
    : QObject(parent)
    , m_parser(new Parser(state, api, host, std::move(endpoints), this))
{
}

QPair<bool, QString> Trans::translate(const QString &string, const QString &to, const QString &from)
{
    const QString given = string; // the caller's may be gone after the wait, as `this` may
    QPair<bool, QString> result = m_parser->request(mevo::translationText(given), from, to);
    if (!result.first && !result.second.isEmpty()) {
        result.second = given;
    }
    return result;
}

QPair<bool, QString> Trans::translate(const QString &string, const QString &to)
{
    return translate(string, to, automatic);
}

QPair<bool, QString> Trans::translate(const QString &string)
{
    return translate(string, automatic, automatic);
}
