#pragma once

#include "translation/Parser.h"

#include <QObject>
#include <QPair>
#include <QString>

/// The translation client. GUI thread only. Each call waits in a nested event loop for at most 2 s, in which
/// anything may happen, another call and this object's end included.
class Trans : public QObject
{
    Q_OBJECT

public:
    /// All but `endpoints` must outlive this object.
    Trans(MainState &state, mevo::WebApi &api, mevo::TranslationHost &host, mevo::EngineEndpoints endpoints,
          QObject *parent = nullptr);

    Parser &parser() { return *m_parser; }

public slots:
    /// Translates `string` from one language into another, both codes of translationLanguages(). True with
    /// the first translated segment. False with `string` when no answer came: offline, time-out, an error of
    /// the network. False with nothing when the service answered something else. Errors are logged, never
    /// shown.
    QPair<bool, QString> translate(const QString &string, const QString &to, const QString &from);
    /// From "auto".
    QPair<bool, QString> translate(const QString &string, const QString &to);
    /// From "auto" to "auto".
    QPair<bool, QString> translate(const QString &string);

private:
    Parser *m_parser;
};
