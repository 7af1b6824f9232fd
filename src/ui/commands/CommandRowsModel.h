#pragma once

#include "commands/CommandFaults.h"

#include <QAbstractTableModel>

namespace mevo {

/// The rows of a command table for a view: one row of the table each, in its order. The first four columns
/// are what the file holds; the last says what is wrong with a row.
class CommandRowsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Hide, Words, Type, Contents, State, columnCountOfTable };

    explicit CommandRowsModel(QObject *parent = nullptr);

    const CommandRows &rows() const { return m_rows; }
    /// Another one with each change of a row or of their order.
    int revision() const { return m_revision; }
    void setRows(CommandRows rows);
    /// Adds a row at the end; gives its number.
    int append(CommandRow row);
    void remove(int row);
    /// Text of one of the first four columns; null outside the table.
    QString text(int row, Column column) const;
    void setText(int row, Column column, const QString &text);
    /// Stable, by the texts of a column.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    /// One entry a row, or none for rows that have not been looked at.
    void setDiagnoses(std::vector<CommandDiagnosis> diagnoses);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString displayText(int row, Column column) const;
    QString stateText(int row) const;
    QString faultTexts(int row) const;

    CommandRows m_rows;
    std::vector<CommandDiagnosis> m_diagnoses;
    int m_revision = 0;
};

} // namespace mevo
