// What the user does to rows in the editor of the command words.

#include "ui/commands/CommandWordDialog.h"

#include "commands/CommandForm.h"
#include "ui/Ask.h"
#include "ui/PickFile.h"
#include "ui/commands/CommandRowsModel.h"
#include "ui/commands/DraftWriter.h"
#include "ui/commands/PathLooker.h"
#include "ui/commands/SelectApplication.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QRegExpValidator>
#include <QSignalBlocker>
#include <QTableView>

#include <algorithm>

namespace {

constexpr int draftDelayMs = 1000;    ///< after the first change that no draft has
constexpr int diagnosisDelayMs = 200; ///< after the last letter

using mevo::CommandRowsModel;
using mevo::CommandType;

} // namespace

CommandWordDialog::CommandWordDialog(mevo::CommandTable tables, const SettingsState &settings,
                                     QWidget *parent)
    : QDialog(parent)
    , m_tables(std::move(tables))
    , m_settings(settings)
    , m_keys(mevo::loadKeyTable())
    , m_pending(CommandType::Web)
    , m_view(CommandType::Web)
    , m_drafts(new mevo::DraftWriter(m_tables, this))
    , m_paths(new mevo::PathLooker(this))
    , m_model(new CommandRowsModel(this))
    , m_table(new QTableView(this))
{
    for (const auto &[timer, ms] :
         {std::pair(&m_draftTimer, draftDelayMs), std::pair(&m_diagnosisTimer, diagnosisDelayMs)}) {
        timer->setSingleShot(true);
        timer->setInterval(ms);
    }
    connect(&m_draftTimer, &QTimer::timeout, this, &CommandWordDialog::saveDraftAside);
    connect(m_drafts, &mevo::DraftWriter::written, this, [this](bool done) {
        if (!done) {
            m_draftStale = true;
            m_draftTimer.start();
        }
    });
    connect(&m_diagnosisTimer, &QTimer::timeout, this, &CommandWordDialog::diagnose);
    connect(m_paths, &mevo::PathLooker::looked, &m_diagnosisTimer, qOverload<>(&QTimer::start));
    buildTable();
    makeWindow();
    QMetaObject::connectSlotsByName(this);
    m_viewButtons[int(CommandType::Web)]->setChecked(true);
    // Nothing is asked in a constructor: a draft is offered when the window stands.
    QTimer::singleShot(0, this, &CommandWordDialog::loadView);
}

CommandWordDialog::~CommandWordDialog()
{
    saveDraft();
}

CommandWordDialog::Reply CommandWordDialog::askYesNo(const QString &title, const QString &text)
{
    constexpr std::array<Reply, 3> replies{Reply::None, Reply::Yes, Reply::No};
    const int pressed =
        mevo::ask(this, {title, text, {tr("是"), tr("否")}, false, {mevo::Answer::Yes, mevo::Answer::No}});
    return replies[std::size_t(pressed + 1)];
}

bool CommandWordDialog::tell(const QString &text)
{
    const QPointer<CommandWordDialog> self(this);
    return mevo::ask(this, {tr("提示"), text, {tr("确定")}}) >= 0 && !self.isNull();
}

int CommandWordDialog::currentRow() const
{
    return m_table->currentIndex().row();
}

void CommandWordDialog::changed()
{
    m_dirty = true;
    m_draftStale = true;
    m_rewritten = true;
    if (!m_draftTimer.isActive()) {
        m_draftTimer.start(); // not anew with each letter: who types on and on would never get a draft
    }
    m_diagnosisTimer.start();
}

void CommandWordDialog::on_pushButton_AddCmdWord_clicked()
{
    if (!tell(tr("建议在增加前先查询有没有定义过，如重复定义语音映射词，\n将执行最初定义的功能！"))) {
        return;
    }
    if (!m_view) {
        const QPointer<CommandWordDialog> self(this);
        chooseView(CommandType::Web);
        if (!self.isNull()) {
            tell(tr("该类型状态下不能增加，将默认切换到网页类型下"));
        }
        return;
    }
    const mevo::CommandForm &form = mevo::commandForm(*m_view);
    m_pending = form.savedOnLeaving;
    m_busy = true;
    for (QCheckBox *box : {m_control, m_alt, m_shift, m_win}) {
        box->setChecked(false);
    }
    const int row = m_model->append({QStringLiteral("0"), tr("输入语音映射词"),
                                     mevo::commandTypeLabel(*m_view), tr(form.newContent), QString()});
    m_busy = false;
    setFieldsEnabled(true);
    selectRow(row);
    changed();
    m_words->setFocus();
    m_words->selectAll();
}

void CommandWordDialog::on_pushButton_Edit_clicked()
{
    if (m_view && currentRow() >= 0) {
        setFieldsEnabled(true);
        m_words->setFocus();
    }
}

void CommandWordDialog::on_pushButton_DelCmdWord_clicked()
{
    if (!m_view) {
        tell(tr("该类型状态下不能删除，请先切换到相关类型下！"));
        return;
    }
    if (currentRow() < 0) {
        return;
    }
    const QPointer<CommandWordDialog> self(this);
    const Reply reply = askYesNo(tr("删除"), tr("确认删除吗？"));
    const int row = self.isNull() ? -1 : currentRow();
    if (row < 0 || reply != Reply::Yes) {
        return;
    }
    m_busy = true;
    m_model->remove(row);
    m_busy = false;
    m_hits.clear(); // their numbers are other rows' now
    m_hit = -1;
    m_next->hide();
    m_previous->hide();
    applyHidden();
    changed();
    selectVisibleRow(row);
    saveView();
}

void CommandWordDialog::on_pushButton_SaveCmdWord_clicked()
{
    saveView();
}

void CommandWordDialog::on_lineEdit_CommandWord_textChanged(const QString &text)
{
    if (!m_busy) {
        m_model->setText(currentRow(), CommandRowsModel::Words, text);
        changed();
    }
}

void CommandWordDialog::on_lineEdit_CmdWordContent_textChanged(const QString &text)
{
    if (!m_busy) {
        setContent(text);
    }
}

void CommandWordDialog::setContent(const QString &content)
{
    m_model->setText(currentRow(), CommandRowsModel::Contents, content);
    changed();
}

void CommandWordDialog::writeShortcut()
{
    if (m_busy || currentRow() < 0) {
        return;
    }
    // A key that the list does not have is the row's all the same.
    const QString key =
        m_key->currentIndex() >= 0
            ? m_key->currentText()
            : mevo::shortcutParts(m_model->text(currentRow(), CommandRowsModel::Contents)).key;
    setContent(mevo::shortcutText(
        {m_control->isChecked(), m_alt->isChecked(), m_shift->isChecked(), m_win->isChecked(), key}));
}

void CommandWordDialog::on_checkBox_Control_clicked(bool)
{
    writeShortcut();
}

void CommandWordDialog::on_checkBox_Alt_clicked(bool)
{
    writeShortcut();
}

void CommandWordDialog::on_checkBox_Shift_clicked(bool)
{
    writeShortcut();
}

void CommandWordDialog::on_checkBox_Win_clicked()
{
    writeShortcut();
}

void CommandWordDialog::on_comboBox_ShortCutKey_currentIndexChanged(const QString &)
{
    writeShortcut();
}

void CommandWordDialog::on_pushButton_addSemicolon_clicked()
{
    if (!m_words->text().isEmpty()) {
        m_words->insert(QStringLiteral(";"));
        m_words->setFocus();
    }
}

void CommandWordDialog::on_checkBox_Hide_clicked(bool checked)
{
    if (!m_busy && currentRow() >= 0) {
        m_model->setText(currentRow(), CommandRowsModel::Hide,
                         checked ? QStringLiteral("1") : QStringLiteral("0"));
        changed();
    }
}

void CommandWordDialog::on_checkBox_ShowHideContents_clicked(bool)
{
    applyHidden();
    if (currentRow() < 0 || m_table->isRowHidden(currentRow())) {
        selectVisibleRow(std::max(0, currentRow()));
    }
}

void CommandWordDialog::applyHidden()
{
    m_table->setUpdatesEnabled(false);
    const mevo::CommandRows &rows = m_model->rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const bool hidden = rows[row].Hide == QLatin1String("1") && !m_showHidden->isChecked();
        if (m_table->isRowHidden(int(row)) != hidden) {
            m_table->setRowHidden(int(row), hidden);
        }
    }
    m_table->setUpdatesEnabled(true);
}

int CommandWordDialog::visibleRow(int row) const
{
    const int count = m_model->rowCount();
    for (int behind = row; behind < count; ++behind) {
        if (!m_table->isRowHidden(behind)) {
            return behind;
        }
    }
    for (int before = std::min(row, count) - 1; before >= 0; --before) {
        if (!m_table->isRowHidden(before)) {
            return before;
        }
    }
    return -1;
}

void CommandWordDialog::selectVisibleRow(int row)
{
    const int visible = visibleRow(row);
    selectRow(visible);
    setFieldsEnabled(visible >= 0 && m_view);
}

void CommandWordDialog::on_pushButton_Browser_clicked()
{
    const bool folder = m_view == CommandType::Directory;
    const QPointer<CommandWordDialog> self(this);
    const QString chosen = folder ? mevo::pickFolder(this, tr("选择目录"), QStringLiteral("./"))
                                  : mevo::pickFile(this, tr("选择文件"));
    if (!self.isNull() && !chosen.isEmpty()) {
        m_content->setText(chosen);
    }
}

void CommandWordDialog::on_pushButton_Browser_App_clicked()
{
    const QPointer<CommandWordDialog> self(this);
    const QPointer<SelectApplication> picker(new SelectApplication(this));
    const bool confirmed = mevo::runDialog(picker.data());
    if (picker.isNull() || self.isNull()) {
        return;
    }
    if (confirmed && !picker->path().isEmpty()) {
        m_content->setText(picker->path());
    }
    picker->deleteLater();
}

/// Sorting moves the rows themselves: what is saved afterwards stands in this order.
void CommandWordDialog::record_sortbyclounm(int column)
{
    m_sortedDown = column == m_sortColumn && !m_sortedDown;
    m_sortColumn = column;
    m_busy = true;
    m_model->sort(column, m_sortedDown ? Qt::DescendingOrder : Qt::AscendingOrder);
    m_busy = false;
    QHeaderView *header = m_table->horizontalHeader();
    header->setSortIndicator(column, m_sortedDown ? Qt::DescendingOrder : Qt::AscendingOrder);
    header->setSortIndicatorShown(true);
    m_hits.clear();
    m_hit = -1;
    m_next->hide();
    m_previous->hide();
    m_rewritten = true; // the marks are those of the order shown
    applyHidden();
    selectVisibleRow(0);
    m_diagnosisTimer.start();
}

void CommandWordDialog::selectRow(int row)
{
    m_busy = true;
    m_table->setCurrentIndex(m_model->index(row, CommandRowsModel::Words));
    m_busy = false;
    if (row >= 0) {
        m_table->scrollTo(m_table->currentIndex());
    }
    showRow(row);
}

void CommandWordDialog::showRow(int row)
{
    m_busy = true;
    const QString label = m_model->text(row, CommandRowsModel::Type);
    const QString content = m_model->text(row, CommandRowsModel::Contents);
    m_hide->setChecked(m_model->text(row, CommandRowsModel::Hide).toInt() != 0);
    m_words->setText(m_model->text(row, CommandRowsModel::Words));
    m_type->setCurrentIndex(m_type->findData(label));
    showForm(mevo::commandTypeOfLabel(label).value_or(m_view.value_or(CommandType::Web)));
    if (label == mevo::commandTypeLabel(CommandType::Shortcut)) {
        const mevo::ShortcutParts parts = mevo::shortcutParts(content);
        m_control->setChecked(parts.control);
        m_alt->setChecked(parts.alt);
        m_shift->setChecked(parts.shift);
        m_win->setChecked(parts.win);
        const bool isNew = content == tr(mevo::commandForm(CommandType::Shortcut).newContent);
        m_key->setCurrentIndex(isNew ? 0 : m_key->findText(parts.key));
        m_content->clear();
    } else {
        m_content->setText(content);
        if (m_content->validator() != nullptr && !m_content->hasAcceptableInput()) {
            // A field that holds something invalid lets anything in; the row keeps its own.
            m_content->clear();
        }
    }
    m_content->setCursorPosition(0);
    m_busy = false;
}

void CommandWordDialog::showForm(CommandType type)
{
    const mevo::CommandForm &form = mevo::commandForm(type);
    const bool shortcut = type == CommandType::Shortcut;
    m_words->setPlaceholderText(tr(form.wordHint));
    m_content->setPlaceholderText(*form.contentHint == '\0' ? QString() : tr(form.contentHint));
    delete m_content->validator();
    m_content->setValidator(
        form.contentPattern == nullptr
            ? nullptr
            : new QRegExpValidator(QRegExp(QLatin1String(form.contentPattern), Qt::CaseSensitive),
                                   m_content));
    m_content->setMaxLength(form.contentLength);
    m_content->setVisible(!shortcut);
    m_shortcut->setVisible(shortcut);
    m_browse->setVisible(type == CommandType::File || type == CommandType::Directory);
    m_browse->setText(type == CommandType::Directory ? tr("目录") : tr("文件"));
    m_browseApp->setVisible(type == CommandType::File);
}

void CommandWordDialog::setFieldsEnabled(bool enabled)
{
    for (QWidget *field : std::initializer_list<QWidget *>{m_words, m_content, m_hide, m_shortcut,
                                                           m_semicolon, m_browse, m_browseApp}) {
        field->setEnabled(enabled);
    }
}

void CommandWordDialog::on_pushButton_SearchCmdWord_clicked()
{
    m_next->hide();
    m_previous->hide();
    m_hits = mevo::searchCommandWords(m_model->rows(), m_search->text());
    if (m_hits.empty()) {
        m_hit = -1;
        tell(tr("没有发现匹配的语音映射词！"));
        return;
    }
    goToHit(0);
    m_previous->hide();
}

void CommandWordDialog::on_pushButton_SearchCmdWord_Next_clicked()
{
    goToHit(m_hit + 1);
}

void CommandWordDialog::on_pushButton_SearchCmdWord_Previous_clicked()
{
    goToHit(m_hit - 1);
}

/// Rows may have gone since the search: a hit beyond the table ends it.
void CommandWordDialog::goToHit(int position)
{
    if (position < 0 || position >= int(m_hits.size()) ||
        m_hits[std::size_t(position)] >= m_model->rowCount()) {
        return;
    }
    m_hit = position;
    m_next->setVisible(position + 1 < int(m_hits.size()));
    m_previous->setVisible(position > 0);
    m_table->setRowHidden(m_hits[std::size_t(position)], false);
    selectRow(m_hits[std::size_t(position)]);
}
