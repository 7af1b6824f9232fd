#include "ui/commands/CommandRowsModel.h"

#include "commands/CommandForm.h"

#include <QBrush>
#include <QColor>
#include <QCoreApplication>

#include <algorithm>

namespace mevo {

namespace {

constexpr int longestCell = 300; ///< characters that a cell paints; the field below the table shows all

QString translated(const char *text)
{
    return QCoreApplication::translate("CommandWordDialog", text);
}

QString CommandRow::*memberOf(int column)
{
    switch (column) {
    case CommandRowsModel::Hide:
        return &CommandRow::Hide;
    case CommandRowsModel::Words:
        return &CommandRow::CommandWords;
    case CommandRowsModel::Type:
        return &CommandRow::CmdWordType;
    case CommandRowsModel::Contents:
        return &CommandRow::CmdWordContents;
    default:
        return nullptr;
    }
}

/// The type in the user's language; a label that is none stays.
QString typeText(const QString &label)
{
    const auto type = commandTypeOfLabel(label);
    return type ? translated(commandForm(*type).view) : label;
}

/// Where lines end is told in HTML, for a plain tip would show each word of a stranger's as it is marked up.
QString tip(const QString &text)
{
    return text.isEmpty() ? QString()
                          : QStringLiteral("<qt>") +
                                text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")) +
                                QStringLiteral("</qt>");
}

QString faultText(const CommandFault &fault)
{
    using Kind = CommandFault::Kind;
    switch (fault.kind) {
    case Kind::EmptyWord:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "有一个语音映射词是空的"));
    case Kind::Shadowed:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "“%1”已经定义过，会执行“%2”"))
            .arg(fault.word, fault.by.left(longestCell));
    case Kind::ModeWord:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "“%1”是切换语音模式的词")).arg(fault.word);
    case Kind::DirectPrefix:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "“%1”以直接执行的前缀“%2”开头"))
            .arg(fault.word, fault.by);
    case Kind::UnknownKey:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "没有名为“%1”的按键")).arg(fault.by);
    case Kind::NothingToPlay:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "没有选择按键"));
    case Kind::OtherTable:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "“%1”这一类型在这里不起作用"))
            .arg(typeText(fault.by));
    case Kind::MissingFile:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "找不到文件“%1”")).arg(fault.by);
    case Kind::MissingFolder:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "找不到文件夹“%1”")).arg(fault.by);
    }
    return {};
}

} // namespace

CommandRowsModel::CommandRowsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void CommandRowsModel::setRows(CommandRows rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    m_diagnoses.clear();
    ++m_revision;
    endResetModel();
}

int CommandRowsModel::append(CommandRow row)
{
    const int number = int(m_rows.size());
    beginInsertRows({}, number, number);
    m_rows.push_back(std::move(row));
    m_diagnoses.clear();
    ++m_revision;
    endInsertRows();
    return number;
}

void CommandRowsModel::remove(int row)
{
    beginRemoveRows({}, row, row);
    m_rows.erase(m_rows.begin() + row);
    m_diagnoses.clear();
    ++m_revision;
    endRemoveRows();
}

QString CommandRowsModel::text(int row, Column column) const
{
    QString CommandRow::*const member = memberOf(column);
    return member != nullptr && row >= 0 && row < int(m_rows.size()) ? m_rows[std::size_t(row)].*member
                                                                     : QString();
}

void CommandRowsModel::setText(int row, Column column, const QString &text)
{
    QString CommandRow::*const member = memberOf(column);
    if (member == nullptr || row < 0 || row >= int(m_rows.size())) {
        return;
    }
    m_rows[std::size_t(row)].*member = text;
    ++m_revision;
    Q_EMIT dataChanged(index(row, column), index(row, column));
}

void CommandRowsModel::sort(int column, Qt::SortOrder order)
{
    QString CommandRow::*const member = memberOf(column);
    if (member == nullptr) {
        return;
    }
    beginResetModel();
    std::stable_sort(
        m_rows.begin(), m_rows.end(), [member, order](const CommandRow &left, const CommandRow &right) {
            return order == Qt::AscendingOrder ? left.*member < right.*member : right.*member < left.*member;
        });
    m_diagnoses.clear();
    ++m_revision;
    endResetModel();
}

void CommandRowsModel::setDiagnoses(std::vector<CommandDiagnosis> diagnoses)
{
    m_diagnoses = std::move(diagnoses);
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0, State), index(int(m_rows.size()) - 1, State));
    }
}

int CommandRowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int CommandRowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(columnCountOfTable);
}

QString CommandRowsModel::displayText(int row, Column column) const
{
    switch (column) {
    case State:
        return stateText(row);
    case Type:
        return typeText(text(row, Type)).left(longestCell);
    default:
        return text(row, column).left(longestCell);
    }
}

QString CommandRowsModel::stateText(int row) const
{
    if (row >= int(m_diagnoses.size()) || m_diagnoses[std::size_t(row)].faults.empty()) {
        return {};
    }
    return m_diagnoses[std::size_t(row)].inert
               ? translated(QT_TRANSLATE_NOOP("CommandWordDialog", "不起作用"))
               : translated(QT_TRANSLATE_NOOP("CommandWordDialog", "部分不起作用"));
}

QString CommandRowsModel::faultTexts(int row) const
{
    QStringList texts;
    if (row < int(m_diagnoses.size())) {
        for (const CommandFault &fault : m_diagnoses[std::size_t(row)].faults) {
            texts.append(faultText(fault));
        }
    }
    return texts.join(QLatin1Char('\n'));
}

QVariant CommandRowsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= int(m_rows.size())) {
        return {};
    }
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return displayText(row, Column(index.column()));
    case Qt::ToolTipRole:
        return index.column() == State ? tip(faultTexts(row)) : QString();
    case Qt::ForegroundRole:
        return index.column() == State ? QVariant(QBrush(QColor(0xb0, 0x20, 0x20))) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == Type ? QVariant(Qt::AlignCenter) : QVariant();
    default:
        return {};
    }
}

QVariant CommandRowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Hide:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "隐藏"));
    case Words:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "语音映射词"));
    case Type:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "类型"));
    case Contents:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "功能"));
    case State:
        return translated(QT_TRANSLATE_NOOP("CommandWordDialog", "状态"));
    default:
        return {};
    }
}

} // namespace mevo
