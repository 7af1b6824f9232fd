#include "ui/UndeliveredDialog.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int longestRow = 200; ///< characters of a text that its row shows, and its tip ten times as many
} // namespace

UndeliveredDialog::UndeliveredDialog(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus |
                          Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
    , m_list(new QListWidget(this))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(tr("未送达的文字"));
    setObjectName(QStringLiteral("UndeliveredDialog"));
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setAccessibleName(windowTitle());
    m_list->setAlternatingRowColors(true);
    m_list->setTextElideMode(Qt::ElideRight);
    m_list->setUniformItemSizes(true);
    m_list->setMinimumSize(460, 200);

    auto *hint = new QLabel(tr("选中一条，再把光标放到要输入的窗口，然后点“输入”。"), this);
    hint->setWordWrap(true);

    QPushButton *type = addButton("pushButton_Type", tr("输入"));
    QPushButton *copy = addButton("pushButton_Copy", tr("复制"));
    QPushButton *remove = addButton("pushButton_Remove", tr("删除"));
    QPushButton *removeAll = addButton("pushButton_RemoveAll", tr("全部删除"));
    connect(type, &QPushButton::clicked, this, [this] { Q_EMIT typeWanted(selected()); });
    connect(copy, &QPushButton::clicked, this, [this] { Q_EMIT copyWanted(selected()); });
    connect(remove, &QPushButton::clicked, this, [this] { Q_EMIT removeWanted(selected()); });
    connect(removeAll, &QPushButton::clicked, this, &UndeliveredDialog::removeAllWanted);
    m_buttons[0] = type;
    m_buttons[1] = copy;
    m_buttons[2] = remove;

    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {type, copy, remove}) {
        buttons->addWidget(button);
    }
    buttons->addStretch();
    buttons->addWidget(removeAll);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addWidget(m_list);
    layout->addLayout(buttons);
}

QPushButton *UndeliveredDialog::addButton(const char *name, const QString &text)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    return button;
}

int UndeliveredDialog::selected() const
{
    return m_list->currentRow();
}

void UndeliveredDialog::setTexts(const std::vector<mevo::UndeliveredText> &texts)
{
    const int row = m_list->currentRow();
    m_list->clear();
    for (const mevo::UndeliveredText &entry : texts) {
        const QString time = QLocale().toString(entry.when.toLocalTime(), QLocale::ShortFormat);
        auto *item = new QListWidgetItem(
            time + QStringLiteral("  ") + entry.text.left(longestRow).simplified(), m_list);
        item->setToolTip(entry.text.left(10 * longestRow).toHtmlEscaped());
    }
    m_list->setCurrentRow(std::clamp(row, 0, std::max(0, m_list->count() - 1)));
    for (QPushButton *button : m_buttons) {
        button->setEnabled(m_list->count() > 0);
    }
}
