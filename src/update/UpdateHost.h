#pragma once

#include <QString>

#include <functional>

namespace mevo {

/// What a user who has asked for a check hears where no question follows.
enum class CheckAnswer {
    UpToDate,
    NoServer,    ///< none of the servers has answered
    NoVersion,   ///< what a server has answered tells no version
    Offline,     ///< there is no network to ask by
    Checking,    ///< the check is under way, and its end is told
    Asking,      ///< the question stands already
    Downloading, ///< the new version is being fetched
    Installing   ///< it is here, and the updater starts at the next quiet moment
};

/// What the update checker shows and starts. A call may run an event loop.
class UpdateHost
{
public:
    virtual ~UpdateHost() = default;

    /// Asks beside everything else, without waiting; `answer` gets whether to update now. A forced update
    /// offers no other button.
    virtual void askForUpdate(const QString &text, bool forced, const std::function<void(bool)> &answer) = 0;
    /// The line on the settings page that says that there is a new version.
    virtual void setUpdateNotice(bool shown) = 0;
    virtual void tellAboutCheck(CheckAnswer answer) = 0;
    /// Brings the question that stands to the front.
    virtual void raiseUpdateQuestion() = 0;

    virtual void showDownload(const QString &fileName) = 0;
    virtual void moveDownload(qint64 received, qint64 total) = 0;
    virtual void hideDownload() = 0;
    virtual bool confirmCancel() = 0;
    virtual void tellAboutUpdate(const QString &text) = 0;

    /// The program's folder belongs to a package manager, or no updater stands beside it: it is not ours to
    /// exchange.
    virtual bool isForeignInstallation() const = 0;
    virtual void openDownloadPage() = 0;
    /// The program's file.
    virtual QString programFile() const = 0;
    /// Starts the updater and leaves for it, as soon as nothing is under way that an exit would wait for.
    /// `answer` gets whether it was started; nothing when the program ends first.
    virtual void handOver(const std::function<void(bool started)> &answer) = 0;
};

} // namespace mevo
