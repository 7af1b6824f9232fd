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
    // `this` may be gone after the wait.
    QPair<bool, QString> result = m_parser->request(mevo::translationText(string), from, to);
    if (!result.first && !result.second.isEmpty()) {
        result.second = string;
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
