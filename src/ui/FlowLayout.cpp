#include "ui/FlowLayout.h"

#include <algorithm>

namespace mevo {

namespace {
constexpr int gapBeside = 18;
constexpr int gapBelow = 6;
} // namespace

FlowLayout::FlowLayout()
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem *item)
{
    m_items.emplace_back(item);
}

int FlowLayout::count() const
{
    return static_cast<int>(m_items.size());
}

QLayoutItem *FlowLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem *item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item;
}

int FlowLayout::heightForWidth(int width) const
{
    return arrange(QRect(0, 0, width, 0), false);
}

void FlowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const auto &item : m_items) {
        if (!item->isEmpty()) {
            size = size.expandedTo(item->minimumSize());
        }
    }
    return size;
}

int FlowLayout::arrange(const QRect &rect, bool move) const
{
    struct Placed
    {
        QLayoutItem *item;
        int x;
        QSize size;
    };
    int y = rect.top();
    std::vector<Placed> row;
    const auto endRow = [&] {
        int height = 0;
        for (const Placed &each : row) {
            height = std::max(height, each.size.height());
        }
        for (std::size_t i = 0; move && i < row.size(); ++i) {
            Placed &each = row[i];
            const bool last = i + 1 == row.size();
            if (last && (each.item->expandingDirections() & Qt::Horizontal) != 0) {
                each.size.setWidth(rect.right() + 1 - each.x);
            }
            each.item->setGeometry(QRect(QPoint(each.x, y + (height - each.size.height()) / 2), each.size));
        }
        y += height + gapBelow;
        row.clear();
    };
    int x = rect.left();
    for (const auto &item : m_items) {
        if (item->isEmpty()) {
            continue;
        }
        QSize size = item->sizeHint().expandedTo(item->minimumSize());
        size.setWidth(std::min(size.width(), std::max(rect.width(), item->minimumSize().width())));
        if (!row.empty() && x + size.width() > rect.right() + 1) {
            endRow();
            x = rect.left();
        }
        row.push_back({item.get(), x, size});
        x += size.width() + gapBeside;
    }
    if (row.empty()) {
        return 0;
    }
    endRow();
    return y - gapBelow - rect.top();
}

} // namespace mevo
