// Views and files of the editor of the command words.

#include "base/RunAside.h"
#include "base/WholeFile.h"
#include "commands/CommandBundle.h"
#include "commands/CommandForm.h"
#include "ui/PickFile.h"
#include "ui/commands/CommandRowsModel.h"
#include "ui/commands/CommandWordDialog.h"
#include "ui/commands/DraftWriter.h"
#include "ui/commands/PathLooker.h"

#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>

#include <algorithm>
#include <memory>

namespace {

using mevo::CommandType;

/// What the view of all rows shows, in its order.
constexpr std::array<CommandType, 5> viewOfAll{CommandType::Web, CommandType::File, CommandType::Directory,
                                               CommandType::Shortcut, CommandType::Phrase};

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
    bool saved = true;
    if (m_dirty && m_view && m_pending) {
        const CommandType left = *m_view;
        const CommandType target = *m_pending;
        const Reply reply = askYesNo(tr("提示"), tr("是否要保存前面设置？"));
        if (self.isNull()) {
            return false;
        }
        const mevo::CommandRows &rows = m_model->rows();
        if (reply == Reply::No) {
            removeDraft(left);
            m_dirty = false;
        } else if (reply == Reply::None) {
            // A question that was closed has not been answered: the draft keeps the rows.
        } else if (target == left ? m_tables.writeTyped(left, rows)
                                  : m_tables.keepCopy(target) && m_tables.writeTyped(target, rows)) {
            if (target == left) {
                removeDraft(left);
                m_dirty = false;
            }
        } else {
            saved = false;
        }
    }
    const bool kept = saveDraft();
    if (!kept) {
        m_viewButtons[m_view ? int(*m_view) : -1]->setChecked(true);
    }
    if (!kept || !saved) {
        tell(tr("语音映射词没有保存，原来的文件没有改动。"));
    }
    if (!kept || self.isNull()) {
        return false;
    }
    m_dirty = false;
    m_pending = std::nullopt;
    return true;
}

void CommandWordDialog::removeDraft(CommandType type)
{
    m_drafts->finish();
    m_tables.removeDraft(type);
}

std::optional<mevo::CommandRows> CommandWordDialog::wantedDraft(CommandType type)
{
    auto draft = m_tables.readDraft(type);
    if (!draft) {
        return std::nullopt;
    }
    const QPointer<CommandWordDialog> self(this);
    const Reply reply = askYesNo(
        tr("提示"), tr("上次对“%1”的修改没有保存，要恢复吗？").arg(tr(mevo::commandForm(type).view)));
    if (self.isNull()) {
        return std::nullopt;
    }
    if (reply == Reply::No) {
        removeDraft(type);
        return std::nullopt;
    }
    // Closed, the question has not been answered: the rows are not lost, and what is typed now is theirs.
    return draft;
}

mevo::CommandRows CommandWordDialog::rowsOfFiles() const
{
    if (m_view) {
        return m_all[std::size_t(*m_view)];
    }
    mevo::CommandRows all;
    for (const CommandType type : viewOfAll) {
        const mevo::CommandRows &rows = m_all[std::size_t(type)];
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

void CommandWordDialog::loadView()
{
    const View view = m_view;
    const QPointer<CommandWordDialog> self(this);
    auto draft = view ? wantedDraft(*view) : std::nullopt;
    if (self.isNull() || view != m_view) {
        return; // the dialog has gone, or another view was chosen during the question
    }
    for (const CommandType type : mevo::allCommandTypes) {
        m_all[std::size_t(type)] = m_tables.readTyped(type);
    }
    m_dirty = m_rewritten = draft.has_value();
    m_draftStale = false;
    if (draft) {
        m_pending = *view == CommandType::VoiceKeyboard ? View() : view;
    }
    m_busy = true;
    m_model->setRows(draft ? std::move(*draft) : rowsOfFiles());
    m_busy = false;
    m_loaded = true;
    m_hits.clear();
    m_hit = -1;
    m_next->hide();
    m_previous->hide();
    m_table->horizontalHeader()->setSortIndicator(mevo::CommandRowsModel::Words, Qt::AscendingOrder);
    m_table->horizontalHeader()->setSortIndicatorShown(true);
    m_sortColumn = -1;
    applyHidden();
    for (QPushButton *button : {m_add, m_edit, m_delete, m_save, m_import}) {
        button->setEnabled(view.has_value());
    }
    selectVisibleRow(0);
    m_paths->forget();
    diagnose();
}

/// One search for faults: what it looks at, and what it finds.
struct CommandWordDialog::Diagnosis
{
    mevo::CommandTables tables;
    View view;
    bool rewritten = false;
    mevo::CommandFaultSettings settings;
    QHash<mevo::PathLooker::Question, bool> paths;
    int number = 0;
    int revision = 0; ///< of the rows shown
    mevo::CommandDiagnoses found;
    std::vector<mevo::PathLooker::Question> asked; ///< whether they are there; in between they count as there

    void run()
    {
        found = mevo::diagnoseCommands(tables, view, rewritten, settings,
                                       [this](const QString &path, bool folder) {
                                           asked.emplace_back(path, folder);
                                           return paths.value(asked.back(), true);
                                       });
    }
};

void CommandWordDialog::diagnose()
{
    m_diagnosisTimer.stop();
    if (m_view) {
        m_all[std::size_t(*m_view)] = m_model->rows();
    }
    const auto diagnosis = std::make_shared<Diagnosis>();
    diagnosis->tables = m_all;
    diagnosis->view = m_view;
    diagnosis->rewritten = m_rewritten;
    diagnosis->settings = m_settings;
    diagnosis->paths = m_paths->known();
    diagnosis->number = ++m_diagnosis;
    diagnosis->revision = m_model->revision();
    mevo::runAside(
        this, [diagnosis] { diagnosis->run(); }, [this, diagnosis] { takeDiagnosis(*diagnosis); });
}

void CommandWordDialog::takeDiagnosis(const Diagnosis &diagnosis)
{
    if (diagnosis.number != m_diagnosis) {
        return; // a later search is under way
    }
    if (diagnosis.revision != m_model->revision() || diagnosis.view != m_view) {
        m_diagnosisTimer.start();
        return;
    }
    for (const mevo::PathLooker::Question &path : diagnosis.asked) {
        m_paths->isThere(path.first, path.second); // looked at beside; an answer brings another search
    }
    if (m_view) {
        m_model->setDiagnoses(diagnosis.found[std::size_t(*m_view)]);
        return;
    }
    std::vector<mevo::CommandDiagnosis> all;
    for (const CommandType type : viewOfAll) {
        const auto &found = diagnosis.found[std::size_t(type)];
        all.insert(all.end(), found.begin(), found.end());
    }
    m_model->setDiagnoses(std::move(all));
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
        removeDraft(*m_view);
    }
    return true;
}

bool CommandWordDialog::saveDraft()
{
    m_draftTimer.stop();
    const bool lastWritten = m_drafts->finish();
    if (!m_dirty || !m_view || !m_loaded || (!m_draftStale && lastWritten)) {
        return true;
    }
    m_draftStale = !m_tables.writeDraft(*m_view, m_model->rows());
    if (m_draftStale) {
        m_draftTimer.start();
    }
    return !m_draftStale;
}

void CommandWordDialog::saveDraftAside()
{
    if (!m_dirty || !m_view || !m_loaded || !m_draftStale) {
        return;
    }
    if (m_drafts->isWriting()) {
        m_draftTimer.start();
        return;
    }
    m_draftStale = false;
    m_drafts->write(*m_view, m_model->rows());
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
    const QString path = mevo::pickNewFile(this, tr("导出语音映射词"), QStringLiteral("CommandWords.ini"),
                                           tr("语音映射词(*.ini)"));
    if (self.isNull() || path.isEmpty()) {
        return;
    }
    mevo::CommandTables tables;
    for (const CommandType type : mevo::allCommandTypes) {
        tables[std::size_t(type)] = m_view == type ? m_model->rows() : m_tables.readTyped(type);
    }
    const QString failure = mevo::replaceWholeFile(path, mevo::exportCommands(tables));
    tell(failure.isEmpty() ? tr("已导出到“%1”。").arg(path) : tr("不能写入“%1”：%2").arg(path, failure));
}

void CommandWordDialog::on_pushButton_Import_clicked()
{
    const QPointer<CommandWordDialog> self(this);
    const QString path = mevo::pickFile(this, tr("导入语音映射词"), tr("语音映射词(*.ini)"));
    if (self.isNull() || path.isEmpty() || !m_view || !m_loaded) {
        return;
    }
    const auto text = mevo::readWholeFile(path);
    if (!text) {
        tell(tr("不能读取“%1”。").arg(path));
        return;
    }
    const mevo::CommandBundle bundle = mevo::readCommandBundle(*text);
    importTables(bundle.tables, bundle.refused);
}

/// New rows go into the files, and besides into the rows shown where those have changes that nobody has
/// saved.
void CommandWordDialog::importTables(const mevo::CommandTables &tables, int refused)
{
    m_drafts->finish();
    const mevo::CommandImport import = mevo::importCommands(m_tables, tables);
    if (m_dirty) {
        mevo::CommandRows rows = m_model->rows();
        if (std::find(import.failed.begin(), import.failed.end(), *m_view) == import.failed.end()) {
            mevo::addMissingRows(rows, tables[std::size_t(*m_view)]);
        }
        const int row = currentRow();
        m_busy = true;
        m_model->setRows(std::move(rows));
        m_busy = false;
        applyHidden();
        selectVisibleRow(std::max(0, row));
        changed();
        for (const CommandType type : mevo::allCommandTypes) {
            m_all[std::size_t(type)] = m_tables.readTyped(type);
        }
        diagnose();
    } else {
        loadView();
    }
    QString told =
        tr("导入了%1条，%2条已经有了，%3条不能识别。")
            .arg(QString::number(import.added), QString::number(import.known), QString::number(refused));
    for (const CommandType type : import.failed) {
        told += QLatin1Char('\n') +
                tr("“%1”没有保存，原来的文件没有改动。").arg(tr(mevo::commandForm(type).view));
    }
    tell(told);
}
