// How the editor of the command words is built.

#include "commands/CommandForm.h"
#include "ui/commands/CommandRowsModel.h"
#include "ui/commands/CommandWordDialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize firstSize{819, 687}; ///< pixels
constexpr int frameAllowance = 48;   ///< about, for the frame that the window manager adds
constexpr int lowestTable = 110;     ///< a head and two rows
constexpr int wordsWidth = 300;
constexpr int typeWidth = 130;      ///< the longest of the types' names in any language
constexpr int longestWords = 65535; ///< characters

struct ViewButton
{
    const char *name;
    int view; ///< number of the type, -1 for all
};
constexpr ViewButton viewButtons[] = {{"radioButton_ShowAll", -1},
                                      {"radioButton_OnlyShowWebype", 2}, // misspelt in style sheets too
                                      {"radioButton_OnlyShowFileType", 3},
                                      {"radioButton_OnlyShowDirectoryType", 4},
                                      {"radioButton_OnlyShowShortcutType", 5},
                                      {"radioButton_OnlyShowPhraseType", 6},
                                      {"radioButton_OnlyShowVoiceKeyboardType", 0},
                                      {"radioButton_OnlyShowPinyinKeyboardType", 1}};

} // namespace

void CommandWordDialog::makeWindow()
{
    setObjectName(QStringLiteral("CommandWordDialog"));
    setWindowTitle(tr("语音映射词设置"));
    setWindowIcon(QIcon(QStringLiteral(":/rec/logo.ico")));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                   Qt::WindowStaysOnTopHint);
    // On a screen that is too small for all of it the buttons stay in sight, and the rest scrolls.
    auto *content = new QWidget;
    auto *rows = new QVBoxLayout(content);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(makeViews());
    rows->addWidget(makeSearch());
    rows->addWidget(m_table, 1);
    rows->addWidget(makeFields());
    m_table->setMinimumHeight(lowestTable);
    auto *area = new QScrollArea(this);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(content);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(area, 1);
    layout->addWidget(makeButtons());
    const QRect free = screen()->availableGeometry();
    resize(firstSize.boundedTo(free.size() - QSize(frameAllowance / 2, frameAllowance)));
    move(free.center() - rect().center());
    m_table->setColumnWidth(mevo::CommandRowsModel::Words, std::min(wordsWidth, width() / 3));
    for (const int column : {mevo::CommandRowsModel::Type, mevo::CommandRowsModel::State}) {
        m_table->setColumnWidth(column, std::min(typeWidth, width() / 6));
    }
}

void CommandWordDialog::buildTable()
{
    m_table->setObjectName(QStringLiteral("tableWidget"));
    m_table->setAccessibleName(tr("语音映射词设置"));
    m_table->setModel(m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setStyleSheet(QStringLiteral("selection-background-color:lightblue;selection-color:black;"));
    m_table->setTabKeyNavigation(false);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView *header = m_table->horizontalHeader();
    header->setStyleSheet(QStringLiteral("QHeaderView::section{background:skyblue;}"));
    header->setSectionsClickable(true);
    m_table->setColumnHidden(mevo::CommandRowsModel::Hide, true);
    header->setSectionResizeMode(mevo::CommandRowsModel::Contents, QHeaderView::Stretch);
    connect(header, &QHeaderView::sectionClicked, this, &CommandWordDialog::record_sortbyclounm);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (!m_busy) {
                    showRow(current.row());
                }
            });
    // A row that is current already, too: another one's hit or an edit may have changed the fields.
    connect(m_table, &QTableView::clicked, this, [this](const QModelIndex &index) { showRow(index.row()); });
    auto *insertKey = new QShortcut(QKeySequence(Qt::Key_Insert), m_table);
    auto *deleteKey = new QShortcut(QKeySequence(Qt::Key_Delete), m_table);
    for (QShortcut *key : {insertKey, deleteKey}) {
        key->setContext(Qt::WidgetShortcut);
    }
    connect(insertKey, &QShortcut::activated, this, &CommandWordDialog::on_pushButton_AddCmdWord_clicked);
    connect(deleteKey, &QShortcut::activated, this, &CommandWordDialog::on_pushButton_DelCmdWord_clicked);
}

QPushButton *CommandWordDialog::button(const char *name, const QString &text)
{
    auto *made = new QPushButton(text, this);
    made->setObjectName(QLatin1String(name));
    made->setAutoDefault(false);
    return made;
}

QCheckBox *CommandWordDialog::checkBox(const char *name, const QString &text)
{
    auto *made = new QCheckBox(text, this);
    made->setObjectName(QLatin1String(name));
    return made;
}

QWidget *CommandWordDialog::makeViews()
{
    auto *box = new QGroupBox(tr("类型"), this);
    auto *layout = new QGridLayout(box);
    auto *group = new QButtonGroup(this);
    int place = 0;
    for (const ViewButton &row : viewButtons) {
        const View view = row.view < 0 ? View() : View(mevo::CommandType(row.view));
        auto *radio = new QRadioButton(view ? tr(mevo::commandForm(*view).view) : tr("显示全部"), box);
        radio->setObjectName(QLatin1String(row.name));
        group->addButton(radio);
        layout->addWidget(radio, place / 4, place % 4);
        ++place;
        m_viewButtons.insert(row.view, radio);
        connect(radio, &QRadioButton::clicked, this, [this, view] { chooseView(view); });
    }
    return box;
}

QWidget *CommandWordDialog::makeSearch()
{
    auto *line = new QWidget(this);
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_search = new QLineEdit(line);
    m_search->setObjectName(QStringLiteral("lineEdit_SearchCmdWord"));
    m_search->setPlaceholderText(tr("待查询的语音映射词"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_search->setClearButtonEnabled(true);
    auto *search = button("pushButton_SearchCmdWord", tr("查询"));
    m_previous = button("pushButton_SearchCmdWord_Previous", tr("上一个"));
    m_next = button("pushButton_SearchCmdWord_Next", tr("下一个"));
    m_showHidden = checkBox("checkBox_ShowHideContents", tr("显示隐藏内容"));
    layout->addWidget(m_search, 1);
    for (QWidget *widget : std::initializer_list<QWidget *>{search, m_previous, m_next, m_showHidden}) {
        layout->addWidget(widget);
    }
    m_previous->hide();
    m_next->hide();
    connect(m_search, &QLineEdit::returnPressed, this,
            &CommandWordDialog::on_pushButton_SearchCmdWord_clicked);
    return line;
}

QWidget *CommandWordDialog::makeFields()
{
    auto *box = new QGroupBox(tr("语音映射词"), this);
    auto *layout = new QGridLayout(box);
    m_words = new QLineEdit(box);
    m_words->setObjectName(QStringLiteral("lineEdit_CommandWord"));
    m_words->setMaxLength(longestWords);
    m_words->setAccessibleName(tr("语音映射词"));
    m_semicolon = button("pushButton_addSemicolon", tr("加分号"));
    m_semicolon->setToolTip(tr("在光标处插入分号，用来分隔多个语音映射词"));
    m_hide = checkBox("checkBox_Hide", tr("隐藏"));
    m_type = new QComboBox(box);
    m_type->setObjectName(QStringLiteral("comboBox_CmdWordType"));
    m_type->setAccessibleName(tr("类型"));
    using Type = mevo::CommandType;
    for (const Type type : {Type::Web, Type::File, Type::Directory, Type::Shortcut, Type::Phrase}) {
        m_type->addItem(tr(mevo::commandForm(type).view), mevo::commandTypeLabel(type));
    }
    m_type->setEnabled(false);
    m_content = new QLineEdit(box);
    m_content->setObjectName(QStringLiteral("lineEdit_CmdWordContent"));
    m_content->setAccessibleName(tr("功能"));
    m_browse = button("pushButton_Browser", tr("文件"));
    m_browseApp = button("pushButton_Browser_App", tr("应用程序"));

    m_shortcut = new QWidget(box);
    auto *keys = new QHBoxLayout(m_shortcut);
    keys->setContentsMargins(0, 0, 0, 0);
    m_control = checkBox("checkBox_Control", QStringLiteral("Control"));
    m_alt = checkBox("checkBox_Alt", QStringLiteral("Alt"));
    m_shift = checkBox("checkBox_Shift", QStringLiteral("Shift"));
    m_win = checkBox("checkBox_Win", QStringLiteral("Win"));
    m_key = new QComboBox(m_shortcut);
    m_key->setObjectName(QStringLiteral("comboBox_ShortCutKey"));
    m_key->setAccessibleName(tr("快捷键"));
    m_key->addItem(QString());
    m_key->addItems(m_keys.names);
    for (QWidget *widget : std::initializer_list<QWidget *>{m_control, m_alt, m_shift, m_win, m_key}) {
        keys->addWidget(widget);
    }
    keys->addStretch();

    layout->addWidget(new QLabel(tr("语音映射词"), box), 0, 0);
    layout->addWidget(m_words, 0, 1);
    layout->addWidget(m_semicolon, 0, 2);
    layout->addWidget(m_hide, 0, 3);
    layout->addWidget(new QLabel(tr("功能"), box), 1, 0);
    layout->addWidget(m_content, 1, 1);
    layout->addWidget(m_shortcut, 1, 1);
    layout->addWidget(m_browse, 1, 2);
    layout->addWidget(m_browseApp, 1, 3);
    layout->addWidget(new QLabel(tr("类型"), box), 2, 0);
    layout->addWidget(m_type, 2, 1, Qt::AlignLeft);
    return box;
}

QWidget *CommandWordDialog::makeButtons()
{
    auto *line = new QWidget(this);
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_add = button("pushButton_AddCmdWord", tr("增加"));
    m_edit = button("pushButton_Edit", tr("编辑"));
    m_delete = button("pushButton_DelCmdWord", tr("删除"));
    m_save = button("pushButton_SaveCmdWord", tr("保存"));
    m_import = button("pushButton_Import", tr("导入"));
    for (QPushButton *made :
         {m_add, m_edit, m_delete, m_save, m_import, button("pushButton_Export", tr("导出"))}) {
        layout->addWidget(made);
    }
    layout->addStretch();
    layout->addWidget(button("pushButton_Close", tr("关闭")));
    return line;
}
