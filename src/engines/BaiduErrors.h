#pragma once

#include "engines/BaiduReply.h"

#include <QString>

namespace mevo {

/// What the program does about an error of Baidu's speech service besides telling the user.
enum class BaiduRecovery {
    None,
    SwapChannels,          ///< record the other number of channels from now on
    FallToXunFei,          ///< XunFei is the engine from now on
    NewAccount,            ///< draw another account and fetch its token
    NewAccountFallToXunFei ///< both
};

/// One error, as one class of systems meets it.
struct BaiduErrorRow
{
    enum Systems { Any, XpClass, Others };
    int errNo; ///< 0 stands for every number without a row of its own
    Systems systems;
    BaiduRecovery recovery;
    bool regardlessOfShowTipsDlg; ///< shown even to users who have switched ordinary tips off
    const char *message;          ///< UTF-8, to be translated
};

/// The row of a non-zero error number.
const BaiduErrorRow &baiduError(int errNo, bool xpClass);

/// The translated message of an error.
QString baiduErrorMessage(const BaiduErrorRow &row, const BaiduReply &reply);

} // namespace mevo
