// The backend as the main window uses it.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "device/DeviceReports.h"
#include "engines/CredentialStore.h"
#include "engines/EngineSelection.h"
#include "service/LocalAddress.h"
#include "service/ProductRecord.h"
#include "service/Statements.h"
#include "service/WebApi.h"
#include "service/WebApiReply.h"
#include "service/WebApiRequest.h"
#include "service/WebCipher.h"

#include <QDebug>
#include <QNetworkInterface>

namespace {

constexpr int withoutWaiting = 1;
constexpr int exitTimeoutMs = 2000;

/// Columns of the device record that say what the device sees.
struct PermissionColumn
{
    const char *column;
    bool EnginePermissions::*member;
};

constexpr PermissionColumn permissionColumns[] = {
    {"ShowASR3Custom", &EnginePermissions::ShowASR3Custom},
    {"ShowXunFeiInputMethod", &EnginePermissions::ShowXunFeiInputMethod},
    {"ShowSogouInputMethod", &EnginePermissions::ShowSogouInputMethod},
    {"ShowBaiduI", &EnginePermissions::ShowBaiduI},
    {"ShowTXI", &EnginePermissions::ShowTXI},
    {"ShowXFWebApi", &EnginePermissions::ShowXFWebApi},
    {"ShowASR3UI", &EnginePermissions::ShowASR3UI},
    {"ShowTecentZhDialect", &EnginePermissions::ShowTecentZhDialect},
    {"ShowBdFtPTHI", &EnginePermissions::ShowBdFtPTHI},
    {"ShowBdSdPTHI", &EnginePermissions::ShowBdSdPTHI},
    {"ShowBdYYI", &EnginePermissions::ShowBdYYI},
    {"ShowBdSCHI", &EnginePermissions::ShowBdSCHI},
    {"ShowBdEnI", &EnginePermissions::ShowBdEnI},
};

/// Columns that choose an engine, count its use, or show one of its lists.
struct NumberColumn
{
    const char *column;
    int EngineState::*member;
};

constexpr NumberColumn numberColumns[] = {
    {"UseBDAPIPara", &EngineState::UseBDAPIPara},
    {"UseXFSDKPara", &EngineState::UseXFSDKPara},
    {"UseTXAPIPara", &EngineState::UseTXAPIPara},
    {"UseXFWAPIPara", &EngineState::UseXFWAPIPara},
    {"UseBDFstPara", &EngineState::UseBDFstPara},
    {"UseXFWPIDWAPara", &EngineState::UseXFWPIDWAPara},
    {"UseASR3Index", &EngineState::UseASR3Index},
    {"ShowXFDialect", &EngineState::ShowXFDialect},
    {"ShowXFSmallLan", &EngineState::ShowXFSmallLan},
    {"BDSR1DUsedQuantity", &EngineState::BDSR1DUsedQuantity},
    {"BDSR1DMaxUsageQuantity", &EngineState::BDSR1DMaxUsageQuantity},
    {"TXSR1DUsedQuantity", &EngineState::TXSR1DUsedQuantity},
    {"TXSR1DMaxUsageQuantity", &EngineState::TXSR1DMaxUsageQuantity},
    {"XFSR1DUsedQuantity", &EngineState::XFSR1DUsedQuantity},
    {"XFSR1DMaxUsageQuantity", &EngineState::XFSR1DMaxUsageQuantity},
};

} // namespace

int MainWindow::ProbeBackend()
{
    return m_webApi->ProbeBackend();
}

QString MainWindow::RunBackendSql(const QString &sql, int timeoutMs)
{
    return m_webApi->RunBackendSql(this, sql, ServerUrl, timeoutMs);
}

bool MainWindow::ReadProductRecord()
{
    const auto key = mevo::productKey(deviceOpen() ? DongleID : QLatin1String(mevo::kNoDeviceIdentity));
    if (!IsOnline || !key) { // also with a main address that does not answer: there are two more
        return false;
    }
    const auto reply =
        m_webApi->RunWithFailover(mevo::statementText(mevo::Statement::ReadProductRecord,
                                                      {SchemaName, key->customIndex, key->productionIndex}),
                                  mevo::ProductRecordTimeouts);
    if (!reply || hasTornDown()) {
        return false; // the wait may have let an exit through
    }
    const auto content = mevo::unwrapReply(*m_cipher, *reply);
    if (!content || content->items != 1 || content->rows.empty()) {
        qWarning() << "Product record: the backend has none for this product";
        return false;
    }
    m_productRead = true;
    const int interval = VoiceIntervalTime;
    {
        mevo::SettingsFile settings;
        for (const mevo::ProductSetting &setting : applyProductRecord(*this, content->rows.front())) {
            settings.setValue(setting.key, setting.value);
        }
    }
    if (interval != VoiceIntervalTime && HeartbeatTimerId != 0) {
        m_device->StartHeartbeat();
    }
    m_credentials->RefreshCredentialFiles();
    return !hasTornDown();
}

void MainWindow::ReadServerInfo()
{
    if (!IsOnline || !BackendReachable || !(NoDeviceMode || DeviceConnected) || DongleID.isEmpty()) {
        return;
    }
    const int choice = m_languageChoice;
    const auto reply = m_webApi->RunWithFailover(
        mevo::deviceStatement(mevo::Statement::ReadDeviceRecord, SchemaName, {DongleID}),
        mevo::DeviceRecordTimeouts);
    if (!reply || m_recorder == nullptr) {
        return;
    }
    BackendReachable = true;
    const auto content = mevo::unwrapReply(*m_cipher, *reply);
    if (!content || content->items != 1 || content->rows.empty()) {
        qWarning() << "Device record: the backend has no row for this receiver";
        return;
    }
    const QJsonObject &row = content->rows.front();
    const int storedDialect = ShowXFDialect;
    const int storedSmallLan = ShowXFSmallLan;
    for (const PermissionColumn &column : permissionColumns) {
        this->*column.member =
            mevo::columnNumber(row, QLatin1String(column.column), this->*column.member ? 1 : 0) != 0;
    }
    for (const NumberColumn &column : numberColumns) {
        this->*column.member = mevo::columnNumber(row, QLatin1String(column.column), this->*column.member);
    }
    EnableASR3 = mevo::columnNumber(row, QStringLiteral("EnableASR3"), EnableASR3 ? 1 : 0) != 0;
    IPRecord = mevo::columnText(row, QStringLiteral("IPRecord"));
    ShowPowerLevel = mevo::columnNumber(row, QStringLiteral("ShowPowerLevel")) != 0;
    ShowPowerLow = mevo::columnNumber(row, QStringLiteral("ShowPowerLow")) != 0;
    AutoUpdateSwitch = mevo::columnNumber(row, QStringLiteral("AutoUpdateSwitch"), AutoUpdateSwitch);
    ManualUpdateSwitch = mevo::columnNumber(row, QStringLiteral("ManualUpdateSwitch"), ManualUpdateSwitch);
    ForceUpdate = mevo::columnNumber(row, QStringLiteral("ForceUpdate"), ForceUpdate);
    qInfo() << "The device record is applied";
    if (choice != m_languageChoice) {
        return; // the user has chosen meanwhile, and the record was read before it heard of that
    }
    for (const mevo::EngineChange &change :
         mevo::applyRecordSelectors(*this, *m_recorder, isXpClass(), storedDialect, storedSmallLan)) {
        carryOut(change);
    }
}

void MainWindow::reportAddress()
{
    if (!DeviceConnected || !BackendReachable || DongleID.isEmpty()) {
        return;
    }
    IPRecord = mevo::localAddress(QNetworkInterface::allAddresses());
    m_webApi->WriteDeviceColumn(QStringLiteral("IPRecord='%1'").arg(IPRecord));
}

void MainWindow::settleFirstArrival()
{
    if (m_recorder == nullptr || !FirstRunApp || !IsOnline || !DeviceConnected || !EnableASR3) {
        return;
    }
    FirstRunApp = false;
    carryOut(mevo::chooseAtFirstArrival(*this, *m_recorder));
    if (!BaiDuNoStreamApi_FastVersion) {
        runBackendSql(mevo::deviceStatement(mevo::Statement::FirstRunBaidu, SchemaName,
                                            {QStringLiteral("0"), DongleID}));
    }
}

void MainWindow::updateRecCountsTimerOut()
{
    if (!BackendReachable || CountersLocked || KeyDownHeld || m_recorder == nullptr) {
        return;
    }
    const QString now = m_platform.time->now().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    const auto flush = [&](bool selected, mevo::Statement statement, int count) {
        if (selected) {
            RunBackendSql(mevo::deviceStatement(statement, SchemaName,
                                                {QString::number(count), now, QString::number(CurrentVersion),
                                                 m_buildStamp, DongleID}),
                          withoutWaiting);
        }
    };
    flush(m_recorder->BaiDuNoStreamApi, mevo::Statement::CountBaidu, BDSR1DUsedQuantity);
    flush(m_recorder->UseTXASRApi, mevo::Statement::CountTencent, TXSR1DUsedQuantity);
    flush(m_recorder->UseXunFeiWebApi, mevo::Statement::CountXunFei, XFSR1DUsedQuantity);
}

void MainWindow::sendUsageOnExit(bool withTencent)
{
    if (m_recorder == nullptr || !BackendReachable) {
        return;
    }
    if (DeviceConnected) {
        updateRecCountsTimerOut(); // before the report that switches the microphone off
    }
    const auto write = [this](mevo::Statement statement, int count) {
        RunBackendSql(mevo::deviceStatement(statement, SchemaName, {QString::number(count), DongleID}),
                      exitTimeoutMs);
    };
    if (m_recorder->BaiDuNoStreamApi) {
        write(mevo::Statement::CountBaiduAtExit, BDSR1DUsedQuantity);
    }
    if (m_recorder->UseXunFeiWebApi) {
        write(mevo::Statement::CountXunFeiAtExit, XFSR1DUsedQuantity);
    }
    if (withTencent && m_recorder->UseTXASRApi) {
        write(mevo::Statement::CountTencentAtExit, TXSR1DUsedQuantity);
    }
    m_webApi->drain(exitTimeoutMs);
}
