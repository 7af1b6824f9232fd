// How the settings dialog makes its controls of the table.

#include "ui/FlowLayout.h"
#include "ui/settings/CSettingDialog.h"
#include "ui/settings/SettingAccounts.h"

#include "audio/MicrophoneMeter.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int wordsWidth = 12; ///< characters that a field of words shows at the least
constexpr int textWidth = 16;

int widthOf(const QWidget *widget, int characters)
{
    return widget->fontMetrics().averageCharWidth() * characters;
}

} // namespace

QString CSettingDialog::shownText(const char *source)
{
    return source == nullptr ? QString() : QCoreApplication::translate("CSettingDialog", source);
}

void CSettingDialog::build()
{
    setWindowTitle(tr("设置"));
    setObjectName(QStringLiteral("CSettingDialog"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setStyleSheet(QStringLiteral("QToolTip { font: 16pt;color: #ffffff; background-color: #2a82da; border: "
                                 "1px solid white; }"));
    m_pages->setObjectName(QStringLiteral("tabWidget_Setting"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_pages);
    QVBoxLayout *page = nullptr;
    mevo::Page last{};
    for (const mevo::GroupRow &group : mevo::controlGroups()) {
        if (page == nullptr || group.page != last) {
            if (page != nullptr) {
                page->addStretch();
            }
            page = buildPage(group.page);
            last = group.page;
        }
        buildGroup(group, group.parent != nullptr ? m_groupLayouts.value(QLatin1String(group.parent)) : page);
    }
    page->addStretch();
    control<QLineEdit>("lineEdit_NetworkProxy_Port")
        ->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,5}")), this));
    QMetaObject::connectSlotsByName(this);
    m_accounts = new mevo::SettingAccounts(m_controls, m_host.accounts(), this);
}

/// A page scrolls where the screen is too small for it.
QVBoxLayout *CSettingDialog::buildPage(mevo::Page page)
{
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    area->setWidget(content);
    m_pages->addTab(area, shownText(mevo::pageTitle(page)));
    return layout;
}

void CSettingDialog::buildGroup(const mevo::GroupRow &group, QVBoxLayout *layout)
{
    auto *box = new QGroupBox(shownText(group.title));
    box->setObjectName(QLatin1String(group.name));
    auto *lines = new QVBoxLayout(box);
    layout->addWidget(box);
    m_groups.insert(box->objectName(), box);
    m_groupLayouts.insert(box->objectName(), lines);
    mevo::FlowLayout *line = nullptr;
    for (const Row &row : group.rows) {
        if (line == nullptr || row.beginsLine) {
            line = new mevo::FlowLayout;
            lines->addLayout(line);
        }
        QWidget *made = buildControl(row);
        line->addWidget(made);
        m_carriers.insert(QLatin1String(row.name), made);
    }
}

/// The control with what belongs to it, for the layout.
QWidget *CSettingDialog::buildControl(const Row &row)
{
    QWidget *made = nullptr;
    switch (row.kind) {
    case mevo::ControlKind::Check:
        made = new QCheckBox(shownText(row.label));
        break;
    case mevo::ControlKind::Radio: {
        auto *button = new QRadioButton(shownText(row.label));
        QButtonGroup *&group = m_radioGroups[QLatin1String(row.radioGroup)];
        if (group == nullptr) {
            group = new QButtonGroup(this);
        }
        group->addButton(button, group->buttons().size());
        made = button;
        break;
    }
    case mevo::ControlKind::Choice:
        made = buildChoice(row);
        break;
    case mevo::ControlKind::Text:
    case mevo::ControlKind::Secret:
    case mevo::ControlKind::Account:
    case mevo::ControlKind::Path:
    case mevo::ControlKind::Words: {
        auto *line = new QLineEdit;
        const bool words = row.kind == mevo::ControlKind::Words;
        line->setMinimumWidth(widthOf(line, words ? wordsWidth : textWidth));
        line->setEchoMode(row.kind == mevo::ControlKind::Secret ? QLineEdit::Password : QLineEdit::Normal);
        made = line;
        break;
    }
    case mevo::ControlKind::Button:
    case mevo::ControlKind::Picture:
    case mevo::ControlKind::Notice: {
        const bool notice = row.kind == mevo::ControlKind::Notice;
        auto *button =
            new QPushButton(row.kind == mevo::ControlKind::Button ? shownText(row.label) : QString());
        button->setAutoDefault(false); // the return key of a field must not press it
        button->setFlat(notice);
        if (notice) {
            button->setStyleSheet(QStringLiteral("color: #c00000; text-decoration: underline;"));
        }
        made = button;
        break;
    }
    case mevo::ControlKind::Caption: {
        auto *label = new QLabel;
        label->setTextFormat(Qt::PlainText); // parts of it come from the backend
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        made = label;
        break;
    }
    case mevo::ControlKind::Level: {
        auto *bar = new QProgressBar;
        bar->setRange(0, mevo::MicrophoneMeter::highestLevel);
        bar->setTextVisible(false);
        bar->setFixedWidth(widthOf(bar, textWidth));
        made = bar;
        break;
    }
    }
    made->setObjectName(QLatin1String(row.name));
    made->setToolTip(shownText(row.tipText));
    m_controls.insert(made->objectName(), made);
    nameForReaders(row, made);
    connectControl(row, made);
    return carried(row, made);
}

QComboBox *CSettingDialog::buildChoice(const Row &row)
{
    auto *box = new QComboBox;
    for (const char *item : row.items) {
        box->addItem(shownText(item));
    }
    box->setFocusPolicy(Qt::StrongFocus);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    int longest = 4;
    for (int i = 0; i < box->count(); ++i) {
        longest = std::max(longest, box->fontMetrics().horizontalAdvance(box->itemText(i)) /
                                            box->fontMetrics().averageCharWidth() +
                                        1);
    }
    box->setMinimumContentsLength(row.items.empty() ? textWidth : longest);
    box->installEventFilter(this); // the wheel is for the page
    return box;
}

QWidget *CSettingDialog::carried(const Row &row, QWidget *control)
{
    switch (row.kind) {
    case mevo::ControlKind::Choice:
    case mevo::ControlKind::Text:
    case mevo::ControlKind::Secret:
    case mevo::ControlKind::Account:
    case mevo::ControlKind::Path:
    case mevo::ControlKind::Words:
    case mevo::ControlKind::Level:
        break;
    default:
        return control;
    }
    auto *carrier = new QWidget;
    auto *layout = new QHBoxLayout(carrier);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *label = new QLabel(shownText(row.label));
    label->setBuddy(control);
    label->setToolTip(control->toolTip());
    layout->addWidget(label);
    layout->addWidget(control, 1);
    const auto add = [this, layout, &row](const char *name, const QString &text) {
        auto *button = new QPushButton(text);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        button->setAccessibleName(text + QLatin1Char(' ') + shownText(row.label));
        layout->addWidget(button);
        m_controls.insert(button->objectName(), button);
        return button;
    };
    if (row.kind == mevo::ControlKind::Path) {
        connect(add(row.button, tr("浏览…")), &QPushButton::clicked, this, [this, &row] { browse(row); });
    } else if (row.kind == mevo::ControlKind::Words) {
        connect(add(row.saveButton, tr("保存")), &QPushButton::clicked, this,
                [this, &row] { saveWords(row); });
        connect(add(row.semicolonButton, tr("添加分号(半角)")), &QPushButton::clicked, this, [this, &row] {
            auto *line = this->control<QLineEdit>(row.name);
            line->insert(QStringLiteral(";"));
            line->setModified(true);
            line->setFocus();
        });
    }
    // Numbers and choices stay as wide as they need to be.
    const bool grows = row.kind != mevo::ControlKind::Choice && row.kind != mevo::ControlKind::Level;
    carrier->setSizePolicy(grows ? QSizePolicy::Expanding : QSizePolicy::Maximum, QSizePolicy::Preferred);
    return carrier;
}

void CSettingDialog::nameForReaders(const Row &row, QWidget *control)
{
    QString name = shownText(row.label);
    while (name.endsWith(QChar(u'：')) || name.endsWith(QLatin1Char(':')) ||
           name.endsWith(QLatin1Char(' '))) {
        name.chop(1);
    }
    control->setAccessibleName(name.trimmed().replace(QLatin1Char('\n'), QLatin1Char(' ')));
    control->setAccessibleDescription(control->toolTip());
}

/// Controls with a slot of their own are connected by their names.
void CSettingDialog::connectControl(const Row &row, QWidget *control)
{
    if (auto *words = qobject_cast<QLineEdit *>(control); words && row.kind == mevo::ControlKind::Words) {
        connect(words, &QLineEdit::editingFinished, this, [this, &row] { wordsEdited(row); });
        if (row.selector != nullptr && m_radioGroups.contains(QLatin1String(row.selector))) {
            // After what the button itself writes.
            connect(m_radioGroups.value(QLatin1String(row.selector)),
                    QOverload<QAbstractButton *>::of(&QButtonGroup::buttonClicked), this,
                    [this, &row] { wordsWanted(row); });
        }
        return;
    }
    if (row.hasSlot) {
        return;
    }
    if (auto *box = qobject_cast<QCheckBox *>(control)) {
        connect(box, &QCheckBox::clicked, this, [this, &row](bool on) { writeFlag(row, on); });
    } else if (auto *radio = qobject_cast<QRadioButton *>(control)) {
        connect(radio, &QRadioButton::clicked, this, [this, &row] { writeRadio(row); });
    } else if (auto *choice = qobject_cast<QComboBox *>(control)) {
        connect(choice, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                [this, &row](int index) { writeNumber(row, index); });
    } else if (auto *line = qobject_cast<QLineEdit *>(control)) {
        connect(line, &QLineEdit::editingFinished, this, [this, &row] { writeText(row); });
    }
}
