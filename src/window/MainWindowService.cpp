// The backend as the main window uses it.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "device/DeviceReports.h"
#include "engines/CredentialStore.h"
#include "engines/EngineSelection.h"
#include "service/CountWrites.h"
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

constexpr int exitTimeoutMs = 2000;
constexpr int recordLaterMs = 30000;

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

bool MainWindow::mayFlush() const
{
    return BackendReachable && !CountersLocked && !KeyDownHeld && m_recorder != nullptr;
}

void MainWindow::updateRecCountsTimerOut()
{
    readRecordLater();
    if (!mayFlush()) {
        return;
    }
    if (m_recorder->BaiDuNoStreamApi) {
        flushCounter(mevo::CountColumn::Baidu);
    }
    if (m_recorder->UseTXASRApi) {
        flushCounter(mevo::CountColumn::Tencent);
    }
    if (m_recorder->UseXunFeiWebApi) {
        flushCounter(mevo::CountColumn::XunFei);
    }
    checkDaysAllowance();
}

void MainWindow::flushCounter(mevo::CountColumn column)
{
    m_webApi->WriteCount(mevo::countWrite(column, *this, recordTime(), m_buildStamp));
}

void MainWindow::flushUntoldCounters()
{
    if (!mayFlush()) {
        return;
    }
    for (const mevo::CountColumn column : mevo::countColumns) {
        if (dayCounts.isUntold(column)) {
            flushCounter(column);
        }
    }
}

void MainWindow::unlockCounters()
{
    CountersLocked = false;
    flushUntoldCounters();
}

void MainWindow::readRecordLater()
{
    if (!CountersLocked || !BackendReachable || DongleID.isEmpty() || m_recordLater) {
        return;
    }
    m_recordLater = true;
    m_platform.time->callAfter(recordLaterMs, this, [this] { readRecordInQuiet(); });
}

/// A record may show a box, change the engine and end the program: it waits until nobody speaks, however long
/// that takes.
void MainWindow::readRecordInQuiet()
{
    if (!CountersLocked || !BackendReachable || isLeaving()) {
        m_recordLater = false;
        return;
    }
    if (!isQuiet()) {
        QTimer::singleShot(quietLookMs, this, &MainWindow::readRecordInQuiet);
        return;
    }
    m_recordLater = false;
    qInfo() << "Device record: it has not been read yet, once more";
    ReadServerInfo();
}

void MainWindow::sendUsageOnExit(bool withTencent)
{
    if (m_recorder == nullptr || !BackendReachable) {
        return;
    }
    if (dayCounts.isRead()) { // else what the backend holds is not known, and would be written over
        writeUsageOnExit(withTencent);
    }
    m_webApi->drain(exitTimeoutMs);
}

void MainWindow::writeUsageOnExit(bool withTencent)
{
    CountersLocked = false; // the rest of the record may be being applied yet
    if (DeviceConnected) {
        updateRecCountsTimerOut(); // before the report that switches the microphone off
    }
    m_webApi->overtakeCounts();
    const auto write = [this](mevo::CountColumn column, mevo::Statement statement) {
        const int count = dayCounts.used(column);
        m_webApi->supersedeCount(column, count);
        RunBackendSql(
            mevo::deviceStatement(statement, SchemaName, {QString::number(count), dayCounts.receiverId()}),
            exitTimeoutMs);
    };
    if (m_recorder->BaiDuNoStreamApi) {
        write(mevo::CountColumn::Baidu, mevo::Statement::CountBaiduAtExit);
    }
    if (m_recorder->UseXunFeiWebApi) {
        write(mevo::CountColumn::XunFei, mevo::Statement::CountXunFeiAtExit);
    }
    if (withTencent && m_recorder->UseTXASRApi) {
        write(mevo::CountColumn::Tencent, mevo::Statement::CountTencentAtExit);
    }
}
