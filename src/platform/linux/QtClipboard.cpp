#include "platform/linux/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace mevo {

QtClipboard::QtClipboard()
{
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        ++m_changes;
        // What other programs own is asked for only when somebody wants it: its owner may be slow.
        const QClipboard *clipboard = QGuiApplication::clipboard();
        if (!clipboard->ownsClipboard()) {
            m_hasText = true;
        }
    });
}

void QtClipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    // Terminals paste the selection by Shift+Insert.
    if (QGuiApplication::clipboard()->supportsSelection()) {
        QGuiApplication::clipboard()->setText(text, QClipboard::Selection);
    }
    m_hasText = !text.isEmpty();
}

void QtClipboard::putBack(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    m_hasText = !text.isEmpty();
}

QString QtClipboard::text() const
{
    return QGuiApplication::clipboard()->text();
}

QString QtClipboard::selection() const
{
    const QClipboard *clipboard = QGuiApplication::clipboard();
    return clipboard->supportsSelection() && !clipboard->ownsSelection()
               ? clipboard->text(QClipboard::Selection)
               : QString();
}

void QtClipboard::clear()
{
    QGuiApplication::clipboard()->clear();
    m_hasText = false;
}

} // namespace mevo
