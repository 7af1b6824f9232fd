#include "base/InterfaceLanguage.h"

namespace mevo {

QString translationFileFor(int localeId)
{
    switch (localeId) {
    case 0x0404: // Taiwan
    case 0x0C04: // Hong Kong
    case 0x1404: // Macao
        return QStringLiteral("cht.qm");
    case 0x0804: // China
    case 0x1004: // Singapore
        return {};
    default:
        return QStringLiteral("en.qm");
    }
}

} // namespace mevo
