#include "ui/QToolTips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTextBrowser>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int shownMs = 15000;
}

QToolTips::QToolTips(QWidget *parent)
    : QDialog(parent,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , m_browser(new QTextBrowser(this))
    , m_hide(new QTimer(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(tr("灵犀听写提示窗"));
    setFixedSize(354, 261);
    m_browser->setFocusPolicy(Qt::NoFocus);
    m_browser->setAccessibleName(windowTitle());
    m_browser->setStyleSheet(QStringLiteral(
        "QTextBrowser { background: #10314a; color: #ffffff; border: 1px solid #00a2e8; padding: 6px; }"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_browser);
    // The texts promise it: the window goes by itself, but not while the pointer rests on it.
    m_hide->setSingleShot(true);
    m_hide->setInterval(shownMs);
    connect(m_hide, &QTimer::timeout, this, &QToolTips::close);
}

void QToolTips::showText(const QString &text, const QRect &bar)
{
    m_browser->setPlainText(text);
    const QScreen *screen = QGuiApplication::screenAt(bar.topLeft());
    const QRect room = (screen != nullptr ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    const int x = bar.left() - 10 - width();
    const int y = bar.top() - height();
    move(qBound(room.left(), x, room.right() - width()), qBound(room.top(), y, room.bottom() - height()));
    show();
    if (!underMouse()) {
        m_hide->start();
    }
}

QString QToolTips::text() const
{
    return m_browser->toPlainText();
}

void QToolTips::enterEvent(QEvent *event)
{
    QDialog::enterEvent(event);
    m_hide->stop();
}

void QToolTips::leaveEvent(QEvent *event)
{
    QDialog::leaveEvent(event);
    m_hide->start();
}
