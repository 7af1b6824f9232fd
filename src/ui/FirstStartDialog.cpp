#include "ui/FirstStartDialog.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextDocument>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int narrowest = 460;
constexpr int ruleLines = 6;
constexpr int frameAllowance = 40; ///< for what a window manager puts around it

QPushButton *makeButton(const QString &text, const char *name)
{
    auto *button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false); // the return key of the line must not press it
    return button;
}

const char *nameOf(mevo::FirstStartHelp help)
{
    switch (help) {
    case mevo::FirstStartHelp::OwnAccount:
        return "pushButton_OwnAccount";
    case mevo::FirstStartHelp::InputMethod:
        return "pushButton_InputMethod";
    case mevo::FirstStartHelp::Microphone:
        return "pushButton_Microphone";
    case mevo::FirstStartHelp::UdevRule:
        break;
    }
    return "pushButton_UdevRule";
}

} // namespace

QLabel *FirstStartDialog::makeMark(mevo::FirstStartLine::State state)
{
    using State = mevo::FirstStartLine::State;
    auto *mark = new QLabel;
    switch (state) {
    case State::Works:
        mark->setText(QStringLiteral("✔"));
        mark->setStyleSheet(QStringLiteral("color: #1a7f37;"));
        mark->setAccessibleName(tr("正常"));
        break;
    case State::Missing:
        mark->setText(QStringLiteral("✘"));
        mark->setStyleSheet(QStringLiteral("color: #c00000;"));
        mark->setAccessibleName(tr("缺少"));
        break;
    case State::Unknown:
        mark->setText(QStringLiteral("?"));
        mark->setStyleSheet(QStringLiteral("color: #9a6700;"));
        mark->setAccessibleName(tr("未知"));
        break;
    }
    return mark;
}

FirstStartDialog::FirstStartDialog(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
    , m_area(new QScrollArea(this))
    , m_lines(new QGridLayout)
    , m_rule(new QWidget(this))
    , m_trial(new QLineEdit(this))
{
    setWindowTitle(tr("开始使用"));
    setObjectName(QStringLiteral("FirstStartDialog"));
    setAttribute(Qt::WA_QuitOnClose, false);
    m_lines->setColumnStretch(1, 1);

    auto *ruleLayout = new QVBoxLayout(m_rule);
    ruleLayout->setContentsMargins(0, 0, 0, 0);
    auto *why = new QLabel(tr("在终端中运行下面的命令，再重新插入接收器："));
    why->setWordWrap(true);
    auto *command = new QPlainTextEdit(mevo::udevRuleCommand());
    command->setObjectName(QStringLiteral("plainTextEdit_UdevRule"));
    command->setReadOnly(true);
    command->setTabChangesFocus(true);
    const int margins = 2 * (int(command->document()->documentMargin()) + command->frameWidth());
    command->setFixedHeight(ruleLines * command->fontMetrics().lineSpacing() + margins);
    QPushButton *copy = makeButton(tr("复制命令"), "pushButton_CopyRule");
    connect(copy, &QPushButton::clicked, this,
            [] { QGuiApplication::clipboard()->setText(mevo::udevRuleCommand()); });
    ruleLayout->addWidget(why);
    ruleLayout->addWidget(command);
    ruleLayout->addWidget(copy, 0, Qt::AlignLeft);
    m_rule->hide();

    m_trial->setObjectName(QStringLiteral("lineEdit_Trial"));
    m_trial->setPlaceholderText(tr("点这里，按住话筒键说一句话"));
    auto *trialLabel = new QLabel(tr("试一试："));
    trialLabel->setBuddy(m_trial);
    m_trial->setAccessibleName(trialLabel->text());
    auto *trial = new QHBoxLayout;
    trial->addWidget(trialLabel);
    trial->addWidget(m_trial, 1);

    auto *hint = new QLabel(tr("以后可以在“设置”的“硬件设置”页的“软件下载”中再次打开本窗口。"));
    hint->setWordWrap(true);
    QPushButton *close = makeButton(tr("关闭"), "pushButton_Close");
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    auto *content = new QWidget;
    auto *inside = new QVBoxLayout(content);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->setSpacing(12);
    inside->addLayout(m_lines);
    inside->addWidget(m_rule);
    inside->addLayout(trial);
    inside->addWidget(hint);
    m_area->setWidget(content);
    m_area->setWidgetResizable(true);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setFocusPolicy(Qt::NoFocus);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(m_area);
    layout->addWidget(close, 0, Qt::AlignRight);
    m_trial->setFocus(); // whoever speaks without a click presses no button with a blank of the text
}

void FirstStartDialog::setFacts(const mevo::FirstStartFacts &facts)
{
    const std::vector<mevo::FirstStartLine> lines = mevo::firstStartLines(facts);
    QStringList texts;
    for (const mevo::FirstStartLine &line : lines) {
        texts.append(line.text);
    }
    if (texts == m_shown) {
        return;
    }
    m_shown = texts;
    while (QLayoutItem *item = m_lines->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (facts.receiver) {
        m_rule->hide();
    }
    int row = 0;
    QWidget *before = nullptr;
    for (const mevo::FirstStartLine &line : lines) {
        QLabel *mark = makeMark(line.state);
        auto *text = new QLabel(line.text);
        m_lines->addWidget(mark, row, 0, Qt::AlignTop);
        m_lines->addWidget(text, row++, 1);
        for (const mevo::FirstStartHelp help : line.helps) {
            QPushButton *button = makeButton(mevo::firstStartHelpText(help), nameOf(help));
            m_lines->addWidget(button, row++, 1, Qt::AlignLeft);
            if (before != nullptr) {
                setTabOrder(before, button);
            }
            before = button;
            connect(button, &QPushButton::clicked, this, [this, help] {
                if (help == mevo::FirstStartHelp::UdevRule) {
                    showRule();
                } else {
                    emit helpWanted(help);
                }
            });
        }
    }
    // As they stand, though these are made later than those below.
    for (QWidget *below :
         {findChild<QWidget *>(QStringLiteral("plainTextEdit_UdevRule")),
          findChild<QWidget *>(QStringLiteral("pushButton_CopyRule")), static_cast<QWidget *>(m_trial),
          findChild<QWidget *>(QStringLiteral("pushButton_Close"))}) {
        if (before != nullptr) {
            setTabOrder(before, below);
        }
        before = below;
    }
    for (int i = 0; i < m_lines->count(); ++i) {
        m_lines->itemAt(i)->widget()->show(); // else the size would be worked out without the new ones
    }
    fit();
}

void FirstStartDialog::showRule()
{
    m_rule->show();
    fit();
    m_area->ensureWidgetVisible(m_rule);
}

void FirstStartDialog::fit()
{
    QWidget *const content = m_area->widget();
    content->layout()->activate();
    const QRect screenRect = screen()->availableGeometry().adjusted(0, 0, 0, -frameAllowance);
    const QMargins margins = layout()->contentsMargins();
    const QSize around(margins.left() + margins.right(), margins.top() + margins.bottom() +
                                                             layout()->spacing() +
                                                             layout()->itemAt(1)->sizeHint().height());
    const QSize room = screenRect.size() - around;
    int width = std::max(narrowest, content->sizeHint().width());
    const int height = content->layout()->totalHeightForWidth(width);
    if (height > room.height()) {
        width += m_area->verticalScrollBar()->sizeHint().width();
    }
    // A size alone could be overtaken by the window manager's answer to the one before.
    setMinimumSize(QSize(width, height).boundedTo(room) + around);
    resize(minimumSize());
    if (isVisible() && frameGeometry().bottom() > screenRect.bottom()) {
        move(x(), std::max(screenRect.top(), y() - (frameGeometry().bottom() - screenRect.bottom())));
    }
}
