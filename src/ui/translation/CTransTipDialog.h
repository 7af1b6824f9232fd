#pragma once

#include "platform/WindowSystem.h"
#include "translation/ReadingFolders.h"
#include "ui/translation/TransTurns.h"

#include <QDialog>
#include <QPixmap>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class QAction;
class QComboBox;

namespace mevo {
class TransWindowHost;
struct TransFace;
} // namespace mevo

/// The translation window: the source text above, its translation below. A spoken sentence, a text that is
/// selected in another window or one typed into the source pane is translated, shown, and after a delay of
/// the user's choice typed into the window in front. It takes the keyboard only when the user clicks into the
/// source pane, and sends nothing while it has it.
class CTransTipDialog : public QDialog
{
    Q_OBJECT

public:
    /// Reads the settings. `host` must outlive the window.
    explicit CTransTipDialog(mevo::TransWindowHost &host, QWidget *parent = nullptr);
    ~CTransTipDialog() override;

    bool isClosing() const { return DialogClosing; }
    bool sourceHasFocus() const { return SourceHasFocus; }
    bool delimitMode() const { return DelimitMode; }
    /// Spoken sentences that have not been typed yet, translated where their translation has come; they are
    /// forgotten, and nothing is translated or sent by itself any more.
    QStringList takeUnsent();
    /// Closes the window without the user's doing: nothing is sent or read any more, whatever arrives.
    void retire();
    enum class Sent { ByHand, ByItself };
    /// The last window of another program when this window is in front, else 0. By hand also when any other
    /// of ours is: whoever asks for it there does not type just then.
    mevo::WindowId windowToReturnTo(Sent how);
    /// Shows the window in the middle of the screen that `bar` stands on.
    void placeAt(const QRect &bar);

public Q_SLOTS:
    void showRecText(QString text);
    /// A voice key went down; in the selection state what is selected in the window in front is translated.
    void ProcessResult(char *report);
    void trigerSendMenu(QAction *action);
    void on_pushButton_TransSend_clicked();
    void onIntervelSendResultTimeout();
    /// Notes the window in front.
    void HandleGetForeWin();
    void on_pushButton_TransClose_clicked();
    void on_pushButton_SelectDelimit_clicked();
    void onSelectDelimitTimeout();
    void TansTimerTimeout();
    void on_textEdit_SourceLan_textChanged();
    void on_textEdit_SourceLan_selectionChanged();
    void on_textEdit_DestLan_selectionChanged();
    void on_checkBox_Delimit_Translation_clicked(bool checked);
    void on_checkBox_ShowSetTransLan_clicked(bool checked);
    void on_pushButton_ClearTransSource_clicked();
    void on_pushButton_ClearTransDest_clicked();

    void on_comboBox_SourceLan_currentIndexChanged(const QString &text);
    void on_comboBox_SourceLan_currentIndexChanged(int index);
    void on_comboBox_DestLan_currentIndexChanged(const QString &text);
    void on_comboBox_DestLan_currentIndexChanged(int index);
    void on_comboBox_SourceLan_Delimit_currentIndexChanged(const QString &text);
    void on_comboBox_SourceLan_Delimit_currentIndexChanged(int index);
    void on_comboBox_DestLan_Delimit_currentIndexChanged(const QString &text);
    void on_comboBox_DestLan_Delimit_currentIndexChanged(int index);

    void on_pushButton_SourceLan_tts_clicked();
    void on_pushButton_DestLan_tts_clicked();
    void on_checkBox_OnlineTTSFirst_clicked(bool checked);
    void on_checkBox_AutoReadSourceResult_clicked(bool checked);
    void on_checkBox_AutoReadDestResult_clicked(bool checked);
    void on_comboBox_TTS_Volume_currentIndexChanged(const QString &text);
    void on_comboBox_TTS_Speed_currentIndexChanged(const QString &text);
    void on_comboBox_TTS_Tone_currentIndexChanged(const QString &text);
    void on_comboBox_TTS_Reader_currentIndexChanged(int index);

    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void fillLists();
    void loadSettings();
    void write(const char *key, const QVariant &value);
    enum class Origin { Typed, Spoken, Copied }; ///< of a source text
    /// `own` is the window that its translation belongs to, 0 when there is none.
    void showSource(const QString &text, Origin origin, mevo::WindowId own = 0);
    void showSentence(const mevo::SpokenText &sentence);
    void translationFailed(const QString &sentence);
    void showTranslation(const QString &text, bool spoken);
    void keepUnsentTranslation();
    void sendTranslation(Sent how);
    void enterDelimitMode(bool on);
    void showPair();
    void showBackground();
    void swapLanguages();
    // What the lists' slots have in common.
    void languageChosen(QString &code, const QString &label);
    void indexChosen(const char *key, int index);
    void numberChosen(int &number, const char *key, const QString &text);
    void readByItself(bool source, bool dest);
    void keepOnScreen();
    std::vector<mevo::SpokenText> takeUntold();
    void readNow();
    /// Reads what is selected, or a whole pane.
    void readAloud(mevo::Pane pane);

    mevo::TransWindowHost &m_host;
    const std::unique_ptr<mevo::TransFace> m_face;
    mevo::TransTurns m_turns;
    QTimer m_translateSoon;
    QTimer m_sendLater;              ///< until the translation is typed
    Origin m_origin = Origin::Typed; ///< of the text that is being set
    bool m_spoken = false;           ///< the source text is a sentence, as it was spoken
    mevo::SessionContext m_session;  ///< of the last sentence that was shown there
    std::optional<mevo::SessionContext> m_translatedSession; ///< of the translation, when it is a sentence's
    mevo::WindowId m_own = 0;           ///< where the source text was said or selected; 0 when typed here
    mevo::WindowId m_translatedOwn = 0; ///< and the text whose translation is shown
    bool m_spokenUnsent = false;        ///< the translation is one's that was spoken, and has not been typed
    QString m_failedSentence;           ///< spoken, in the source pane, and not translated
    bool m_unsentTaken = false;         ///< what comes now is too late
    QString m_copied;                   ///< from another window, on its way into the source pane
    mevo::WindowId m_copiedFrom = 0;
    QPixmap m_background;
    QPoint m_dragFrom;
    bool m_dragging = false;

    bool ShowSetTransLan = false; ///< the settings are open
    QString SourceLan;            ///< codes, of spoken sentences
    QString DestLan;
    QString SourceLan_Delimit; ///< and of selections
    QString DestLan_Delimit;
    bool m_swapping = false;
    bool m_constructed = false; ///< the lists say what the settings do
    bool DelimitMode = false;
    bool AutoReadSourceResult = false; ///< excludes the other
    bool AutoReadDestResult = false;
    bool DialogClosing = false;
    int TTS_Volume = 0;
    int TTS_Speed = 0;
    int TTS_Tone = 0;
    int TTS_Reader = 0; ///< as the service numbers its readers
    bool OnlineTTSFirst = false;
    int SendTransResult2ScreenMode = 3; ///< seconds
    bool SourceHasFocus = false;
    QString SelectedText; ///< with the mouse, in either pane
    int m_readTimer = -1;

    static mevo::WindowId LastForeground;
    static mevo::WindowId LastOtherForeground; ///< that was none of ours
};
