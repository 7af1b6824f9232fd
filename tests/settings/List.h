#pragma once

#include <QStringList>

#include <initializer_list>

/// A list of UTF-8 texts.
inline QStringList list(std::initializer_list<const char *> texts)
{
    QStringList strings;
    for (const char *each : texts) {
        strings.append(QString::fromUtf8(each));
    }
    return strings;
}
