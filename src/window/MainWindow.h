#pragma once

#include "audio/RecorderHost.h"
#include "base/ServiceEndpoints.h"
#include "base/StartClock.h"
#include "device/DeviceChanges.h"
#include "engines/EngineHost.h"
#include "engines/XunFeiHost.h"
#include "platform/Platform.h"
#include "service/ChoiceMarks.h"
#include "service/OneAtATime.h"
#include "service/UntoldColumns.h"
#include "session/ResultPipeline.h"
#include "session/RunFigures.h"
#include "session/SessionMachine.h"
#include "session/SessionResults.h"
#include "state/MainState.h"
#include "ui/TipWindowHost.h"
#include "window/ExitWish.h"
#include "window/SessionHands.h"
#include "window/TranslationHands.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QNetworkReply>
#include <QPixmap>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QTranslator>

#include <deque>
#include <functional>
#include <map>
#include <memory>

class AudioRecorder;
class CADShowDlg;
class CPatialResultDialog;
class DeviceCommands;
class GetHIDDataThread;
class isOnl;
class MicTipDialog;
class MyUpdateChecker;
class QAction;
class QMenu;
class QNetworkAccessManager;
class QPushButton;
class QToolTips;
class QWebSocket;
class CommandWordDialog;
class UndeliveredDialog;
class WebCipher;

namespace mevo {
enum class Statement;
class AccountHands;
class BaiduTokens;
class CommandMatcher;
class FirstStartHands;
class InputMethodHands;
class InputMethods;
class InstanceCalls;
class PushChannel;
class SettingsHands;
class TencentSpeech;
class UndeliveredTexts;
struct UndeliveredText;
class UpdateHands;
class WebApi;
class CredentialStore;
class XunFeiStream;
enum class Engine;
struct EngineChange;
struct LanguageRow;
struct SettingWrite;
} // namespace mevo

namespace Relay_Speech {
class BaiduSpeech;
}

/// The centre of the program and its only visible face, the bar: owns the device thread, the recorder,
/// the dialogs, the tray icon and the timers, and carries out what the decisions of the subsystems say.
/// There is one; its construction and its exit run in fixed orders.
class MainWindow : public QMainWindow,
                   public MainState,
                   private RecorderHost,
                   private mevo::EngineHost,
                   private mevo::XunFeiHost,
                   private mevo::TipWindowHost
{
    Q_OBJECT

public:
    /// Starts the whole program on this platform, which must outlive the window. A step that fails does
    /// not stop the later ones.
    explicit MainWindow(mevo::Platform &platform, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// The one window, null before it has opened the device and after its end.
    static MainWindow *instance();

    /// What a start waits for services in all, in milliseconds: as long as nobody notices. What is late is
    /// asked again behind the bar, with its whole time.
    static inline int startWaitMs = 100;

    /// What an exit waits, in milliseconds, for a sentence that is being recognised or typed. What is late is
    /// kept as undelivered where it can be.
    static inline int exitWaitMs = 3000;

    /// What a leaving of the program's own waits, in milliseconds, for a quiet moment, and how often it
    /// looks.
    static inline int quietWaitMs = 30000;
    static inline int quietLookMs = 500;

    /// The updater has been started and waits for the end of this run: it is what starts the program next.
    bool isHandedOver() const { return m_handedOver; }

    /// An exit is being walked or over; nothing may be started any more.
    bool isLeaving() const { return m_exit.underWay(); }
    /// An exit that cannot be called back is under way, or will be in a moment.
    bool isGoingDown() const { return m_exit.certain(); }

    /// The door for other starts of the program.
    mevo::InstanceCalls &instanceCalls() { return *m_instanceCalls; }

    /// `QApplication::exit` code that starts the program anew.
    static constexpr int restartCode = 888;

    /// Types a text into the window that had the focus at the press; the numbers are not read.
    void Send2Screen(const QString &text, int, int);
    /// Opens a search for the text in every search engine that is switched on.
    void VoiceSearch(const QString &text);
    /// Runs the command of a word of the merged table; `sent` says that the word is on the screen already.
    /// False when no row acts on it.
    bool runCommandWord(const QString &word, bool sent, const mevo::SessionContext &session);
    /// Types one key combination through the receiver; nothing without one. `key` is a HID usage.
    void SendHWKey(bool shift, bool ctrl, bool alt, bool win, bool consumerKey, int key);
    /// Keeps the focused window as the target of this session's text.
    mevo::WindowId GetFocusWindow();
    /// The window of another program that has the focus; 0 when none has it.
    mevo::WindowId focusedElsewhere();
    /// Presses the keys that copy what is selected in the focused window; false when it takes none.
    bool SendCopyCombination();
    void CopyClipboardText();

    /// Rebuilds the language menu; `persistEngine` writes the engine to the device record,
    /// `setupInputMethod` lets a third-party row configure its input method.
    void BuildAsrLanMenu(bool persistEngine, bool setupInputMethod);
    /// Sets up the input method that is chosen, when one is: it is looked for, its key is seen to, and it is
    /// in force (`ThirdPartyActive`) once it is there. Waits for the service's row; what the user is asked is
    /// asked beside everything else, and the set-up goes on with the answer.
    void SetupAsr3();
    /// Reads which XunFei is installed and where.
    void ReadXunFeiIme();
    /// Brings the window of XunFei's input method up, where that is this program's to do.
    void StartXunFeiWindow();
    /// Sees to the hot key of XunFei's input method: 0 when it has been changed, -1 when nothing was
    /// possible, else 1.
    int ConfigureXunFeiIme();
    /// What is missing for the input method (numbered as LocalUseASR3Index) to be used, as the user is told;
    /// empty when its program is there or can be had.
    QString missingInputMethod(int index) const;
    /// Reads the device record and applies it; nothing without network, backend or device.
    void ReadServerInfo();
    /// Reads the record of this receiver's product and applies it; without a receiver, that of the product
    /// itself, which says whether the program may be used without one. False when it could not be had.
    bool ReadProductRecord();
    /// Asks the backend for its version. -1 when it does not answer.
    int ProbeBackend();
    /// Runs one statement on the backend; the reply's text, null when there is none.
    QString RunBackendSql(const QString &sql, int timeoutMs);
    /// Writes today's counts to the device record, without waiting, and looks whether the engine in force has
    /// used up its day.
    void updateRecCountsTimerOut();
    /// Now and then opens the page that the product record names.
    void Run003Timeout();

    /// How long texts have taken in this run, as a sentence for the user.
    QString runFigures() const;

    AudioRecorder *recorder() const { return m_recorder; }
    MicTipDialog *micTip() const { return m_micTip; }
    /// Path of the tray icon's picture.
    QString trayPicture() const { return m_trayPicture; }
    QMenu *languageMenu() const { return m_languageMenu; }
    mevo::AccountHands &accountHands() const { return *m_accounts; }

public Q_SLOTS:
    void ProcessResult(char *report);
    void showRecText(QString text);
    void CallMainFunctionSlot(int iFuncIndex);
    void CreateTransDlg();
    void pushBuutton_Translate_clicked();
    void on_exitAppAction();
    void RebootAppDelayTimeout();
    /// Opens the menu, for a user who sees neither bar nor tray icon and starts the program once more. It has
    /// the keyboard while it is open.
    void presentMenu();
    /// Leaves without a question, for a reason of the program's own.
    void exitByItself();

    void ConnectXFWebApi();
    void onXFWebApiConnected();
    void onXFWebApiDisconnected();
    void onXFWebApiMessageReceived(QString message);

    void onOrvWebSocketConnected();
    void onOrvWebSocketTextMessageReceived(QString message);

    void onEnterTimerAfterRec();
    void setWndTopMostTimeout();
    void TimeOutReadInitPara();
    void DownloadBaiduINIFileTimeout();
    void TimeOutGetPasteContent();
    void TimeOutDelaySendF2();
    /// Types the custom input method's key once. Kept as a slot that nothing in the program reaches.
    void TimeOutDelaySendCustom();
    void CheckUpdateTimeout();
    /// The same from the settings page: at its opening, and at a click on the notice that it shows.
    void CheckUpdateFromSettings(bool noticeClicked);
    /// From the settings page: XunFei's recognition without a network, always or not. The user is asked
    /// first.
    void UseXunFeiOfflineOnly(bool always);
    /// XunFei's own settings, and its handwriting.
    void OpenXunFeiInputSetting();
    void OpenXunFeiInputHW();
    /// Fetches the installer of the input method in force.
    void DownloadInputMethod();
    void showOnline(int state);
    void slot_requestFinished_NotRead(QNetworkReply *reply);
    void slot_TrayAndRightMenuAboutToHide();

    void pushButton_Mic_clicked();
    void pushButton_Close_clicked() {}
    void pushBuutton_VoiceType_clicked() {}
    void pushBuutton_VoiceKeypad_clicked();
    void pushBuutton_HandWriter_clicked();
    void pushBuutton_CommandWord_clicked();
    void pushBuutton_Setting_clicked();
    void on_closeASRFuncAction();
    void on_CancelAction();
    void on_ShowHorizontalOrVertical();
    void on_showMainAction();
    void on_DefaultWinPostion();
    void on_aboutMainAction();
    void on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason reason);
    void trigerAllAsrLanMenu(QAction *act);
    void trigerVoiceKeyboardMenu(QAction *) {}
    /// "语音映射词设置" opens the command word editor; other rows do nothing.
    void trigerCmdWordVoiceKeyboardMenu(QAction *act);
    /// Of menus of one engine each; the one menu of today has its own slot.
    void trigerTXRecLanMenu(QAction *act) { trigerAllAsrLanMenu(act); }
    void trigerBaiduRecLanMenu(QAction *act) { trigerAllAsrLanMenu(act); }
    void trigerXunFeiRecWebApiLanMenu(QAction *act) { trigerAllAsrLanMenu(act); }
    void GlobalHotKeyActivated() {}

    /// Kept under their names for callers from outside; nothing in the program reaches them.
    void SendOpenMicTimeOut() {}
    void Paster2ScreenHandOut();
    bool FindGloableCommandWord(QString text);

Q_SIGNALS:
    void updateMicWin(QString picture);
    void showRecTextOnTransDlgSignal(QString text);
    /// The text of the settings page's line on updates, empty for none.
    void updateNoticeChanged(QString text);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    friend class mevo::SessionHands;
    friend class mevo::PipelineHands;
    friend class mevo::TranslationHands;
    friend class mevo::SettingsHands;
    friend class mevo::UpdateHands;
    friend class mevo::InputMethodHands;
    friend class mevo::InputMethods;
    friend class mevo::InstanceCalls;
    friend class mevo::AccountHands;
    friend class mevo::FirstStartHands;

    // Construction, in the order of the calls.
    void readEarlySettings();
    void installInterfaceLanguage();
    /// Of all windows. Behind the bar: its seven pictures take longer than the bar itself.
    void setProgramIcon();
    void createTrayIcon();
    void createMenu();
    void readServerAddresses();
    void openDeviceAtStart();
    void createNetworkObjects();
    void introduceDevice();
    void introduceProduct();
    /// A step of the start that asks services. What the start's time is too short for is asked again, with
    /// all that follows it, as soon as the window runs.
    using StartStep = void (MainWindow::*)();
    void startStep(StartStep step);
    void runLateSteps();
    void startIsOver();
    void probeAtStart() { ProbeBackend(); }
    void reportAddress();
    void readRecordAtStart();
    /// Once the start is over, from the event loop: what shows boxes or ends the program.
    void whenStarted(std::function<void()> action);
    void createServices();
    void createRecorderAndBar();
    void loadServicesAndSettings();
    void createTipWindow();
    void createTimers();
    void startSiblings();
    void finishStart();
    void endConstruction();

    // Settings.
    void LoadSettings();
    mevo::SettingsHands &settingsHands();
    /// What the settings dialog shows has changed.
    void refreshSettings();
    void chooseEngineOfSettings(mevo::Engine engine);
    /// The user has chosen what the device record holds as well: it is told, and until it has been it cannot
    /// take the choice back.
    void tellRecord(const mevo::RecordChoices &choices);
    /// The same without waiting for the event loop, by a statement that says it. Waits for the backend.
    void tellRecordNow(const mevo::RecordChoices &choices, const QString &statement);
    /// Tells it so which input method is in force, or that none is.
    void tellMethodChoice(mevo::Statement statement);
    void keepUntold(const mevo::RecordChoices &choices);
    void dropTold(const mevo::RecordChoices &choices);
    void tellUntoldColumns();
    bool tellColumnsOnce();
    void tellColumns(const mevo::RecordChoices &choices, const QString &statement);
    void restartForSettings();
    bool dontStartAtLogin();
    void checkUpdateAtWish();
    void clearUpdateRest();

    // Device.
    void createReader();
    void stopReader();
    void readIdentityAtStart();
    void HandleDeviceChange(mevo::DeviceNotifier::Change change, const QString &name);
    void scheduleDeviceChanges();
    void takeDeviceChange();
    void endDeviceChange();
    /// The receiver whose arrival is under way is still there, and so is the program.
    bool arrivalGoesOn() const { return !m_changes.overtaken() && !m_exit.certain(); }
    void deviceArrived();
    void deviceIdentified();
    void finishArrival();
    void deviceRemoved();
    void restartKeypadSibling();
    void endRunningSession();
    void endMouseSession();
    void enterModeOfKey(const char *report);

    // Engines and services.
    /// The user chooses an engine, a language or an input method; the number of the choice. What the first
    /// run would choose is settled by it.
    int noteUserChoice();
    void chooseLanguageRow(const mevo::LanguageRow &row);
    void writeSettings(const std::vector<mevo::SettingWrite> &writes);
    void carryOut(const mevo::EngineChange &change);
    bool tellBackend(const QString &statement);
    bool tellKnownRecord(const QString &statement);
    bool tellUntoldChoice();
    bool isEngineUntold() const;
    void markChoiceUntold();
    /// Tells the backend which engine is in force.
    void tellEngine();
    /// An input method has been chosen since.
    void forgetUntoldEngine();
    /// An engine has been chosen: the record must not put an input method back.
    void leaveMethodOfRecord();
    /// Builds the language menu and the bar's button from what is in force.
    void showLanguages();
    void loadAllCredentials();
    /// What a press of this moment would begin with.
    mevo::SessionContext contextInForce() const;
    void beginSession();
    void takeInOrder(const mevo::SessionContext &session, const mevo::SessionText &text);
    /// Sends a text of a session on its way, once the sessions before it have ended.
    void deliverRecognised(int session, const mevo::SessionText &text);
    void endSession(int session);
    void carryOnLater(bool waits);
    /// A text, a paste or a key combination of an earlier text is still on its way.
    bool isTyping() const;
    /// A text is on its way through the clipboard.
    bool isPasting() const { return m_pasteSettles || !m_pendingPastes.empty(); }
    /// Types what a streaming session has understood so far and ends it: the next one begins.
    void finishXunFeiEarly();
    /// The same for a press that is under way: the text comes from the event loop, and where the service has
    /// said nothing yet, its answer is waited for beside the session that begins.
    void letXunFeiGo();
    void endXunFeiSession();
    /// Writes the counters, and tells the receiver that its microphone is no longer wanted, unless the user
    /// has begun to talk by the tip window meanwhile.
    void closeDeviceSession();
    /// The first arrival of a receiver after an installation, when the record would use an input method.
    void settleFirstArrival();
    void sendUsageOnExit(bool withTencent);
    void writeUsageOnExit(bool withTencent);
    /// Counters may be written now.
    bool mayFlush() const;
    /// Writes one counter as it stands, without waiting.
    void flushCounter(mevo::CountColumn column);
    /// Writes every counter that has gone on since the backend heard of it.
    void flushUntoldCounters();
    /// What the record holds is known, and its day is settled.
    void unlockCounters();
    /// For counters that are locked because a reading has failed: one more, in a while.
    void readRecordLater();
    void readRecordInQuiet();
    /// Connects the push socket once the backend is there; one that is connected stays so.
    void openPushSocket();
    void pushNetworkChanged();
    /// Shows the notices that wait, once nobody speaks and no text is on its way.
    void showNotices();
    void showNotice(const QString &frame);
    bool hasRoomForNotice();
    /// The notice that a newer one takes the place of; null while none does.
    CADShowDlg *noticeThatYields() const;
    /// Nobody is to be disturbed just now.
    bool isNoTimeForNotices() const;
    /// Where a notice that is ready comes to stand, once it is its turn.
    std::optional<int> placeOfNotice(const CADShowDlg &notice);
    /// A notice must not cover the bar or the talk window, which stands above the bar.
    void keepNoticesBelow();
    /// Ends the push socket and the notices that are open.
    void closePushSocket();
    /// One reading of the device record.
    struct RecordReading
    {
        int number = 0;
        int link = 0;   ///< receiver that it is about, as `m_link` counts them
        int choice = 0; ///< of a language, the user's last one before it was sent
    };
    /// The reading ends with its receiver, with the program, and where a later one has been answered.
    bool goesOn(const RecordReading &reading) const;
    bool readDeviceRecord(RecordReading &reading);
    void createDeviceRecord(const RecordReading &reading);
    void tellAgain();
    bool moveToOtherServers(const QJsonObject &row);
    void applyDeviceRecord(const QJsonObject &row, bool choiceTold, const RecordReading &reading);
    void applyRecordVersion(const QJsonObject &row);
    void sayThatVersionIsOld(const QString &text, bool ends);
    void settleCountingDay();
    void makeGoodAccountLists();
    void checkDaysAllowance();
    void leaveForTencent();
    void chooseAtLimit(int answer);
    void openWebPage(const QString &address);
    QString recordTime() const;

    // Output.
    /// Types a text into the window of its session, or pastes it, as the settings tell. Where `only` is given
    /// nothing of it goes to any other window, see pasteText().
    void sendToScreen(const QString &text, const mevo::SessionContext &session, mevo::WindowId only = 0);
    /// How long the paste key is held down where the keyboard is the computer's own.
    static constexpr int holdPasteKeyMs = 100;
    using PasteDone = std::function<void(bool pasted)>;
    /// Pastes into the window that has the focus when the turn of the text comes. Where `only` is given, into
    /// that one: when another has the focus by then the text is posted there, and kept as undelivered where
    /// that cannot be. `done` is called once the window has had the time to read the clipboard, or the text
    /// has gone, or has been kept. `session` is whose text it is, for the run's figures; 0 for nobody's.
    void pasteText(const QString &text, int holdMs, PasteDone done = {}, mevo::WindowId only = 0,
                   int session = 0);
    void pasteNext();
    void letPasteSettle();
    struct PendingPaste;
    /// The paste key would go elsewhere.
    void postInstead(const PendingPaste &paste);
    enum class Kept { No, Already }; ///< whether the text stands among the undelivered ones while it is typed
    void post(mevo::WindowId window, const QString &text, Kept kept, mevo::WindowSystem::PostDone done);
    /// What is left of a text whose posting has stopped: where keys cannot type it, it is pasted behind what
    /// has gone, if its window still has the focus, nothing else is on its way and the settings allow it.
    /// Otherwise it is kept as undelivered. `done` is called when the text is in its window, or kept.
    void typeRest(mevo::WindowId window, const QString &rest, mevo::PostStop stop, PasteDone done = {},
                  int session = 0);
    /// The same, where that is possible; false, and nothing is done, where it is not.
    bool pasteRest(mevo::WindowId window, const QString &rest, mevo::PostStop stop, PasteDone done,
                   int session);
    void loadUndelivered();
    /// Keeps a text that no window has taken, and says so.
    void keepUndelivered(const QString &text, mevo::PostStop stop);
    void tellUndelivered(int characters, mevo::PostStop stop);
    /// Adds it to the kept texts; tells when the oldest of too many has had to go for it, and is
    /// true then.
    bool storeUndelivered(const QString &text);
    void keepForNextRun(const QString &text);
    void showUndelivered();
    void closeTranslation();
    void showUndeliveredCount();
    void typeUndelivered(int index);
    bool isUndelivered(int index) const;
    /// Where it stands among the kept texts; -1 when it does not any more.
    int placeOfUndelivered(const mevo::UndeliveredText &kept) const;
    void removeUndelivered(const mevo::UndeliveredText &kept);
    void sendImmediateKeys();
    void sendOffAfterPost(mevo::WindowId window);

    /// Made at the first check.
    MyUpdateChecker &updateChecker();

    // Exit.
    using ExitKind = mevo::ExitWish::Kind;
    void walkExit(ExitKind kind);
    bool comesLater(ExitKind kind);
    bool askAboutStartup();
    bool startAtLogin();
    void tearDown();
    void finishSessions();
    /// Nothing is under way that an exit would wait for.
    bool isQuiet() const;
    /// Does `then`, which leaves the program, at the next quiet moment, or when that has not come in time.
    /// Nothing when an exit that cannot be called back comes first. `what` is for the log.
    void whenQuiet(const char *what, const std::function<void()> &then, int waitedMs = 0);
    void watchScreens();

    // Bar.
    void createBar();
    void layOutBar();
    void placeBar(int horizontalRight, int horizontalBottom, int verticalTop);
    void placeBarAtArrival();
    void setLanguageButtonImage(const QString &styleSheet);
    void setTrayPicture(const QString &picture);
    void message(const QString &text, mevo::MessageIcon icon, int milliseconds);
    QRect screenRect() const;

    // RecorderHost
    void recognise(QBuffer *audio, const QAudioFormat &format) override;
    void sessionHandedOver() override;
    bool refreshBaiduToken() override;
    void openXunFeiSocket() override;
    bool xunFeiConnected() const override;
    void sendXunFeiFrame(const QByteArray &block, int status) override;
    void closeXunFeiSocket() override;
    void giveXunFeiUp() override;
    void clearRunAsAdministrator() override;
    void runBackendSql(const QString &statement) override;

    // EngineHost
    void loadCurrentBaiduCredentials() override;
    void fetchBaiduToken() override;
    void loadBaiduTranslateCredentials() override;
    void buildAsrLanMenu(bool persistEngine, bool setupInputMethod) override;
    void ensureEngineTip() override;
    void showEngineTip(const QString &text, bool regardlessOfShowTipsDlg) override;
    void channelCountChanged() override;
    QPair<bool, QString> recogniseWithTencent(const QByteArray &pcm,
                                              const mevo::SessionContext &session) override;

    // XunFeiHost
    bool dynamicCorrection() const override;
    void handleXunFeiText(const QString &text) override;
    void showXunFeiText(const QString &text) override;
    void xunFeiAnswered() override;
    void showPartialText(const QString &text) override;
    void hidePartialText() override;
    void showXunFeiLanguage() override;
    void flushXunFeiCount() override;
    void closeXunFeiRecording() override;

    // TipWindowHost
    bool sendMicrophoneLatch(bool on) override;
    void flushUsageCounters() override;
    void saveFocusWindow() override;
    bool isXpClass() const override;

    mevo::StartClock m_startClock;
    mevo::Platform &m_platform;
    mevo::SessionHands m_sessionHands{*this};
    mevo::PipelineHands m_pipelineHands{*this};
    mevo::TranslationHands m_translationHands{*this};
    mevo::SessionMachine m_session;
    mevo::ResultPipeline m_pipeline;
    mevo::SessionResults m_results;
    mevo::RunFigures m_figures;
    const mevo::SessionContext *m_delivered = nullptr; ///< of the text that the recorder passes on just now
    mevo::EngineEndpoints m_endpoints;

    std::unique_ptr<WebCipher> m_cipher;
    std::unique_ptr<mevo::WebApi> m_webApi;
    std::unique_ptr<DeviceCommands> m_device;
    std::unique_ptr<mevo::CredentialStore> m_credentials;
    std::unique_ptr<mevo::BaiduTokens> m_tokens;
    std::unique_ptr<mevo::AccountHands> m_accounts; ///< the user's own
    mevo::FirstStartHands *m_firstStart = nullptr;  ///< what is told a new user; a child
    std::unique_ptr<Relay_Speech::BaiduSpeech> m_baiduSpeech;
    std::unique_ptr<mevo::CommandMatcher> m_commands; ///< made at the first command
    /// Makes the merged table anew where a typed one is not that which it was made of.
    void followCommandTables();
    void forgetCommandWords();
    void finishCommandWords();                  ///< at an exit
    QPointer<CommandWordDialog> m_commandWords; ///< the editor; none when it was closed for good
    std::unique_ptr<mevo::TencentSpeech> m_tencentSpeech;
    std::unique_ptr<mevo::XunFeiStream> m_xunFei;
    std::unique_ptr<mevo::UndeliveredTexts> m_undelivered;
    QWebSocket *PushSocket = nullptr; ///< the service's notices come by it
    std::unique_ptr<mevo::PushChannel> m_push;
    QStringList m_waitingNotices; ///< frames of notices
    QTimer m_noticesLater;        ///< while nobody is to be disturbed
    QList<QPointer<CADShowDlg>> m_openNotices;
    std::unique_ptr<mevo::SettingsHands> m_settingsHands; ///< made at the first opening
    std::unique_ptr<mevo::UpdateHands> m_updateHands;
    std::unique_ptr<MyUpdateChecker> m_updateChecker;
    const std::unique_ptr<mevo::InputMethods> m_inputMethods;
    std::unique_ptr<mevo::InstanceCalls> m_instanceCalls;
    GetHIDDataThread *m_reader = nullptr;
    QObject *m_readerEar = nullptr; ///< hears the reader; what it has not heard goes with it
    AudioRecorder *m_recorder = nullptr;
    AudioRecorder *m_retiredRecorder = nullptr; ///< after the exit
    MicTipDialog *m_micTip = nullptr;
    CPatialResultDialog *XFPartialDlg = nullptr; ///< partial texts of XunFei's dynamic correction
    QPointer<QToolTips> m_toolTips;
    isOnl *m_online = nullptr;
    QSystemTrayIcon *m_tray = nullptr;
    QNetworkAccessManager *m_network = nullptr;
    QTimer *m_afterRecognition = nullptr;
    QTimer *m_topMost = nullptr;
    QTranslator m_translator;

    QMenu *m_menu = nullptr;
    QMenu *m_languageMenu = nullptr;
    QAction *m_orientationAction = nullptr;
    QAction *m_showAction = nullptr;
    QAction *m_closeAsrAction = nullptr;
    QAction *m_undeliveredAction = nullptr; ///< in the menu while a text waits
    UndeliveredDialog *m_undeliveredDialog = nullptr;
    QVector<QPushButton *> m_buttons;
    QPushButton *m_languageButton = nullptr;
    QPushButton *m_closeButton = nullptr;
    QPixmap m_background;
    QString m_trayPicture;
    QString m_firstArgument;
    QString m_versionText;
    QString m_buildStamp;
    QPoint m_dragFrom;
    bool m_dragging = false;
    bool m_moved = false;
    bool m_productRead = false;         ///< the product record has been applied in this run
    std::vector<StartStep> m_lateSteps; ///< of the start, to be run again behind the bar
    mevo::OneAtATime m_engineTold;      ///< the statement of the engine in force
    mevo::OneAtATime m_columnsTold;     ///< those of the columns that the user has chosen
    QString m_accountLanguage;          ///< whose account a choice has drawn that has not come into force
    int m_languageChoice = 0;           ///< counts the choices of a language; the last one holds
    mevo::ChoiceMarks m_choiceMarks;    ///< of the record's columns
    bool m_countersKnown = true;        ///< false when the start ended before it had read them
    bool m_menuWanted = false;          ///< by a second start that came during the construction
    mevo::ExitWish m_exit;
    mevo::DeviceChanges m_changes;
    bool m_leaving = false;    ///< the record has ended this run, and the exit follows the start
    int m_exitCode = 0;        ///< of the exit that is walked next
    QElapsedTimer m_exitWaits; ///< valid while an exit waits for a token
    bool m_handedOver = false;
    std::vector<std::function<void()>> m_onceStarted;
    bool m_versionBoxOpen = false;
    int m_recordReadings = 0;        ///< begun so far
    int m_answeredRecordReading = 0; ///< number of the last one that was answered
    bool m_recordLater = false;      ///< one more waits for its time
    bool m_limitBoxOpen = false;
    int m_link = 0;           ///< counts the receiver's openings and removals
    QStringList m_pasteQueue; ///< of Paster2ScreenHandOut()

    struct PendingPaste
    {
        QString text;
        int holdMs = 0; ///< how long the paste key stays down
        PasteDone done;
        mevo::WindowId only = 0; ///< nowhere else; 0 for any window
        int session = 0;
        int looks = 0;            ///< in which no window had the keyboard
        mevo::WindowId takes = 0; ///< a window that has answered: its program does not hang
    };
    std::deque<PendingPaste> m_pendingPastes; ///< texts whose turn at the clipboard has not come
    std::map<int, QString> m_postsUnderWay;   ///< texts being posted
    int m_postNumber = 0;
    bool m_pasteSettles = false; ///< the window may still read the clipboard
    bool m_postsInstead = false; ///< a text that was to be pasted is posted; those behind it wait
    bool m_pasteAsks = false;    ///< the window of the first one is asked whether its program hangs
    QString m_pasteText;         ///< that it may still read
    mevo::WindowId m_pasteWindow = 0;
    bool m_pasteByReceiver = false; ///< which types the key
    int m_keysLostBefore = 0;       ///< HidKeysLost at that time
    PasteDone m_pasteDone;          ///< of the text that it may still read
    int m_pasteSession = 0;         ///< and whose that is
    void tellPasteDone(bool typed);
    void askBeforePaste(mevo::WindowId window);
    void awaitPasteRead(qint64 sinceMs);
    void endPaste(mevo::PostStop stop);
    bool m_sessionsFinished = false;  ///< the exit has collected what was still on its way
    bool m_typingUndelivered = false; ///< a kept text is being typed
    int m_xunFeiSession = 0;          ///< number of the session whose socket is open
};
