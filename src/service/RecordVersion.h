#pragma once

#include <QJsonObject>

namespace mevo {

/// What the version column of a device record asks for.
enum class RecordVersion {
    Current,   ///< nothing
    Offer,     ///< say that there is a newer version, and open its page
    Page,      ///< open the page
    Required,  ///< say so, open the page and end
    LaterPage, ///< perhaps open the product's page, a while later
    WriteOwn   ///< the record is told this program's version
};

/// Reads `CurrentVersion` of a device record; a row without it asks for nothing.
RecordVersion recordVersion(const QJsonObject &row, int ownVersion);

} // namespace mevo
