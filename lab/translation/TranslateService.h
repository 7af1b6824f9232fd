#pragma once

#include "services/LabHttpServer.h"

#include <QJsonObject>
#include <QString>
#include <QUrlQuery>

#include <functional>

namespace lab {

/// Baidu's general translation service: checks fields, account, signature, length and languages as the real
/// one does. Sentences of the small dictionary are translated; of any other text the answer shows what was
/// asked:
/// "[zh>en] text".
class TranslateService
{
public:
    using Note = std::function<void(const QJsonObject &)>;

    TranslateService(QByteArray appId, QByteArray key, Note note);

    static constexpr char Path[] = "/api/trans/vip/translate";
    void handle(const HttpRequest &request, const LabHttpServer::Reply &reply);

    /// Orders of a test: `error` a number that the next `count` requests are answered with (1 without one, -1
    /// for all), `text` what they are translated to, `split` 1 gives each sentence a segment of its own,
    /// `form` "none" leaves trans_result out, "empty" gives it no segment. False for none of these.
    bool control(const QUrlQuery &query);
    void reset();

    /// The number of what is wrong with a request, 0 when nothing is.
    int check(const QHash<QByteArray, QByteArray> &fields) const;

private:
    QJsonArray segments(const QString &text, const QString &from, const QString &to) const;

    QByteArray m_appId;
    QByteArray m_key;
    Note m_note;
    int m_error = 0;
    int m_count = 0;
    QString m_text;
    QString m_form;
    bool m_split = false;
};

} // namespace lab
