#include "audio/FirstRunEngine.h"

namespace mevo {

QString firstRunStatement(const QString &schema, bool baiduFastVersion, const QString &dongleId)
{
    // One call for all arguments: none of them can be mistaken for a place marker of the next.
    return QStringLiteral("update %1.%2 set DefaultRecEngine=10, UseBDAPIPara ='0',ShowTXI='1', "
                          "UseXFSDKPara = '0', UseTXAPIPara='1', UseXFWAPIPara='0' , EnableASR3='0', "
                          "UseASR3Index='-1',UseBDFstPara = '%3' where DongleID='%4'")
        .arg(schema, QStringLiteral("device_serialid"), QString::number(baiduFastVersion ? 1 : 0), dongleId);
}

} // namespace mevo
