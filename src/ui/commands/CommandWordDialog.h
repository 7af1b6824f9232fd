#pragma once

#include "base/KeyTable.h"
#include "commands/CommandFaults.h"
#include "commands/CommandTable.h"

#include <QDialog>
#include <QHash>
#include <QTimer>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableView;

namespace mevo {
class CommandRowsModel;
class DraftWriter;
class PathLooker;
} // namespace mevo

/// The editor of the command words: the rows of one type, or all of them to look at. What is typed is saved
/// by the save button, by a deletion, or on leaving a view when the user says so; until then a draft beside
/// the table keeps it, which is offered when the view is opened again.
class CommandWordDialog : public QDialog
{
    Q_OBJECT

public:
    /// `settings` has the words that switch modes and the direct words; it must outlive the dialog.
    CommandWordDialog(mevo::CommandTable tables, const SettingsState &settings, QWidget *parent = nullptr);
    ~CommandWordDialog() override;

    /// What a close does, without a question: for the end of the program.
    void finish();
    /// Keeps unsaved rows in the draft at once; false when that failed, so that only the dialog has them.
    bool saveDraft();

public Q_SLOTS:
    /// Escape and the close box: the window is hidden, unsaved rows stay.
    void reject() override;

Q_SIGNALS:
    /// The user has closed the dialog by its own button and is done with it.
    void closed();

protected:
    void hideEvent(QHideEvent *event) override;

private Q_SLOTS:
    void on_pushButton_Close_clicked();
    void on_pushButton_AddCmdWord_clicked();
    void on_pushButton_Edit_clicked();
    void on_pushButton_DelCmdWord_clicked();
    void on_pushButton_SaveCmdWord_clicked();
    void on_pushButton_Browser_clicked();
    void on_pushButton_Browser_App_clicked();
    void on_pushButton_Import_clicked();
    void on_pushButton_Export_clicked();
    void on_lineEdit_CommandWord_textChanged(const QString &text);
    void on_lineEdit_CmdWordContent_textChanged(const QString &text);
    void on_checkBox_Control_clicked(bool checked);
    void on_checkBox_Alt_clicked(bool checked);
    void on_checkBox_Shift_clicked(bool checked);
    void on_checkBox_Win_clicked();
    void on_comboBox_ShortCutKey_currentIndexChanged(const QString &name);
    void on_pushButton_addSemicolon_clicked();
    void on_checkBox_ShowHideContents_clicked(bool checked);
    void on_checkBox_Hide_clicked(bool checked);
    void on_pushButton_SearchCmdWord_clicked();
    void on_pushButton_SearchCmdWord_Next_clicked();
    void on_pushButton_SearchCmdWord_Previous_clicked();

private:
    /// The rows of one type, or all of them.
    using View = std::optional<mevo::CommandType>;

    void buildTable();
    QWidget *makeViews();
    QWidget *makeSearch();
    QWidget *makeFields();
    QWidget *makeButtons();
    void makeWindow();
    QPushButton *button(const char *name, const QString &text);
    QCheckBox *checkBox(const char *name, const QString &text);

    void record_sortbyclounm(int column);
    void chooseView(View view);
    /// Asks about unsaved rows where rows were added; false when the dialog has gone meanwhile, or the rows
    /// could be kept nowhere and the view has to stay.
    bool leaveView();
    void loadView();
    /// The rows of the present view in its files.
    mevo::CommandRows rowsOfFiles() const;
    /// The rows of a draft that the user wants back, or has not refused. Nothing when the file's are to be
    /// shown.
    std::optional<mevo::CommandRows> wantedDraft(mevo::CommandType type);
    void removeDraft(mevo::CommandType type);
    void saveDraftAside();
    void importTables(const mevo::CommandTables &tables, int refused);
    bool saveView();
    bool rebuildMerged();

    int currentRow() const;
    /// The row shown at `row` or behind it, else before it; -1 when none is.
    int visibleRow(int row) const;
    /// Makes the next visible row current; the fields are for it alone.
    void selectVisibleRow(int row);
    void selectRow(int row);
    void showRow(int row);
    void showForm(mevo::CommandType type);
    void setFieldsEnabled(bool enabled);
    void applyHidden();
    void changed();
    void writeShortcut();
    void setContent(const QString &content);
    void goToHit(int position);
    /// Looks beside the window for rows that cannot act, and marks them unless they have changed meanwhile.
    void diagnose();
    struct Diagnosis;
    void takeDiagnosis(const Diagnosis &diagnosis);

    enum class Reply { Yes, No, None }; ///< None: closed, by Escape too
    Reply askYesNo(const QString &title, const QString &text);
    /// False when the dialog has gone meanwhile, or the program's end has closed it.
    bool tell(const QString &text);

    mevo::CommandTable m_tables;
    const SettingsState &m_settings;
    mevo::KeyTable m_keys;
    bool m_busy = true; ///< the dialog itself fills the controls
    std::vector<int> m_hits;
    int m_hit = -1;
    bool m_dirty = false;
    bool m_draftStale = false; ///< no draft has the last change
    bool m_rewritten =
        false;             ///< the file does not hold the rows in the order shown, or not under its numbers
    bool m_loaded = false; ///< the rows shown are those of `m_view`
    View m_pending;        ///< where rows go when the view is left; none: nothing is asked then
    View m_view;
    mevo::CommandTables m_all; ///< of the files, for the search for words that are taken
    int m_sortColumn = -1;
    bool m_sortedDown = false;
    QTimer m_draftTimer;
    QTimer m_diagnosisTimer;
    int m_diagnosis = 0; ///< number of the latest search for faults

    mevo::DraftWriter *m_drafts;
    mevo::PathLooker *m_paths;
    mevo::CommandRowsModel *m_model;
    QTableView *m_table;
    QHash<int, QRadioButton *> m_viewButtons; ///< by the type's number, -1 for all
    QCheckBox *m_showHidden = nullptr;
    QLineEdit *m_search = nullptr;
    QPushButton *m_next = nullptr;
    QPushButton *m_previous = nullptr;
    QLineEdit *m_words = nullptr;
    QLineEdit *m_content = nullptr;
    QComboBox *m_type = nullptr;
    QCheckBox *m_hide = nullptr;
    QCheckBox *m_control = nullptr;
    QCheckBox *m_alt = nullptr;
    QCheckBox *m_shift = nullptr;
    QCheckBox *m_win = nullptr;
    QComboBox *m_key = nullptr;
    QWidget *m_shortcut = nullptr; ///< the boxes of the modifiers and the key
    QPushButton *m_semicolon = nullptr;
    QPushButton *m_browse = nullptr;
    QPushButton *m_browseApp = nullptr;
    QPushButton *m_add = nullptr;
    QPushButton *m_edit = nullptr;
    QPushButton *m_delete = nullptr;
    QPushButton *m_save = nullptr;
    QPushButton *m_import = nullptr;
};
