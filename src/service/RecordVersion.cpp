#include "service/RecordVersion.h"

#include "service/WebApiReply.h"

namespace mevo {

RecordVersion recordVersion(const QJsonObject &row, int ownVersion)
{
    const QString column = QStringLiteral("CurrentVersion");
    if (row.value(column).isUndefined() || row.value(column).isNull()) {
        return RecordVersion::Current;
    }
    constexpr int none = -1;
    const int version = columnNumber(row, column, none);
    switch (version) {
    case 0:
        return RecordVersion::Offer;
    case 1:
        return RecordVersion::Page;
    case 2:
        return RecordVersion::Required;
    case 3:
        return RecordVersion::LaterPage;
    default:
        return version == ownVersion ? RecordVersion::Current : RecordVersion::WriteOwn;
    }
}

} // namespace mevo
