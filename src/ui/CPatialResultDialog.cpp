#include "ui/CPatialResultDialog.h"

#include <QFontMetrics>
#include <QLineEdit>

CPatialResultDialog::CPatialResultDialog(QWidget *parent)
    : QDialog(parent,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , m_line(new QLineEdit(this))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    resize(310, 65);
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
    m_line->setGeometry(0, 0, width(), height());
    connect(m_line, &QLineEdit::textChanged, this,
            &CPatialResultDialog::on_lineEdit_PatialResult_textChanged);
}

void CPatialResultDialog::setText(const QString &text)
{
    m_text = text;
    m_line->setText(text);
}

void CPatialResultDialog::on_lineEdit_PatialResult_textChanged(QString text)
{
    const QFontMetrics metrics(m_line->font());
    resize(metrics.horizontalAdvance(text) + metrics.lineSpacing(), height());
    m_line->setGeometry(0, 0, width(), height());
}
