#pragma once

#include "state/OwnAccounts.h"

#include <QString>
#include <QStringList>

class QWebSocket;

/// What the device record permits this receiver to see. On until the record says otherwise.
struct EnginePermissions
{
    bool ShowTXI = true;
    bool ShowBaiduI = true;
    bool ShowXFWebApi = true;
    bool ShowASR3UI = true;
    bool ShowASR3Custom = true;
    bool ShowXunFeiInputMethod = true;
    bool ShowSogouInputMethod = true;
    bool ShowTecentZhDialect = true;
    bool ShowBdFtPTHI = true;
    bool ShowBdSdPTHI = true;
    bool ShowBdYYI = true;
    bool ShowBdSCHI = true;
    bool ShowBdEnI = true;
};

/// The engines as the main window knows them. GUI thread only.
struct EngineState : EnginePermissions
{
    QString BaiDuCurrentVoiceType;             ///< Baidu dev_pid as text
    bool BaiDuNoStreamApi_FastVersion = false; ///< Baidu fast variant in force
    QString TXCurrentVoiceType;                ///< Tencent EngSerViceType
    QString XunFeiWebApiCurrentVoiceType;      ///< XunFei language or accent code
    bool UseTecentZhDialect = false;
    bool LocalEnableASR3 = false; ///< a third-party input method outranks the engines
    int LocalUseASR3Index = 1;    ///< 1 XunFei, 2 Sogou, 3 custom, -1 none
    bool ForceUseASR3 = false;
    bool LocalMustClickRunASR3 = false;
    int ShowXFDialect = 0;
    int ShowXFSmallLan = 0;

    bool EnableASR3 = false;         ///< the device record would use an input method
    int UseASR3Index = 1;            ///< which one it would, numbered as LocalUseASR3Index
    bool MustClickRunASR3 = false;   ///< it starts at a click on the microphone button only
    bool EnableAutoCallASR3 = false; ///< it may be started unasked, which rules the former out
    bool HideXFSDK = false;          ///< XunFei's offline kit is not offered

    /// Engine selectors of the device record, 1 selects; -1 until the record is read.
    int UseBDAPIPara = -1;
    int UseXFSDKPara = -1;
    int UseTXAPIPara = -1;
    int UseXFWAPIPara = -1;
    int UseBDFstPara = -1;
    int UseXFWPIDWAPara = -1;

    QString BaiduAccessToken;    ///< token in use; never logged
    QString BaiduTtsAccessToken; ///< token of speech synthesis; never logged
    int FastEmptyReplies = 0;
    int FastGoodReplies = 0;

    /// Accounts drawn from the credential lists; never logged.
    QString BaiduAppId, BaiduClientId, BaiduClientSecret;
    QString BaiduTtsAppId, BaiduTtsClientId, BaiduTtsClientSecret;
    QString BaiduTranslateAppId, BaiduTranslateKey;
    QString XunFeiAppId, XunFeiApiKey, XunFeiApiSecret;
    QString XunFeiMinorAppId, XunFeiMinorApiKey, XunFeiMinorApiSecret;

    /// Tencent's ids and keys as the service's record tells them, each a list separated by ";"; empty until
    /// it does. Never logged.
    QString TXSCD, TXSCK;
    /// The user's own accounts, which go before all others, and how often they have changed in this run.
    mevo::OwnAccounts ownAccounts;
    int ownAccountChanges = 0;
    /// XunFei's streaming session.
    QWebSocket *XFWebSocket = nullptr; ///< null when closed
    bool XFWebSocketConnected = false;
    QString XFResultText;      ///< text of the message that is being handled
    QStringList XFPartialList; ///< with dynamic correction: result number n of this session at index n - 1

    /// Day's use and limit of each engine, of the receiver at hand. DayCounts counts.
    int BDSR1DUsedQuantity = 0, BDSR1DMaxUsageQuantity = 500;
    int TXSR1DUsedQuantity = 0, TXSR1DMaxUsageQuantity = 500;
    int XFSR1DUsedQuantity = 0, XFSR1DMaxUsageQuantity = 500;
    int BDFY1MUsedQuantity = 0, BDFY1MMaxUsageQuantity = 5000;
    /// Day's use as the device record had it when it was last read or written.
    int BDSR1DReadQuantity = 0, TXSR1DReadQuantity = 0, XFSR1DReadQuantity = 0, BDFY1MReadQuantity = 0;

    /// Expected sizes of the credential files, -1 until the product record tells.
    int bdsrbdsssetlen = -1, bdsrbdsssetjslen = -1, bdsrbdsssetbzlen = -1, bdsrbdsssetschlen = -1,
        bdsrbdsssetenlen = -1, bdsrbdsssetyylen = -1, bdsrbdsssetttslen = -1, bdsrbdsssetfylen = -1,
        besrfdsssetlen = -1;
};
