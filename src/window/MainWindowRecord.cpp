// The device record as the main window reads it and carries out what it asks for.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "base/WebPage.h"
#include "commands/UrlOpener.h"
#include "engines/Allowance.h"
#include "engines/CredentialStore.h"
#include "engines/EngineSelection.h"
#include "engines/RandomInRange.h"
#include "service/CountingDay.h"
#include "service/RecordAddresses.h"
#include "service/RecordColumns.h"
#include "service/RecordVersion.h"
#include "service/Statements.h"
#include "service/WebApi.h"
#include "service/WebApiReply.h"
#include "service/WebCipher.h"
#include "ui/Ask.h"
#include "window/InputMethods.h"

#include <QDebug>
#include <QJsonObject>
#include <QTimer>
#include <QtGlobal>

#include <algorithm>
#include <utility>

namespace {
constexpr int createTimeoutMs = 2000;
/// Counts the restarts for other servers, handed on from program to program: two servers that name each other
/// must not keep it starting for ever.
constexpr char serverMoves[] = "MEVO_SERVER_MOVES";
constexpr int mostServerMoves = 3;
constexpr int versionBoxLookMs = 200;
} // namespace

void MainWindow::ReadServerInfo()
{
    if (!IsOnline || !BackendReachable || !(NoDeviceMode || DeviceConnected) || DongleID.isEmpty() ||
        m_leaving) {
        return;
    }
    RecordReading reading{++m_recordReadings, m_link, m_languageChoice};
    const bool whole = readDeviceRecord(reading) && goesOn(reading);
    refreshSettings();
    if (whole) {
        makeGoodAccountLists();
    }
}

void MainWindow::readRecordAtStart()
{
    ReadServerInfo();
    settleFirstArrival();
}

bool MainWindow::goesOn(const RecordReading &reading) const
{
    return !isLeaving() && !m_leaving && m_recorder != nullptr && reading.link == m_link &&
           reading.number >= m_answeredRecordReading;
}

/// False when nothing more is to be done for this reading.
bool MainWindow::readDeviceRecord(RecordReading &reading)
{
    tellUntoldColumns();
    const bool choiceTold = goesOn(reading) && tellUntoldChoice();
    if (!goesOn(reading)) {
        return false;
    }
    reading.choice = m_languageChoice; // what has been chosen until now has been told, or is still to be
    const int sentAt = m_choiceMarks.now();
    const auto reply = [this] {
        const mevo::DayCounts::Reading counts(dayCounts);
        return m_webApi->RunWithFailover(
            mevo::deviceStatement(mevo::Statement::ReadDeviceRecord, SchemaName, {DongleID}),
            mevo::DeviceRecordTimeouts);
    }();
    if (!goesOn(reading)) {
        return false;
    }
    if (!reply) {
        return true;
    }
    BackendReachable = true;
    m_answeredRecordReading = reading.number;
    const auto content = mevo::unwrapReply(*m_cipher, *reply);
    if (!content || !content->counted) {
        return false;
    }
    if (content->items != 1) {
        createDeviceRecord(reading);
        return true;
    }
    if (content->rows.empty()) {
        qWarning() << "Device record: the backend announces a row and sends none";
        return true;
    }
    QJsonObject row = content->rows.front();
    for (const QString &column : m_choiceMarks.since(sentAt)) {
        row.remove(column); // it may have been read before the user's choice reached it
    }
    const mevo::RecordChoices untold = mevo::untoldChoices(mevo::SettingsFile());
    for (auto each = untold.cbegin(); each != untold.cend(); ++each) {
        row.remove(each.key());
    }
    if (moveToOtherServers(row)) {
        return false;
    }
    applyDeviceRecord(row, choiceTold, reading);
    return true;
}

void MainWindow::keepUntold(const mevo::RecordChoices &choices)
{
    mevo::SettingsFile settings;
    mevo::keepUntold(choices, settings);
    m_choiceMarks.mark(choices.keys());
}

/// The backend has answered: readings that were sent before may still show what was there until then.
void MainWindow::dropTold(const mevo::RecordChoices &choices)
{
    mevo::SettingsFile settings;
    mevo::dropTold(choices, settings);
    m_choiceMarks.mark(choices.keys());
}

void MainWindow::tellRecord(const mevo::RecordChoices &choices)
{
    keepUntold(choices);
    QTimer::singleShot(0, this, &MainWindow::tellUntoldColumns);
}

void MainWindow::tellRecordNow(const mevo::RecordChoices &choices, const QString &statement)
{
    keepUntold(choices);
    bool asked = false;
    m_columnsTold.run([&] {
        if (std::exchange(asked, true)) {
            return tellColumnsOnce();
        }
        tellColumns(choices, statement);
        return true;
    });
}

void MainWindow::tellMethodChoice(mevo::Statement statement)
{
    QStringList values{QString::number(int(EnableASR3)), QString::number(int(MustClickRunASR3)),
                       QString::number(UseASR3Index)};
    if (statement == mevo::Statement::ChooseInputMethodAtQuota) {
        values += {QString::number(CurrentVersion), m_buildStamp};
    }
    tellRecordNow({{QStringLiteral("EnableASR3"), int(EnableASR3)},
                   {QStringLiteral("MustClickRunASR3"), int(MustClickRunASR3)},
                   {QStringLiteral("UseASR3Index"), UseASR3Index}},
                  mevo::deviceStatement(statement, SchemaName, values + QStringList(DongleID)));
}

/// What is chosen during its wait is told by the next statement, and what fails before the next reading.
void MainWindow::tellUntoldColumns()
{
    m_columnsTold.run([this] { return tellColumnsOnce(); });
}

/// False when there is nothing to tell.
bool MainWindow::tellColumnsOnce()
{
    const mevo::RecordChoices choices = mevo::untoldChoices(mevo::SettingsFile());
    if (choices.isEmpty() || isLeaving()) {
        return false;
    }
    tellColumns(choices, mevo::deviceStatement(mevo::Statement::WriteDeviceColumns, SchemaName,
                                               {mevo::assignments(choices), DongleID}));
    return true;
}

void MainWindow::tellColumns(const mevo::RecordChoices &choices, const QString &statement)
{
    if (tellKnownRecord(statement)) {
        dropTold(choices);
    }
}

void MainWindow::createDeviceRecord(const RecordReading &reading)
{
    qInfo() << "Device record: the backend has none for this receiver, and is told to make one";
    const int cutOff = m_webApi->cutOffCount();
    const QString reply =
        RunBackendSql(mevo::deviceStatement(mevo::Statement::CreateDeviceRecord, SchemaName,
                                            {DongleID, recordTime(), QString::number(CurrentVersion),
                                             m_buildStamp, QStringLiteral("10")}),
                      createTimeoutMs);
    if (!goesOn(reading) || !IsOnline || m_webApi->cutOffCount() != cutOff) {
        return; // a start that has no time left comes back to it, and so does a network that has gone
                // meanwhile
    }
    if (reply.isEmpty()) {
        m_leaving = true;
        whenStarted([this] {
            mevo::ask(this, {tr("错误"),
                             tr("初始化数据错误，请升级安装最新版本软件或联系客服解决！"),
                             {tr("确定")},
                             true});
            exitByItself();
        });
        return;
    }
    mevo::applyNewRecord(*this);
    // What the user has chosen stands above the defaults of a new row.
    QJsonObject chosen;
    const mevo::RecordChoices untold = mevo::untoldChoices(mevo::SettingsFile());
    for (auto each = untold.cbegin(); each != untold.cend(); ++each) {
        chosen.insert(each.key(), QString::number(each.value()));
    }
    if (!chosen.isEmpty()) {
        mevo::applyRecordColumns(*this, chosen, isXpClass());
    }
    dayCounts.recordRead();
    mevo::unmarkAllowances(*this);
    tellAgain();
    unlockCounters();
    if (InitDone) {
        BuildAsrLanMenu(false, false);
    }
}

/// What has been told before the record was known to be there is told once more.
void MainWindow::tellAgain()
{
    QTimer::singleShot(0, this, [this] {
        tellUntoldColumns();
        if (isEngineUntold() && !isLeaving() && m_recorder != nullptr) {
            tellEngine();
        }
    });
}

/// The record names other servers: they are stored, and the program starts anew to use them. False when it
/// stays with those that it has.
bool MainWindow::moveToOtherServers(const QJsonObject &row)
{
    mevo::SettingsFile settings;
    const auto changes = mevo::changedAddresses(row, [&](const QString &key) {
        return mevo::decipherUnsizedField(*m_cipher, settings.value(key).toString());
    });
    for (const mevo::AddressChange &change : changes) {
        settings.setValue(change.key, mevo::encipherField(*m_cipher, change.text));
    }
    if (changes.isEmpty()) {
        qunsetenv(serverMoves); // these are the right ones: a later change is a first one again
        return false;
    }
    if (!settings.save()) {
        // A start that reads the old addresses would end here again, and again.
        qWarning() << "Device record: its server addresses cannot be stored; the program stays";
        return false;
    }
    const int moves = qEnvironmentVariableIntValue(serverMoves);
    if (moves >= mostServerMoves) {
        qWarning() << "Device record: other servers once more; they are stored for the next start";
        return false;
    }
    qInfo() << "Device record: other servers; the program starts anew";
    if (m_tray != nullptr) {
        message(tr("软件已设置成功，将自动退出，请重新启动软件！"), mevo::MessageIcon::Information, 2000);
    }
    m_leaving = true;
    whenStarted([this, moves] {
        whenQuiet("Device record", [this, moves] {
            qputenv(serverMoves, QByteArray::number(moves + 1));
            m_exitCode = restartCode;
            exitByItself();
        });
    });
    return true;
}

/// `choiceTold`: the backend has heard of the language that the user has chosen before the reading.
void MainWindow::applyDeviceRecord(const QJsonObject &row, bool choiceTold, const RecordReading &reading)
{
    const int storedDialect = ShowXFDialect;
    const int storedSmallLan = ShowXFSmallLan;
    const bool inputMethod = LocalEnableASR3;
    const mevo::RecordEffects effects = mevo::applyRecordColumns(*this, row, isXpClass());
    if (!dayCounts.isRead()) {
        dayCounts.recordRead();
        tellAgain();
    }
    {
        mevo::SettingsFile settings;
        for (const mevo::RecordSetting &setting : effects.settings) {
            settings.setValue(setting.key, setting.value);
        }
    }
    mevo::unmarkAllowances(*this);
    qInfo() << "The device record is applied";
    carryOut(mevo::leaveHiddenDialect(*this));
    const bool userHasChosen = !choiceTold || reading.choice != m_languageChoice ||
                               m_inputMethods->isChoicePending(); // of which the record hears later
    if (userHasChosen) {
        LocalEnableASR3 = inputMethod;
    }
    for (const mevo::EngineChange &change : mevo::applyRecordSelectors(
             *this, *m_recorder, isXpClass(), storedDialect, storedSmallLan, userHasChosen)) {
        carryOut(change);
        if (!goesOn(reading)) {
            return;
        }
    }
    if (InitDone) {
        SetupAsr3();
        if (!goesOn(reading)) {
            return;
        }
        if (effects.menuChanged) {
            BuildAsrLanMenu(false, false);
        }
    }
    applyRecordVersion(row);
    if (!goesOn(reading)) {
        return;
    }
    if (row.contains(QStringLiteral("LastLoginDateTime"))) {
        settleCountingDay();
    }
    if (goesOn(reading)) {
        unlockCounters();
    }
}

void MainWindow::applyRecordVersion(const QJsonObject &row)
{
    switch (mevo::recordVersion(row, CurrentVersion)) {
    case mevo::RecordVersion::Current:
        break;
    case mevo::RecordVersion::Offer:
        sayThatVersionIsOld(tr("已有最新版本软件，请下载更新到最新版本！"), false);
        break;
    case mevo::RecordVersion::Page:
        whenStarted([this] { openWebPage(DownloadDrvWeb); });
        break;
    case mevo::RecordVersion::Required:
        sayThatVersionIsOld(tr("已有最新版本，请下载更新软件后再使用！"), true);
        break;
    case mevo::RecordVersion::LaterPage:
        whenStarted(
            [this] { QTimer::singleShot(std::max(0, VWebIntervalTime), this, &MainWindow::Run003Timeout); });
        break;
    case mevo::RecordVersion::WriteOwn:
        runBackendSql(mevo::deviceStatement(mevo::Statement::WriteCurrentVersion, SchemaName,
                                            {QString::number(CurrentVersion), DongleID}));
        break;
    }
}

void MainWindow::sayThatVersionIsOld(const QString &text, bool ends)
{
    whenStarted([this, text, ends] {
        if (isLeaving()) {
            return;
        }
        if (m_versionBoxOpen) { // the record may be read again while the box stands
            if (ends) {         // that of an offer, perhaps, and now it is none
                QTimer::singleShot(versionBoxLookMs, this,
                                   [this, text, ends] { sayThatVersionIsOld(text, ends); });
            }
            return;
        }
        m_versionBoxOpen = true;
        qInfo("Device record: a newer version is %s", ends ? "demanded, and the program ends" : "offered");
        mevo::ask(this, {tr("版本更新"), text, {tr("确定")}, true});
        m_versionBoxOpen = false;
        if (isLeaving()) {
            return; // which has closed the box
        }
        openWebPage(DownloadDrvWeb);
        if (ends) {
            exitByItself();
        }
    });
}

void MainWindow::Run003Timeout()
{
    if (RandomInRange(1, VWebSeed) == 1) {
        openWebPage(VWeb);
    }
}

void MainWindow::openWebPage(const QString &address)
{
    const QUrl page = mevo::webPage(address);
    if (page.isEmpty()) {
        qInfo() << "The record names no page to open";
        return;
    }
    mevo::openUrl(page, *m_platform.processes);
}

void MainWindow::settleCountingDay()
{
    const QString now = recordTime();
    if (!mevo::isDayOver(LastLoginDateTime, m_platform.time->now())) {
        runBackendSql(mevo::deviceStatement(mevo::Statement::KeepDay, SchemaName, {now, DongleID}));
        return;
    }
    if (!BackendReachable) {
        return;
    }
    qInfo() << "Device record: a new day of counting";
    CountersLocked =
        true; // nothing comes between this statement and what has not been told yet, which follows
    for (const mevo::CountColumn column : mevo::countColumns) {
        m_webApi->supersedeCount(column, 0);
    }
    mevo::beginAllowanceDay(*this);
    LastLoginDateTime = now;
    runBackendSql(mevo::deviceStatement(
        mevo::Statement::BeginDay, SchemaName,
        {QString::number(BDSR1DReadQuantity), QString::number(TXSR1DReadQuantity),
         QString::number(XFSR1DReadQuantity), QString::number(BDFY1MReadQuantity), now, DongleID}));
}

/// Lists that no file holds are fetched, and an account is drawn where there was none to draw.
void MainWindow::makeGoodAccountLists()
{
    if (!m_credentials->FetchMissingCredentialFiles() || isLeaving()) {
        return;
    }
    if (BaiduClientId.isEmpty()) {
        m_credentials->LoadCurrentBaiduCredentials();
    }
    if (XunFeiAppId.isEmpty()) {
        m_credentials->LoadXunFeiCredentials();
    }
    if (XunFeiMinorAppId.isEmpty()) {
        m_credentials->LoadXunFeiMinorCredentials();
    }
    if (BaiduTranslateAppId.isEmpty()) {
        m_credentials->LoadBaiduTranslateCredentials();
    }
    if (BaiduTtsClientId.isEmpty()) {
        m_credentials->LoadBaiduTtsCredentials();
    }
}

void MainWindow::whenStarted(std::function<void()> action)
{
    if (InitDone) {
        QTimer::singleShot(0, this, std::move(action));
    } else {
        m_onceStarted.push_back(std::move(action));
    }
}

QString MainWindow::recordTime() const
{
    return m_platform.time->now().toString(QLatin1String(mevo::recordTimeFormat));
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
