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
    if (!reply || isLeaving()) {
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
    return !isLeaving();
}

void MainWindow::reportAddress()
{
    if (!DeviceConnected || !BackendReachable || DongleID.isEmpty()) {
        return;
    }
    IPRecord = mevo::localAddress(QNetworkInterface::allAddresses());
    m_webApi->WriteDeviceColumn(QStringLiteral("IPRecord='%1'").arg(IPRecord));
}

void MainWindow::updateRecCountsTimerOut()
{
    if (!BackendReachable || CountersLocked || KeyDownHeld || m_recorder == nullptr) {
        return;
    }
    const QString now = recordTime();
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
    checkDaysAllowance();
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
