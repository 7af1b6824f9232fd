#pragma once

#include <QString>
#include <QStringList>

namespace mevo {

/// Table of the device records, the second value of most statements.
constexpr char DeviceTable[] = "device_serialid";

/// Every statement that the program sends to the backend.
enum class Statement {
    ReadDeviceRecord,
    ReadProductRecord,
    CreateDeviceRecord,
    WriteDeviceColumns,
    WriteCurrentVersion,
    FirstRunTencent,
    FirstRunBaidu,
    UseBaidu,
    UseTencent,
    UseXunFei,
    UseInputMethod,
    ChooseInputMethod,
    ChooseInputMethodAtQuota,
    ReadInputMethod, ///< schema, one of the tables of input methods, index
    WriteMustClick,
    WriteInputMethodDownload,
    CountBaidu,
    CountTencent,
    CountXunFei,
    CountBaiduAtExit,
    CountTencentAtExit,
    CountXunFeiAtExit,
    KeepDay,
    BeginDay,
    XunFeiAccounts,
    XunFeiMinorAccounts,
    BaiduFastAccounts,
    BaiduMandarinAccounts,
    BaiduCantoneseAccounts,
    BaiduEnglishAccounts,
    BaiduSichuaneseAccounts,
    BaiduTtsAccounts,
    BaiduTranslateAccounts
};

/// One statement: its text, in which %1 is the schema and, but for the account lists and the product
/// record, %2 the table; further values follow in the order told.
struct StatementRow
{
    Statement id;
    const char *text;
    int values; ///< how many the text takes, schema and table included
};

/// The row of a statement.
const StatementRow &statementRow(Statement id);

/// Fills a statement with its values, schema first. Values are not escaped: they are the program's own.
/// A wrong number of values gives an empty text and a log line, so that nothing half-filled is run.
QString statementText(Statement id, const QStringList &values);

/// statementText() of a device record statement: schema, `device_serialid`, then `values`.
QString deviceStatement(Statement id, const QString &schema, const QStringList &values);

} // namespace mevo
