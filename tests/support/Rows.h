#pragma once

#include "support/Texts.h"

#include <QTest>

#include <memory>
#include <tuple>
#include <typeinfo>

/// Texts of a row: `{"a", "b"}`.
class RowTexts : public QStringList
{
public:
    RowTexts() = default;
    RowTexts(std::initializer_list<Utf8Text> texts)
        : QStringList(list(texts))
    {
    }
    RowTexts(const QStringList &texts)
        : QStringList(texts)
    {
    }
};

/// A row's name, written as by printf.
template <class... Arguments>
QByteArray rowName(const char *format, Arguments... arguments)
{
    return QString::asprintf(format, arguments...).toUtf8();
}

/// The cells of one row, whatever their types.
struct RowCells
{
    std::shared_ptr<const void> cells;
    const std::type_info *type = nullptr;
};
Q_DECLARE_METATYPE(RowCells)

/// The table of a data-driven test, with a column of each type. In a data function `Rows<int, QString> row;`
/// begins it and `row("its name", 7, "text");` adds to it; the test has the cells of its row by
/// `const auto [number, text] = rowOf<int, QString>();`.
template <class... Cells>
class Rows
{
    template <class Cell>
    using Written = std::conditional_t<std::is_same_v<Cell, QString>, Utf8Text,
                                       std::conditional_t<std::is_same_v<Cell, QStringList>, RowTexts, Cell>>;

public:
    Rows() { QTest::addColumn<RowCells>("cells"); }
    void operator()(const char *name, const Written<Cells> &...cells) const
    {
        using Tuple = std::tuple<Cells...>;
        QTest::newRow(name) << RowCells{std::make_shared<const Tuple>(cells...), &typeid(Tuple)};
    }
};

/// The whole table of a test with one flag: the row in which it is set, and the one in which it is not.
inline void flagRows(const char *set, const char *notSet)
{
    const Rows<bool> row;
    row(set, true);
    row(notSet, false);
}

/// The cells of the row that is being tested; the types are those of its table.
template <class... Cells>
std::tuple<Cells...> rowOf()
{
    using Tuple = std::tuple<Cells...>;
    const auto *row = static_cast<const RowCells *>(QTest::qData("cells", qMetaTypeId<RowCells>()));
    if (*row->type != typeid(Tuple)) {
        qFatal("%s: its table has cells of other types", QTest::currentTestFunction());
    }
    return *static_cast<const Tuple *>(row->cells.get());
}
