#include "service/Statements.h"

#include <QDebug>

#include <iterator>

namespace mevo {

namespace {

constexpr StatementRow rows[] = {
    {Statement::ReadDeviceRecord, "select * from %1.%2 where DongleID='%3'", 3},
    {Statement::ReadProductRecord,
     "select * from %1.productrecord where CustomIndex=%2 and ProductionIndex=%3", 3},
    {Statement::CreateDeviceRecord,
     "insert into %1.%2 (DongleID,LastLoginDateTime,CurrentVersion,CurrentSubVer,DefaultRecEngine) "
     "VALUES ('%3','%4',%5,'%6','%7')",
     7},
    {Statement::WriteDeviceColumns, "update %1.%2 set %3 where DongleID='%4'", 4},
    {Statement::WriteCurrentVersion, "update %1.%2 set CurrentVersion=%3 where DongleID='%4'", 4},

    {Statement::FirstRunTencent,
     "update %1.%2 set DefaultRecEngine=10, UseBDAPIPara ='0',ShowTXI='1', UseXFSDKPara = '0', "
     "UseTXAPIPara='1', UseXFWAPIPara='0' , EnableASR3='0', UseASR3Index='-1',UseBDFstPara = '%3' "
     "where DongleID='%4'",
     4},
    {Statement::FirstRunBaidu,
     "update %1.%2 set DefaultRecEngine=10, UseBDAPIPara ='1', UseXFSDKPara = '0', UseXFWAPIPara='0' , "
     "EnableASR3='0', UseASR3Index='-1',UseBDFstPara = '%3' where DongleID='%4'",
     4},

    {Statement::UseBaidu,
     "update %1.%2 set DefaultRecEngine=10, UseTXAPIPara= '0', UseBDAPIPara ='1', UseXFSDKPara = '0', "
     "UseXFWAPIPara='0'  where DongleID='%3'",
     3},
    {Statement::UseTencent,
     "update %1.%2 set DefaultRecEngine=10, UseTXAPIPara= '1', UseBDAPIPara ='0', UseXFSDKPara = '0', "
     "UseXFWAPIPara='0'  where DongleID='%3'",
     3},
    // The record is read from UseXFWAPIPara and written to UseXFSDKPara; both are what the backend knows.
    {Statement::UseXunFei,
     "update %1.%2 set DefaultRecEngine=10, UseTXAPIPara= '0', UseBDAPIPara ='0', UseXFSDKPara = '1', "
     "UseXFWAPIPara='0'  where DongleID='%3'",
     3},

    {Statement::UseInputMethod, "update %1.%2 set EnableASR3=%3,MustClickRunASR3=%4 where DongleID='%5'", 5},
    {Statement::ChooseInputMethod,
     "update %1.%2 set EnableASR3=%3,MustClickRunASR3=%4,UseASR3Index=%5 where DongleID='%6'", 6},
    {Statement::ChooseInputMethodAtQuota,
     "update %1.%2 set EnableASR3=%3,MustClickRunASR3=%4,UseASR3Index=%5,CurrentVersion=%6,"
     "CurrentSubVer='%7' where DongleID='%8'",
     8},
    {Statement::ReadInputMethod, "select * from %1.%2 where ASR3Index=%3", 3},
    {Statement::WriteMustClick, "update %1.%2 set MustClickRunASR3=%3 where DongleID='%4'", 4},
    {Statement::WriteInputMethodDownload, "update %1.%2 set EnableThirdpatyVoiceInput=%3 where DongleID='%4'",
     4},

    {Statement::CountBaidu,
     "update %1.%2 set BDSR1DUsedQuantity=%3,LatestLoginTime='%4',CurrentVersion=%5,CurrentSubVer='%6' "
     "where DongleID='%7'",
     7},
    {Statement::CountTencent,
     "update %1.%2 set TXSR1DUsedQuantity=%3,LatestLoginTime='%4',CurrentVersion=%5,CurrentSubVer='%6' "
     "where DongleID='%7'",
     7},
    {Statement::CountXunFei,
     "update %1.%2 set XFSR1DUsedQuantity=%3,LatestLoginTime='%4',CurrentVersion=%5,CurrentSubVer='%6' "
     "where DongleID='%7'",
     7},
    {Statement::CountBaiduAtExit, "update %1.%2 set BDSR1DUsedQuantity=%3 where DongleID='%4'", 4},
    {Statement::CountTencentAtExit, "update %1.%2 set TXSR1DUsedQuantity=%3 where DongleID='%4'", 4},
    {Statement::CountXunFeiAtExit, "update %1.%2 set XFSR1DUsedQuantity=%3 where DongleID='%4'", 4},

    {Statement::KeepDay, "update %1.%2 set LatestLoginTime='%3'  where DongleID='%4'", 4},
    {Statement::BeginDay,
     "update %1.%2 set BDSR1DUsedQuantity=%3, TXSR1DUsedQuantity=%4,XFSR1DUsedQuantity=%5,"
     "BDFY1MUsedQuantity=%6,LastLoginDateTime='%7'  where DongleID='%8'",
     8},

    {Statement::XunFeiAccounts, "select F0,F1,F2 from %1.wxfasrid where F3 = 1", 1},
    {Statement::XunFeiMinorAccounts, "select F0,F1,F2 from %1.wxfasrid where F3 = 1 and F4 = 1", 1},
    {Statement::BaiduFastAccounts, "select F0,F1,F2 from %1.bdasrid where F3 = 1 and sbj = 1", 1},
    {Statement::BaiduMandarinAccounts, "select F0,F1,F2 from %1.bdasrid where F3 = 1 and zbb = 1", 1},
    {Statement::BaiduCantoneseAccounts, "select F0,F1,F2 from %1.bdasrid where F3 = 1 and yby = 1", 1},
    {Statement::BaiduEnglishAccounts, "select F0,F1,F2 from %1.bdasrid where F3 = 1 and nbe = 1", 1},
    {Statement::BaiduSichuaneseAccounts, "select F0,F1,F2 from %1.bdasrid where F3 = 1 and chbs = 1", 1},
    {Statement::BaiduTtsAccounts, "select F0,F1,F2 from %1.bdasrttsid where F3 = 1", 1},
    {Statement::BaiduTranslateAccounts, "select F0,F1 from %1.bdasrfyid where F2 = 1", 1},
};

constexpr bool rowsStandInOrder()
{
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        if (rows[i].id != static_cast<Statement>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(rowsStandInOrder() && rows[std::size(rows) - 1].id == Statement::BaiduTranslateAccounts,
              "one row for each statement, in the order of the enumeration");

} // namespace

const StatementRow &statementRow(Statement id)
{
    return rows[static_cast<std::size_t>(id)];
}

QString statementText(Statement id, const QStringList &values)
{
    const StatementRow &row = statementRow(id);
    if (values.size() != row.values) {
        qWarning("Backend: statement %d takes %d values, not %d", static_cast<int>(id), row.values,
                 values.size());
        return {};
    }
    // Not QString::arg one by one: a value that holds a "%4" of its own would be filled in turn.
    const QString text = QString::fromLatin1(row.text);
    QString filled;
    filled.reserve(text.size() + 128);
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('%') && i + 1 < text.size() && text.at(i + 1).isDigit()) {
            ++i;
            filled += values.at(text.at(i).digitValue() - 1);
        } else {
            filled += text.at(i);
        }
    }
    return filled;
}

QString deviceStatement(Statement id, const QString &schema, const QStringList &values)
{
    return statementText(id, QStringList{schema, QLatin1String(DeviceTable)} + values);
}

} // namespace mevo
