#include "ui/CPatialResultDialog.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScreen>

#include <algorithm>

namespace {

QRect screenAt(const QPoint &point)
{
    const QScreen *screen = QGuiApplication::screenAt(point);
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    return screen != nullptr ? screen->availableGeometry() : QRect(point, QSize(310, 65));
}

} // namespace

CPatialResultDialog::CPatialResultDialog(QWidget *parent)
    : QDialog(parent,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , m_line(new QLineEdit(this))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    resize(310, 65);
    setWindowTitle(QStringLiteral("PartialResult"));
    QFont dialogFont = font();
    dialogFont.setPointSize(12);
    setFont(dialogFont);
    QFont lineFont = m_line->font();
    lineFont.setPointSize(18);
    m_line->setFont(lineFont);
    m_line->setObjectName(QStringLiteral("lineEdit_PatialResult"));
    m_line->setAccessibleName(tr("识别中的文字"));
    m_line->setFocusPolicy(Qt::NoFocus);
    m_line->setReadOnly(true);
    // Colours of its own: it stands over windows of any look.
    m_line->setStyleSheet(QStringLiteral("color: #202020; background: #fffff0; border: 1px solid #00a2e8;"));
    m_line->setGeometry(0, 0, width(), height());
    connect(m_line, &QLineEdit::textChanged, this,
            &CPatialResultDialog::on_lineEdit_PatialResult_textChanged);
}

void CPatialResultDialog::placeAt(const QPoint &point)
{
    m_place = point;
    resizeWidth(width());
}

void CPatialResultDialog::setText(const QString &text)
{
    m_text = text;
    m_line->setText(text); // which leaves the cursor, and with it what can be seen, at the end
}

void CPatialResultDialog::on_lineEdit_PatialResult_textChanged(QString text)
{
    const QFontMetrics metrics(m_line->font());
    resizeWidth(metrics.horizontalAdvance(text) + metrics.lineSpacing());
}

void CPatialResultDialog::resizeWidth(int width)
{
    const QRect screen = screenAt(m_place);
    resize(std::min(width, screen.width()), height());
    m_line->setGeometry(0, 0, this->width(), height());
    const QPoint last = screen.bottomRight() - rect().bottomRight();
    move(std::max(screen.left(), std::min(m_place.x(), last.x())),
         std::max(screen.top(), std::min(m_place.y(), last.y())));
}
