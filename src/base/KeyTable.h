#pragma once

#include <QString>
#include <QStringList>

namespace mevo {

/// Key names and their codes (USB usages in base 16) for the key pickers, parallel and in the order of
/// the file.
struct KeyTable
{
    QStringList names;
    QStringList codes;
};

/// Reads "MEVKeysSetting.ini"-like text: a group a key with `ShowName` and `VKCode`. The order of the
/// groups counts, which is why this is not left to QSettings: it sorts them. Every group takes its place,
/// since places have a meaning; what one lacks is empty, and the log says so in one line.
KeyTable parseKeyTable(const QByteArray &ini);

/// The table of the application folder; empty when the file is not there.
KeyTable loadKeyTable();

} // namespace mevo
