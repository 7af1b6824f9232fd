#include "ui/translation/TransFace.h"
#include "ui/LastingMenu.h"

#include "ui/BarLayout.h"
#include "ui/translation/TransPlace.h"

#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QStylePainter>
#include <QTextEdit>
#include <QVBoxLayout>

namespace mevo {

namespace {

constexpr int headHeight = 34;
constexpr int margin = 10;
constexpr int settingNameWidth = 70;
constexpr int languageListWidth = 210;

QString tr(const char *text)
{
    return QCoreApplication::translate("CTransTipDialog", text);
}

const char *const style =
    "QLabel, QCheckBox { color: #d5e3ee; background: transparent; }"
    "QLabel#label_SourceLan, QLabel#label_DestLan { color: #ffffff; font-weight: bold; }"
    "QLabel#label_SourceLan:hover, QLabel#label_DestLan:hover { color: #6ff0e2; }"
    "QCheckBox::indicator { width: 14px; height: 14px; image: url(:/rec/tans/TransTick_On.png); }"
    "QCheckBox::indicator:checked { image: url(:/rec/tans/TransTick_Hover.png); }"
    "QTextEdit { color: #ffffff; background: rgba(255, 255, 255, 20); border: 1px solid #3d566b;"
    " border-radius: 5px; selection-background-color: #2a82da; selection-color: #ffffff; }"
    "QTextEdit#textEdit_SourceLan:focus { border: 1px solid #1fb9ae; }"
    "QPushButton[kind=\"text\"] { color: #ffffff; background: #24445c; border: 1px solid #3d6480; "
    "border-radius: 4px;"
    " padding: 3px 9px; }"
    "QPushButton[kind=\"text\"]:hover { background: #2f5a78; }"
    "QPushButton[kind=\"text\"]:pressed { background: #1b3346; }"
    "QPushButton#pushButton_TransSend { background: #178a82; border-color: #1fb9ae; }"
    "QPushButton#pushButton_TransSend:hover { background: #1fb9ae; }"
    "QPushButton#pushButton_TransSendSet { padding-right: 18px; }"
    "QPushButton::menu-indicator { image: url(:/rec/tans/TransArrow.png); subcontrol-position: right center;"
    " right: 5px; }"
    "QComboBox { color: #ffffff; background: #1b3346; border: 1px solid #3d566b; border-radius: 4px;"
    " padding: 2px 4px; combobox-popup: 0; }"
    "QComboBox::drop-down { border: none; width: 18px; }"
    "QComboBox::down-arrow { image: url(:/rec/tans/TransArrow.png); }"
    "QComboBox QAbstractItemView, QMenu { color: #ffffff; background: #1b2f42; border: 1px solid #3d566b;"
    " selection-background-color: #2a82da; selection-color: #ffffff; }"
    "QScrollBar:vertical { background: transparent; width: 9px; margin: 1px; }"
    "QScrollBar::handle:vertical { background: #4a7391; border-radius: 3px; min-height: 20px; }"
    "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
    "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }"
    "QMenu::item { padding: 4px 22px; }"
    "QMenu::item:selected { background: #2a82da; }"
    "QMenu::indicator { width: 14px; height: 14px; left: 4px; }"
    "QMenu::indicator:checked { image: url(:/rec/tans/TransTick_Hover.png); }";

template <class Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QPushButton *textButton(QWidget *parent, const char *name, const char *text)
{
    auto *button = named(new QPushButton(tr(text), parent), name);
    button->setProperty("kind", QStringLiteral("text"));
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    return button;
}

QPushButton *pictureButton(QWidget *parent, const char *name, const char *stem, const QSize &size,
                           const char *text)
{
    auto *button = named(new QPushButton(parent), name);
    button->setStyleSheet(barButtonStyle(QLatin1String("tans/") + QLatin1String(stem)));
    button->setFixedSize(size);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    button->setToolTip(tr(text));
    button->setAccessibleName(tr(text));
    return button;
}

QCheckBox *checkBox(QWidget *parent, const char *name, const char *text)
{
    auto *box = named(new QCheckBox(tr(text), parent), name);
    box->setFocusPolicy(Qt::NoFocus);
    return box;
}

/// Shows as much of a long row as there is room for, and the whole of it as a tip.
class ShortenedBox : public QComboBox
{
public:
    using QComboBox::QComboBox;

protected:
    void paintEvent(QPaintEvent *) override
    {
        constexpr int besideIcon = 8; ///< what the style leaves free there
        QStylePainter painter(this);
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QRect room =
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
        const int icon = option.currentIcon.isNull() ? 0 : iconSize().width() + besideIcon;
        const QString whole = option.currentText;
        option.currentText = fontMetrics().elidedText(whole, Qt::ElideRight, room.width() - icon);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip) {
            setToolTip(currentText());
        }
        return QComboBox::event(event);
    }
};

QComboBox *comboBox(QWidget *parent, const char *name, const char *accessible)
{
    auto *box = named(new ShortenedBox(parent), name);
    box->setFocusPolicy(Qt::NoFocus);
    box->setView(new QListView(box)); // else the style sheet does not reach the rows
    box->setAccessibleName(tr(accessible));
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // all of one width
    return box;
}

QTextEdit *pane(QWidget *parent, const char *name, const char *accessible)
{
    auto *edit = named(new QTextEdit(parent), name);
    edit->setAcceptRichText(false);
    edit->setFocusPolicy(Qt::ClickFocus);
    edit->setTabChangesFocus(true);
    edit->setAccessibleName(tr(accessible));
    edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return edit;
}

QLabel *languageLabel(QWidget *parent, const char *name)
{
    auto *label = named(new QLabel(parent), name);
    const char *const swap = QT_TRANSLATE_NOOP("CTransTipDialog", "点击交换语言");
    label->setToolTip(tr(swap));
    label->setCursor(Qt::PointingHandCursor);
    return label;
}

} // namespace

TransFace::TransFace(QDialog *window)
{
    QWidget *head = makeHead(window);
    QWidget *panes = makePanes(window);
    settings = makeSettings(window);
    for (QWidget *part : {head, panes, settings}) {
        part->setStyleSheet(QLatin1String(style)); // not the window's own: its messages would have it, too
    }
    head->setGeometry(0, 0, transWindowWidth, headHeight);
    panes->setGeometry(0, headHeight, transWindowWidth, transWindowHeight - headHeight);
    settings->setGeometry(0, transWindowHeight, transWindowWidth, transWindowHeightOpen - transWindowHeight);
    settings->hide();
}

QWidget *TransFace::makeHead(QDialog *window)
{
    auto *head = new QWidget(window);
    label_SourceLan = languageLabel(head, "label_SourceLan");
    label_DestLan = languageLabel(head, "label_DestLan");
    auto *arrows = new QLabel(head);
    arrows->setPixmap(QPixmap(QStringLiteral(":/rec/tans/TransSwap_On.png")));
    pushButton_SelectDelimit =
        textButton(head, "pushButton_SelectDelimit", QT_TRANSLATE_NOOP("CTransTipDialog", "取词"));
    const char *const select = QT_TRANSLATE_NOOP("CTransTipDialog", "翻译在其他窗口中选中的文字");
    pushButton_SelectDelimit->setToolTip(tr(select));
    checkBox_ShowSetTransLan =
        checkBox(head, "checkBox_ShowSetTransLan", QT_TRANSLATE_NOOP("CTransTipDialog", "设置"));
    pushButton_TransClose = pictureButton(head, "pushButton_TransClose", "TransClose", {20, 20},
                                          QT_TRANSLATE_NOOP("CTransTipDialog", "关闭翻译窗口"));
    auto *row = new QHBoxLayout(head);
    row->setContentsMargins(margin + 4, 0, margin - 2, 0);
    row->addWidget(label_SourceLan);
    row->addWidget(arrows);
    row->addWidget(label_DestLan);
    row->addStretch();
    row->addWidget(pushButton_SelectDelimit);
    row->addWidget(checkBox_ShowSetTransLan);
    row->addWidget(pushButton_TransClose);
    return head;
}

QWidget *TransFace::makePanes(QDialog *window)
{
    auto *panes = new QWidget(window);
    const QSize icon(22, 22);
    const char *const read = QT_TRANSLATE_NOOP("CTransTipDialog", "朗读");
    const char *const clear = QT_TRANSLATE_NOOP("CTransTipDialog", "清空");
    textEdit_SourceLan = pane(panes, "textEdit_SourceLan", QT_TRANSLATE_NOOP("CTransTipDialog", "原文"));
    textEdit_DestLan = pane(panes, "textEdit_DestLan", QT_TRANSLATE_NOOP("CTransTipDialog", "译文"));
    pushButton_SourceLan_tts = pictureButton(panes, "pushButton_SourceLan_tts", "TransRead", icon, read);
    pushButton_ClearTransSource =
        pictureButton(panes, "pushButton_ClearTransSource", "TransClear", icon, clear);
    pushButton_DestLan_tts = pictureButton(panes, "pushButton_DestLan_tts", "TransRead", icon, read);
    pushButton_ClearTransDest = pictureButton(panes, "pushButton_ClearTransDest", "TransClear", icon, clear);

    checkBox_Delimit_Translation =
        checkBox(panes, "checkBox_Delimit_Translation", QT_TRANSLATE_NOOP("CTransTipDialog", "划词翻译"));
    pushButton_TransSendSet = textButton(panes, "pushButton_TransSendSet", "");
    sendMenu = named(new QMenu(pushButton_TransSendSet), "sendMenu");
    new LastingMenu(sendMenu);
    sendMenu->setWindowTitle(QStringLiteral("SendMenu")); // seen by nobody; tools find the menu by it
    pushButton_TransSendSet->setMenu(sendMenu);
    pushButton_TransSend =
        textButton(panes, "pushButton_TransSend", QT_TRANSLATE_NOOP("CTransTipDialog", "上屏"));

    auto *grid = new QGridLayout(panes);
    grid->setContentsMargins(margin, 8, margin, 8);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(6);
    int row = 0;
    for (const auto &[edit, reader, cleaner] :
         {std::tuple(textEdit_SourceLan, pushButton_SourceLan_tts, pushButton_ClearTransSource),
          std::tuple(textEdit_DestLan, pushButton_DestLan_tts, pushButton_ClearTransDest)}) {
        grid->addWidget(edit, row, 0);
        auto *buttons = new QVBoxLayout;
        buttons->setSpacing(4);
        buttons->addWidget(reader);
        buttons->addWidget(cleaner);
        buttons->addStretch();
        grid->addLayout(buttons, row++, 1);
    }
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(checkBox_Delimit_Translation);
    bottom->addStretch();
    bottom->addWidget(pushButton_TransSendSet);
    bottom->addWidget(pushButton_TransSend);
    grid->addLayout(bottom, row, 0, 1, 2);
    return panes;
}

QWidget *TransFace::makeSettings(QDialog *window)
{
    auto *area = new QWidget(window);
    auto *rows = new QVBoxLayout(area);
    rows->setContentsMargins(margin + 8, 16, margin + 8, 16);
    const auto row = [rows](std::initializer_list<QWidget *> widgets) {
        auto *line = new QHBoxLayout;
        line->setSpacing(10);
        for (QWidget *widget : widgets) {
            line->addWidget(widget, qobject_cast<QLabel *>(widget) != nullptr ? 0 : 1);
        }
        rows->addLayout(line);
        rows->addStretch();
    };
    const auto label = [area](const char *text) {
        auto *name = new QLabel(tr(text), area);
        name->setFixedWidth(settingNameWidth);
        return name;
    };
    const auto languages = [area](const char *name, const char *accessible) {
        QComboBox *box = comboBox(area, name, accessible);
        box->setIconSize({20, 50});
        box->setFixedHeight(30); // the icons ask for more than the flags need
        box->setMaxVisibleItems(12);
        box->view()->setMinimumWidth(languageListWidth);
        return box;
    };
    const char *const source = QT_TRANSLATE_NOOP("CTransTipDialog", "原文语言");
    const char *const dest = QT_TRANSLATE_NOOP("CTransTipDialog", "译文语言");
    comboBox_SourceLan = languages("comboBox_SourceLan", source);
    comboBox_DestLan = languages("comboBox_DestLan", dest);
    comboBox_SourceLan_Delimit = languages("comboBox_SourceLan_Delimit", source);
    comboBox_DestLan_Delimit = languages("comboBox_DestLan_Delimit", dest);
    row({label(QT_TRANSLATE_NOOP("CTransTipDialog", "语音翻译")), comboBox_SourceLan, comboBox_DestLan});
    row({label(QT_TRANSLATE_NOOP("CTransTipDialog", "划词")), comboBox_SourceLan_Delimit,
         comboBox_DestLan_Delimit});

    checkBox_OnlineTTSFirst = checkBox(area, "checkBox_OnlineTTSFirst",
                                       QT_TRANSLATE_NOOP("CTransTipDialog", "在线朗读优先(中英文)"));
    row({checkBox_OnlineTTSFirst});
    const char *const volume = QT_TRANSLATE_NOOP("CTransTipDialog", "音量:");
    const char *const speed = QT_TRANSLATE_NOOP("CTransTipDialog", "语速:");
    const char *const tone = QT_TRANSLATE_NOOP("CTransTipDialog", "语调:");
    const char *const reader = QT_TRANSLATE_NOOP("CTransTipDialog", "发音人:");
    comboBox_TTS_Volume = comboBox(area, "comboBox_TTS_Volume", volume);
    comboBox_TTS_Speed = comboBox(area, "comboBox_TTS_Speed", speed);
    comboBox_TTS_Tone = comboBox(area, "comboBox_TTS_Tone", tone);
    comboBox_TTS_Reader = comboBox(area, "comboBox_TTS_Reader", reader);
    row({label(volume), comboBox_TTS_Volume, label(speed), comboBox_TTS_Speed});
    row({label(tone), comboBox_TTS_Tone, label(reader), comboBox_TTS_Reader});

    checkBox_AutoReadSourceResult =
        checkBox(area, "checkBox_AutoReadSourceResult", QT_TRANSLATE_NOOP("CTransTipDialog", "原文自动朗读"));
    checkBox_AutoReadDestResult =
        checkBox(area, "checkBox_AutoReadDestResult", QT_TRANSLATE_NOOP("CTransTipDialog", "译文自动朗读"));
    row({checkBox_AutoReadSourceResult, checkBox_AutoReadDestResult});
    return area;
}

} // namespace mevo
