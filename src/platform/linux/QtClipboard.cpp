#include "platform/linux/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <utility>

namespace mevo {

namespace {

/// A text that notes when somebody asks for it. To hear which formats there are is no reading.
class NotedText : public QMimeData
{
public:
    NotedText(const QString &text, std::shared_ptr<bool> read)
        : m_read(std::move(read))
    {
        setText(text);
    }

protected:
    QVariant retrieveData(const QString &format, QVariant::Type type) const override
    {
        *m_read = true;
        return QMimeData::retrieveData(format, type);
    }

private:
    std::shared_ptr<bool> m_read;
};

} // namespace

QtClipboard::QtClipboard()
    : m_read(std::make_shared<bool>(false))
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
    m_read = std::make_shared<bool>(false);
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(new NotedText(text, m_read));
    // Terminals paste the selection by Shift+Insert.
    if (clipboard->supportsSelection()) {
        clipboard->setMimeData(new NotedText(text, m_read), QClipboard::Selection);
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

bool QtClipboard::mayHaveBeenRead() const
{
    // Another program that has taken it over, as some managers of clipboards do, answers in our place.
    const QClipboard *clipboard = QGuiApplication::clipboard();
    return *m_read || !clipboard->ownsClipboard() ||
           (clipboard->supportsSelection() && !clipboard->ownsSelection());
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
