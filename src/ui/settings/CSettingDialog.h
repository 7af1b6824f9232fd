#pragma once

#include "ui/settings/ControlTable.h"
#include "ui/settings/SettingsHost.h"

#include <QDialog>
#include <QHash>
#include <QTimer>

class QButtonGroup;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QTabWidget;
class QVBoxLayout;
struct MainState;

namespace mevo {
class SettingAccounts;
}

/// The settings. Every control acts at once: it writes its key, sets the live member and does what else
/// belongs to it; there is nothing to confirm. The controls are rows of the control table. Those whose effect
/// goes beyond a key and a member have a slot of their own here, named after the control.
class CSettingDialog : public QDialog
{
    Q_OBJECT

public:
    /// `state` and `host` must outlive the dialog.
    CSettingDialog(MainState &state, mevo::SettingsHost &host, QWidget *parent = nullptr);
    ~CSettingDialog() override;

    /// Fills the controls anew from the live members and the file, and shows what the device record lets be
    /// seen. A text that is being edited stays as it is.
    void updateUI();
    /// Shows what is kept of the user's own accounts and which are in force.
    void showAccounts();
    /// Stores the words and paths that are being edited.
    void storeEdits();
    /// Shows it for the first time or anew, on the screen of `nearTo`, and gives it the keyboard.
    void present(const QWidget *nearTo);
    /// Brings a group or a control to the front, and puts the keyboard into it.
    void turnTo(const char *name);
    /// Closes it for good, and deletes it once none of its slots runs any more.
    void retire();
    /// The line on updates, empty for none.
    void setUpdateNotice(const QString &text);

public Q_SLOTS:
    void on_radioButton_BaiduNotStreamRestApi_clicked(bool on);
    void on_radioButton_UseXunFeiWebApi_clicked(bool on);
    void on_radioButton_TXAsrAPI_clicked(bool on);
    void on_radioButton_EnableThirdPartyVoiceInput_clicked(bool on);
    void on_checkBox_BaiduNotStreamRestApi_clicked(bool on);
    void on_checkBox_UseXunFeiWebApi_clicked(bool on);
    void on_checkBox_EnableThirdPartyVoiceInput_clicked(bool on);
    void on_checkBox_EnableTecentAsr_zh_dialect_clicked(bool on);
    void on_checkBox_EnableXunFeiDwa_clicked(bool on);
    void on_pushButton_XFWebApiSelectDialect_clicked();
    void on_pushButton_XFWebApiSelectSmallLan_clicked();
    void on_comboBox_SelectASR3_currentIndexChanged(int index);
    void on_checkBox_ForceUseASR3_clicked(bool on);
    void on_pushButton_ASR3DownWeb_clicked();
    void on_pushButton_OpenXunFeiInputSetting_clicked();
    void on_pushButton_OpenXunFeiInputHW_clicked();
    void on_checkBox_RunAsAdmin_clicked(bool on);
    void on_checkBox_OnlyUseXunFeiOfflineASR_clicked(bool on);
    void on_checkBox_AsrOffline_clicked(bool on);
    void on_checkBox_SimulateDoubleChannel_clicked(bool on);
    void on_checkBox_OnlyUseOurDeviceMic_clicked(bool on);
    void on_checkBox_KeepMicrophoneReady_clicked(bool on);
    void on_comboBox_MICDeviceList_activated(int index);
    void on_comboBox_SwitchVoiceMode_currentIndexChanged(int index);
    void on_checkBox_NetworkProxy_clicked(bool on);
    void on_lineEdit_NetworkProxy_IP_editingFinished();
    void on_lineEdit_NetworkProxy_Port_editingFinished();
    void on_lineEdit_NetworkProxy_UserName_editingFinished();
    void on_lineEdit_NetworkProxy_Password_editingFinished();
    void on_checkBox_AutoRunApp_2_clicked(bool on);
    void on_pushButton_OpenCmdWordSet_clicked();
    void on_comboBox_MouseCustomLeftKey_currentIndexChanged(int index);
    void on_comboBox_MouseCustomRightKey_currentIndexChanged(int index);
    void on_pushButton_ReadPowerLevel_clicked();
    void on_pushButton_ReadPowerLevel_2_clicked();
    void on_pushButton_GetDongleID_clicked();
    void on_pushButton_GetMouseID_clicked();
    void on_pushButton_UpdateNotice_clicked();
    void on_pushButton_CheckUpdate_clicked();
    void on_pushButton_DrvDownload_clicked();
    void on_pushButton_Manual_clicked();
    void on_pushButton_WebAddress_clicked();
    void on_pushButton_FirstStart_clicked();
    /// A resolution of the mouse has been chosen, by its place.
    void onRadioClickDPI(int place);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Row = mevo::ControlRow;

    /// While one lives a slot is on the stack, which may wait for the user.
    class Stay
    {
    public:
        explicit Stay(CSettingDialog &dialog)
            : m_dialog(dialog)
        {
            ++m_dialog.m_slots;
        }
        ~Stay()
        {
            if (--m_dialog.m_slots == 0 && m_dialog.m_retired) {
                m_dialog.deleteLater();
            }
        }
        Q_DISABLE_COPY(Stay)

    private:
        CSettingDialog &m_dialog;
    };

    // Building.
    void build();
    QVBoxLayout *buildPage(mevo::Page page);
    void buildGroup(const mevo::GroupRow &group, QVBoxLayout *layout);
    QWidget *buildControl(const Row &row);
    QWidget *carried(const Row &row, QWidget *control);
    QWidget *buildPath(const Row &row);
    QWidget *buildWords(const Row &row);
    QComboBox *buildChoice(const Row &row);
    void connectControl(const Row &row, QWidget *control);
    void nameForReaders(const Row &row, QWidget *control);

    template <class T>
    T *control(const char *name) const;
    static QString shownText(const char *source);

    // Filling.
    void fill(const Row &row);
    void fillEngines();
    void fillInputMethods();
    void fillHardware();
    void fillSoftware();
    void showBattery();
    void applyRules();
    bool isShown(mevo::ShownWhen rule) const;
    QVariant valueOf(const Row &row) const;
    void check(const char *name, bool on);
    void selectCustomKey(const char *name, int value);

    // Writing.
    void writeFlag(const Row &row, bool on);
    void writeRadio(const Row &row);
    void writeNumber(const Row &row, int index);
    void writeText(const Row &row);
    void store(const char *group, const char *key, const QVariant &value, const QVariant &live);
    void storeProxy();
    void chooseEngine(mevo::Engine engine);
    void chooseInputMethod(int index);
    void browse(const Row &row);

    // Words.
    void fillWords(const Row &row);
    int selectedPlace(const Row &row) const;
    QString storedWords(const Row &row, int place) const;
    void saveWords(const Row &row);
    void wordsEdited(const Row &row);
    void wordsWanted(const Row &row);
    bool areWordsEdited(const Row &row) const;

    // Microphone.
    void fillMicrophones();
    void watchMicrophone(bool on);

    MainState &m_state;
    mevo::SettingsHost &m_host;
    QTabWidget *m_pages;
    mevo::SettingAccounts *m_accounts = nullptr;
    QHash<QString, QWidget *> m_controls;
    QHash<QString, QWidget *> m_carriers; ///< what is hidden with a control: its label and buttons
    QHash<QString, QGroupBox *> m_groups;
    QHash<QString, QVBoxLayout *> m_groupLayouts;
    QHash<QString, QButtonGroup *> m_radioGroups;
    QHash<QString, int> m_shownPlaces; ///< of a field of words: the place of the key that it shows
    QTimer m_watch;                    ///< for what changes by itself while the dialog is shown
    bool m_filling = false;
    bool m_asking = false; ///< whether words are to be saved
    bool m_updateAsked = false;
    bool m_placed = false;
    bool m_retired = false;
    bool m_deviceShown = false; ///< the receiver was there when the page was filled
    /// An input method has been chosen since the dialog was shown. It may not be there: its controls are what
    /// it can be had with.
    bool m_methodWanted = false;
    int m_slots = 0;
};

template <class T>
T *CSettingDialog::control(const char *name) const
{
    return static_cast<T *>(m_controls.value(QLatin1String(name)));
}
