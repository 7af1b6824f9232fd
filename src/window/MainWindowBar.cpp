// The bar itself: its buttons, its menus, its place on the screen, the tray icon.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "engines/LanguageImages.h"
#include "ui/Ask.h"
#include "ui/BarLayout.h"
#include "ui/CompanionWindow.h"
#include "ui/LastingMenu.h"
#include "ui/MicTipDialog.h"
#include "ui/Picture.h"
#include "ui/QToolTips.h"
#include "ui/ScreenWatch.h"
#include "ui/commands/CommandWordDialog.h"
#include "window/SettingsHands.h"

#include <QAction>
#include <QApplication>
#include <QDebug>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTextDocument>
#include <QTimer>
#include <QToolTip>
#include <QUrl>

namespace {

QString closeStyle(const char *state)
{
    return QStringLiteral("QPushButton{border-image: url(:/rec/close_%1.png);}").arg(QLatin1String(state));
}

std::vector<QRect> screenRects()
{
    std::vector<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        screens.push_back(screen->geometry());
    }
    return screens;
}

/// A plain text stands in one line of whatever length; the lines that it asks for end in a carriage return.
QString wrapped(QString text)
{
    return Qt::convertFromPlainText(text.replace(u'\r', u'\n'), Qt::WhiteSpaceNormal);
}

} // namespace

void MainWindow::setProgramIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addFile(QStringLiteral(":/rec/app/%1.png").arg(size));
    }
    QApplication::setWindowIcon(icon);
}

void MainWindow::createTrayIcon()
{
    m_tray = new QSystemTrayIcon(this);
    m_tray->setToolTip(tr("语音输入系统托盘图标"));
    connect(m_tray, &QSystemTrayIcon::activated, this, &MainWindow::on_activatedSysTrayIcon);
    setTrayPicture(QStringLiteral(":/rec/ORDeviceDisConnect.png"));
    m_platform.notifications->attach(m_tray);
    const qint64 freeMiB = m_platform.systemFacts->freeSpaceMiB();
    if (freeMiB >= 0 && freeMiB < 100) {
        message(tr("C盘空间太小，如不清理可能影响软件运行！"), mevo::MessageIcon::Information, 2000);
    }
}

void MainWindow::createMenu()
{
    m_menu = new QMenu(this);
    new mevo::LastingMenu(m_menu);
    m_menu->setWindowTitle(QStringLiteral("BarMenu")); // seen by nobody; tools find the menu by it
    m_menu->setStyleSheet(
        QStringLiteral("QMenu { border: 5px solid rgb(128, 128, 128); background-color: rgb(153,204,255); }"
                       "QMenu::item { padding: 4px 24px; color: #102030; }"
                       "QMenu::item:selected { background-color: rgb(0, 162, 232); color: #ffffff; }"));
    const auto add = [this](const QString &text, void (MainWindow::*slot)()) {
        QAction *action = m_menu->addAction(text);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    add(tr("隐藏此菜单"), &MainWindow::on_CancelAction);
    m_orientationAction = add(ShowVerticalUI ? tr("显示水平界面") : tr("显示垂直界面"),
                              &MainWindow::on_ShowHorizontalOrVertical);
    m_showAction = add(tr("隐藏主界面"), &MainWindow::on_showMainAction);
    add(tr("默认窗口显示位置"), &MainWindow::on_DefaultWinPostion);
    m_closeAsrAction = add(tr("关闭语音识别"), &MainWindow::on_closeASRFuncAction);
    add(tr("使用说明"), &MainWindow::on_aboutMainAction);
    add(tr("退出软件"), &MainWindow::on_exitAppAction);
    connect(m_menu, &QMenu::aboutToHide, this, &MainWindow::slot_TrayAndRightMenuAboutToHide);
    m_tray->setContextMenu(m_menu);
    m_tray->setVisible(true);
}

void MainWindow::createBar()
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_MouseTracking);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                   Qt::WindowDoesNotAcceptFocus);
    setAccessibleName(tr("灵犀听写"));
    // Else one child that is asked for its native id makes a native window of every button.
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    new mevo::CompanionWindow(this, *m_platform.ownWindows);
    mevo::questionWindows = m_platform.windowSystem.get();

    using Slot = void (MainWindow::*)();
    static const Slot slots_[] = {
        &MainWindow::pushButton_Close_clicked,       &MainWindow::pushButton_Mic_clicked,
        &MainWindow::pushBuutton_VoiceType_clicked,  &MainWindow::pushBuutton_VoiceKeypad_clicked,
        &MainWindow::pushBuutton_HandWriter_clicked, &MainWindow::pushBuutton_CommandWord_clicked,
        &MainWindow::pushBuutton_Translate_clicked,  &MainWindow::pushBuutton_Setting_clicked};
    for (const mevo::BarButton &row : mevo::barButtons()) {
        auto *button = new QPushButton(this);
        button->setObjectName(QLatin1String(row.name));
        button->setFocusPolicy(Qt::NoFocus);
        button->setAccessibleName(tr(row.accessibleName));
        button->setMouseTracking(true);
        button->installEventFilter(this);
        if (row.picture != nullptr) {
            button->setStyleSheet(mevo::barButtonStyle(QLatin1String(row.picture)));
        }
        connect(button, &QPushButton::clicked, this, slots_[m_buttons.size()]);
        m_buttons.append(button);
    }
    m_closeButton = m_buttons[mevo::BarClose];
    m_closeButton->setStyleSheet(closeStyle("normal"));
    m_languageButton = m_buttons[mevo::BarLanguage];
    setLanguageButtonImage(mevo::languageButtonStyle(
        m_recorder->BaiDuNoStreamApi ? QStringLiteral("PuTongHua") : QStringLiteral("PuTongHuaXF"),
        ShowVerticalUI));
    layOutBar();
}

void MainWindow::layOutBar()
{
    m_background = mevo::picture(ShowVerticalUI ? QStringLiteral(":/rec/mainbkV.png")
                                                : QStringLiteral(":/rec/mainbk.png"));
    setFixedSize(mevo::barSize(ShowVerticalUI));
    for (int i = 0; i < m_buttons.size(); ++i) {
        const mevo::BarButton &row = mevo::barButtons()[static_cast<std::size_t>(i)];
        m_buttons[i]->setGeometry(ShowVerticalUI ? row.vertical : row.horizontal);
    }
    update();
}

QRect MainWindow::screenRect() const
{
    return QGuiApplication::primaryScreen()->geometry();
}

void MainWindow::placeBar(int horizontalRight, int horizontalBottom, int verticalTop)
{
    const mevo::BarPlace place{MainWinLeft,     MainWinTop,       ShowVerticalUI,
                               horizontalRight, horizontalBottom, verticalTop};
    move(mevo::barPosition(place, screenRect(), screenRects()));
}

void MainWindow::placeBarAtArrival()
{
    const mevo::BarPlace place{MainWinLeft, MainWinTop, ShowVerticalUI};
    move(mevo::barPositionAtArrival(place, screenRect(), screenRects()));
}

void MainWindow::setLanguageButtonImage(const QString &styleSheet)
{
    if (m_languageButton != nullptr && !styleSheet.isEmpty()) {
        m_languageButton->setStyleSheet(styleSheet);
    }
}

void MainWindow::setTrayPicture(const QString &picture)
{
    m_trayPicture = picture;
    if (m_tray == nullptr) {
        return;
    }
    const bool visible = m_tray->isVisible();
    m_tray->hide();
    m_tray->setIcon(QIcon(picture));
    m_tray->setVisible(visible);
}

void MainWindow::message(const QString &text, mevo::MessageIcon icon, int milliseconds)
{
    m_platform.notifications->message(QString(), text, icon, milliseconds);
}

void MainWindow::showOnline(int state)
{
    if (state < 0) {
        if (IsOnline) {
            setTrayPicture(QStringLiteral(":/rec/ORNoNetwork.png"));
            message(tr("未连接外部网络"), mevo::MessageIcon::Warning, 3000);
            hide();
        }
        IsOnline = false;
        BackendReachable = false;
        pushNetworkChanged();
        return;
    }
    if (IsOnline) {
        return;
    }
    QTimer::singleShot(3000, this, &MainWindow::TimeOutReadInitPara);
    setTrayPicture(DeviceConnected ? QStringLiteral(":/rec/ORDeviceConnect.png")
                                   : QStringLiteral(":/rec/ORDeviceDisConnect.png"));
    message(tr("已连接外部网络！"), mevo::MessageIcon::Information, 3000);
    if (!m_buttons.isEmpty()) { // there is no bar yet while the program is being made
        show();
    }
    IsOnline = true;
    pushNetworkChanged();
}

/// A bar whose screen goes away is brought back; its saved place stays for the day when the screen returns.
void MainWindow::watchScreens()
{
    mevo::watchScreens(this, [this] {
        for (const QScreen *screen : QGuiApplication::screens()) {
            if (screen->geometry().intersects(frameGeometry())) {
                return;
            }
        }
        placeBar(299, 199, 200);
    });
}

void MainWindow::setWndTopMostTimeout()
{
    const bool menuOpen = (m_menu != nullptr && m_menu->isVisible()) ||
                          (m_languageMenu != nullptr && m_languageMenu->isVisible());
    // Raising the bar would lift it, and the talk window with it, over a question that stands.
    const bool settingsOpen = m_settingsHands && m_settingsHands->isOpen();
    const bool editorOpen = m_commandWords != nullptr && m_commandWords->isVisible();
    if (menuOpen || settingsOpen || editorOpen || m_translationHands.isVisible() || HidBusy ||
        QApplication::activeModalWidget() != nullptr) {
        return;
    }
    if (!DeviceConnected && !NoDeviceMode) {
        hide();
    } else if (isVisible()) {
        raise();
        keepNoticesBelow();
    }
}

void MainWindow::presentMenu()
{
    if (ExitInProgress) {
        return; // a question may stand there already
    }
    if (!InitDone) {
        m_menuWanted = true;
        return;
    }
    if (isVisible()) {
        raise();
    }
    m_menu->popup(isVisible() ? geometry().bottomLeft() : QCursor::pos());
    m_menu->setActiveAction(m_menu->actions().first());
}

void MainWindow::on_CancelAction()
{
    m_menu->hide();
}

void MainWindow::on_ShowHorizontalOrVertical()
{
    ShowVerticalUI = !ShowVerticalUI;
    mevo::SettingsFile().setValue(QStringLiteral("ShowVerticalUI"), ShowVerticalUI);
    m_orientationAction->setText(ShowVerticalUI ? tr("显示水平界面") : tr("显示垂直界面"));
    layOutBar();
    if (!mevo::BarPlace{MainWinLeft, MainWinTop}.isSaved()) {
        placeBar(299, 199, 100);
    }
    BuildAsrLanMenu(true, true);
    update();
}

void MainWindow::on_showMainAction()
{
    const bool wasVisible = isVisible();
    setVisible(!wasVisible);
    if (!wasVisible) {
        raise();
    }
    m_showAction->setText(wasVisible ? tr("显示界面") : tr("隐藏界面"));
}

void MainWindow::on_DefaultWinPostion()
{
    const QRect screen = screenRect();
    MainWinLeft = screen.left() + screen.width() - 299;
    MainWinTop = screen.top() + screen.height() - 199;
    mevo::SettingsFile settings;
    settings.setValue(QStringLiteral("MainWinLeft"), QString::number(MainWinLeft));
    settings.setValue(QStringLiteral("MainWinTop"), QString::number(MainWinTop));
    if (ShowVerticalUI) {
        move(screen.left() + screen.width() - 99, screen.top() + 100);
    } else {
        move(MainWinLeft, MainWinTop);
    }
}

void MainWindow::on_aboutMainAction()
{
    const QUrl manual = QUrl::fromUserInput(UserManual);
    if (UserManual.isEmpty() || !QDesktopServices::openUrl(manual)) {
        qInfo() << "No user manual to open";
    }
}

void MainWindow::on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason reason)
{
    // Without a receiver the icon's menu is the way back to the bar.
    if (DeviceConnected && reason == QSystemTrayIcon::Trigger) {
        on_showMainAction();
    }
}

void MainWindow::slot_TrayAndRightMenuAboutToHide()
{
    if (m_closeButton != nullptr) {
        m_closeButton->setStyleSheet(closeStyle("normal"));
    }
}

void MainWindow::pushBuutton_VoiceKeypad_clicked()
{
    m_platform.processes->startSibling(QStringLiteral("\\KeypadHost.exe"),
                                       {QStringLiteral("ORVKBAppShowOrHide")}, false);
}

void MainWindow::pushBuutton_HandWriter_clicked()
{
    m_platform.processes->startSibling(QStringLiteral("\\..\\HW\\PenPadHost.exe"),
                                       {QStringLiteral("/hideorshow")}, false);
}

void MainWindow::trigerCmdWordVoiceKeyboardMenu(QAction *act)
{
    if (act->text() == tr("语音映射词设置")) {
        pushBuutton_CommandWord_clicked();
    }
}

void MainWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_background);
}

void MainWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        m_menu->popup(event->globalPos());
        return;
    }
    if (event->button() == Qt::LeftButton) {
        m_dragFrom = event->globalPos();
        m_dragging = true;
        m_moved = false;
        m_menu->hide();
    }
}

void MainWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging && m_closeButton != nullptr && m_closeButton->geometry().contains(event->pos())) {
        m_closeButton->setStyleSheet(closeStyle("press"));
        m_menu->popup(event->globalPos());
        return;
    }
    if (!m_dragging || !(event->buttons() & Qt::LeftButton)) {
        return;
    }
    raise();
    const QPoint delta = event->globalPos() - m_dragFrom;
    if (!delta.isNull()) {
        move(pos() + delta);
        m_dragFrom = event->globalPos();
        m_moved = true;
    }
}

void MainWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    m_dragging = false;
    m_menu->hide();
    if (!m_moved) {
        return;
    }
    m_moved = false;
    MainWinLeft = event->globalPos().x(); // the pointer's place, which is what has always been kept
    MainWinTop = event->globalPos().y();
    mevo::SettingsFile settings;
    settings.setValue(QStringLiteral("MainWinLeft"), QString::number(MainWinLeft));
    settings.setValue(QStringLiteral("MainWinTop"), QString::number(MainWinTop));
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    const int index = m_buttons.indexOf(static_cast<QPushButton *>(watched));
    if (index >= 0) {
        const mevo::BarButton &row = mevo::barButtons()[static_cast<std::size_t>(index)];
        if (event->type() == QEvent::Enter && row.toolTip != nullptr) {
            QToolTip::showText(QCursor::pos(), wrapped(tr(row.toolTip)), this);
        } else if (event->type() == QEvent::MouseMove && index == mevo::BarClose && !m_menu->isVisible()) {
            m_closeButton->setStyleSheet(closeStyle("press"));
            m_menu->popup(static_cast<QMouseEvent *>(event)->globalPos());
        }
    }
    return QMainWindow::eventFilter(watched, event);
}
