#pragma once

class QCheckBox;
class QComboBox;
class QDialog;
class QLabel;
class QMenu;
class QPushButton;
class QTextEdit;
class QWidget;

namespace mevo {

/// The room of a language's name above the panes, in pixels.
constexpr int languageNameWidth = 110;

/// The widgets of the translation window, named after its slots. They belong to the window.
struct TransFace
{
    explicit TransFace(QDialog *window);

    QLabel *label_SourceLan;
    QLabel *label_DestLan;
    QPushButton *pushButton_SelectDelimit;
    QCheckBox *checkBox_ShowSetTransLan;
    QPushButton *pushButton_TransClose;

    QTextEdit *textEdit_SourceLan;
    QTextEdit *textEdit_DestLan;
    QPushButton *pushButton_SourceLan_tts;
    QPushButton *pushButton_ClearTransSource;
    QPushButton *pushButton_DestLan_tts;
    QPushButton *pushButton_ClearTransDest;

    QCheckBox *checkBox_Delimit_Translation;
    QPushButton *pushButton_TransSendSet; ///< opens the send menu, and shows what is chosen there
    QMenu *sendMenu;
    QPushButton *pushButton_TransSend;

    QWidget *settings; ///< what is below the panes while the settings are open
    QComboBox *comboBox_SourceLan;
    QComboBox *comboBox_DestLan;
    QComboBox *comboBox_SourceLan_Delimit;
    QComboBox *comboBox_DestLan_Delimit;
    QCheckBox *checkBox_OnlineTTSFirst;
    QComboBox *comboBox_TTS_Volume;
    QComboBox *comboBox_TTS_Speed;
    QComboBox *comboBox_TTS_Tone;
    QComboBox *comboBox_TTS_Reader;
    QCheckBox *checkBox_AutoReadSourceResult;
    QCheckBox *checkBox_AutoReadDestResult;

private:
    QWidget *makeHead(QDialog *window);
    QWidget *makePanes(QDialog *window);
    QWidget *makeSettings(QDialog *window);
};

} // namespace mevo
