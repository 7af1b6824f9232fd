#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace mevo {

/// Lays its items out in a row and begins a new one where the width is used up, so that a line of controls
/// needs no more width than its widest item. An item that can grow in width takes the rest of its row.
class FlowLayout : public QLayout
{
public:
    FlowLayout();
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    int count() const override;
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    void setGeometry(const QRect &rect) override;
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;

private:
    /// Answers the height; moves the items as well when `move` is on.
    int arrange(const QRect &rect, bool move) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace mevo
