// Views and files of the editor of the command words.

#include "base/WholeFile.h"
#include "commands/CommandBundle.h"
#include "commands/CommandForm.h"
#include "ui/commands/CommandRowsModel.h"
#include "ui/commands/CommandWordDialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>

namespace {

constexpr int yesButton = 0;

using mevo::CommandType;

} // namespace

void CommandWordDialog::chooseView(View view)
{
    m_viewButtons[view ? int(*view) : -1]->setChecked(true);
    if (!leaveView()) {
        return;
    }
    m_view = view;
    m_loaded = false;
    loadView();
}

/// Rows that were added are asked about; other changes stay in the draft. Where the rows go is the form's
/// business; a file of another type that they replace is kept as a copy.
bool CommandWordDialog::leaveView()
{
    const QPointer<CommandWordDialog> self(this);
    if (m_dirty && m_view && m_pending) {
        const CommandType left = *m_view;
        const CommandType target = *m_pending;
        const int answer = ask(tr("提示"), tr("是否要保存前面设置？"), true);
        if (self.isNull()) {
            return false;
        }
        const mevo::CommandRows &rows = m_model->rows();
        if (answer > yesButton) {
            m_tables.removeDraft(left);
            m_dirty = false;
        } else if (answer < yesButton) {
            // A question that was closed has not been answered: the draft keeps the rows.
        } else if (target == left ? m_tables.writeTyped(left, rows)
                                  : m_tables.keepCopy(target) && m_tables.writeTyped(target, rows)) {
            if (target == left) {
                m_tables.removeDraft(left);
                m_dirty = false;
            }
        } else {
            saveDraft();
            tell(tr("语音映射词没有保存，原来的文件没有改动。"));
            if (self.isNull()) {
                return false;
            }
        }
    }
    if (!saveDraft()) {
        m_viewButtons[m_view ? int(*m_view) : -1]->setChecked(true);
        tell(tr("语音映射词没有保存，原来的文件没有改动。"));
        return false;
    }
    m_dirty = false;
    m_pending = std::nullopt;
    return true;
}

std::optional<mevo::CommandRows> CommandWordDialog::typedRows(CommandType type)
{
    const auto draft = m_tables.readDraft(type);
    if (!draft) {
        return m_tables.readTyped(type);
    }
    const QPointer<CommandWordDialog> self(this);
    const int answer = ask(
        tr("提示"), tr("上次对“%1”的修改没有保存，要恢复吗？").arg(tr(mevo::commandForm(type).view)), true);
    if (self.isNull()) {
        return std::nullopt;
    }
    if (answer == yesButton) {
        m_dirty = true;
        m_pending = type == CommandType::VoiceKeyboard ? View() : View(type);
        return draft;
    }
    if (answer > yesButton) {
        m_tables.removeDraft(type); // a question that was closed has not been answered
    }
    return m_tables.readTyped(type);
}

mevo::CommandRows CommandWordDialog::rowsOfAllTypes() const
{
    mevo::CommandRows all;
    for (const CommandType type : {CommandType::Web, CommandType::File, CommandType::Directory,
                                   CommandType::Shortcut, CommandType::Phrase}) {
        for (mevo::CommandRow &row : m_tables.readTyped(type)) {
            all.push_back(std::move(row));
        }
    }
    return all;
}

void CommandWordDialog::loadView()
{
    const View view = m_view;
    auto rows = view ? typedRows(*view) : rowsOfAllTypes();
    if (!rows || view != m_view) {
        return; // the dialog has gone, or another view was chosen during a question
    }
    m_busy = true;
    m_model->setRows(std::move(*rows));
    m_busy = false;
    m_loaded = true;
    m_hits.clear();
    m_hit = -1;
    m_next->hide();
    m_previous->hide();
    m_table->horizontalHeader()->setSortIndicatorShown(false);
    m_sortColumn = -1;
    applyHidden();
    const bool any = m_model->rowCount() > 0;
    setFieldsEnabled(any && view);
    for (QPushButton *button : {m_add, m_edit, m_delete, m_save, m_import}) {
        button->setEnabled(view.has_value());
    }
    selectRow(any ? 0 : -1);
    for (const CommandType type : mevo::allCommandTypes) {
        m_all[std::size_t(type)] = m_tables.readTyped(type);
    }
    diagnose();
}

void CommandWordDialog::diagnose()
{
    if (!m_view) {
        return;
    }
    m_all[std::size_t(*m_view)] = m_model->rows();
    m_model->setDiagnoses(
        mevo::diagnoseCommands(m_all, *m_view, m_settings, [](const QString &path, bool folder) {
            const QFileInfo info(path);
            return folder ? info.isDir() : info.exists();
        }));
}

bool CommandWordDialog::saveView()
{
    if (!m_loaded) {
        return false; // the table still shows no rows, or another view's
    }
    const bool saved =
        m_view ? m_tables.writeTyped(*m_view, m_model->rows()) : m_tables.writeMerged(m_model->rows());
    if (!saved) {
        saveDraft();
        tell(tr("语音映射词没有保存，原来的文件没有改动。"));
        return false;
    }
    m_dirty = false;
    m_draftTimer.stop();
    if (m_view) {
        m_tables.removeDraft(*m_view);
    }
    return true;
}

bool CommandWordDialog::saveDraft()
{
    m_draftTimer.stop();
    if (m_dirty && m_view && m_loaded && !m_tables.writeDraft(*m_view, m_model->rows())) {
        m_draftTimer.start();
        return false;
    }
    return true;
}

/// The view of all rows changes no file: there is nothing to bring up to date then.
bool CommandWordDialog::rebuildMerged()
{
    return !m_view || m_tables.rebuildMerged();
}

void CommandWordDialog::finish()
{
    saveDraft();
    rebuildMerged();
    hide();
}

void CommandWordDialog::on_pushButton_Close_clicked()
{
    const QPointer<CommandWordDialog> self(this);
    if (!saveDraft()) {
        tell(tr("语音映射词没有保存，原来的文件没有改动。"));
        return; // the window alone has the rows
    }
    if (close() && !self.isNull()) { // brings the merged table up to date
        Q_EMIT closed();
    }
}

void CommandWordDialog::reject()
{
    const QPointer<CommandWordDialog> self(this);
    saveDraft();
    if (!rebuildMerged()) {
        tell(tr("语音映射词没有保存，原来的文件没有改动。"));
    }
    if (!self.isNull()) {
        QDialog::reject();
    }
}

void CommandWordDialog::hideEvent(QHideEvent *event)
{
    saveDraft();
    QDialog::hideEvent(event);
}

void CommandWordDialog::on_pushButton_Export_clicked()
{
    const QPointer<CommandWordDialog> self(this);
    const QString path = QFileDialog::getSaveFileName(
        this, tr("导出语音映射词"), QStringLiteral("CommandWords.ini"), tr("语音映射词(*.ini)"));
    if (self.isNull() || path.isEmpty()) {
        return;
    }
    mevo::CommandTables tables;
    for (const CommandType type : mevo::allCommandTypes) {
        tables[std::size_t(type)] = m_tables.readTyped(type);
    }
    if (m_view) {
        tables[std::size_t(*m_view)] = m_model->rows();
    }
    const QString failure = mevo::replaceWholeFile(path, mevo::exportCommands(tables));
    tell(failure.isEmpty() ? tr("已导出到“%1”。").arg(path) : tr("不能写入“%1”：%2").arg(path, failure));
}

void CommandWordDialog::on_pushButton_Import_clicked()
{
    const QPointer<CommandWordDialog> self(this);
    const QString path =
        QFileDialog::getOpenFileName(this, tr("导入语音映射词"), QString(), tr("语音映射词(*.ini)"));
    if (self.isNull() || path.isEmpty() || !m_view) {
        return;
    }
    const auto text = mevo::readWholeFile(path);
    if (!text) {
        tell(tr("不能读取“%1”。").arg(path));
        return;
    }
    mevo::CommandTables tables;
    for (const CommandType type : mevo::allCommandTypes) {
        tables[std::size_t(type)] = type == *m_view ? m_model->rows() : m_tables.readTyped(type);
    }
    const std::array<std::size_t, 7> before = [&tables] {
        std::array<std::size_t, 7> sizes{};
        for (std::size_t type = 0; type < sizes.size(); ++type) {
            sizes[type] = tables[type].size();
        }
        return sizes;
    }();
    const mevo::CommandImport import = mevo::importCommands(std::move(tables), *text);
    bool written = true;
    for (const CommandType type : mevo::allCommandTypes) {
        const mevo::CommandRows &rows = import.tables[std::size_t(type)];
        if (rows.size() != before[std::size_t(type)]) {
            written = m_tables.writeTyped(type, rows) && written;
        }
    }
    if (!written) {
        tell(tr("语音映射词没有保存，原来的文件没有改动。"));
        return;
    }
    if (import.tables[std::size_t(*m_view)].size() != before[std::size_t(*m_view)]) {
        m_dirty = false;
        m_tables.removeDraft(*m_view);
        loadView();
    } else {
        for (const CommandType type : mevo::allCommandTypes) {
            m_all[std::size_t(type)] = import.tables[std::size_t(type)];
        }
        diagnose();
    }
    if (!self.isNull()) {
        tell(tr("导入了%1条，%2条已经有了，%3条不能识别。")
                 .arg(QString::number(import.added), QString::number(import.known),
                      QString::number(import.refused)));
    }
}
