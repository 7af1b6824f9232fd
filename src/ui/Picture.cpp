#include "ui/Picture.h"

#include <QIconEngine>
#include <QImageReader>
#include <QPainter>

#include <utility>

namespace mevo {

namespace {

/// Makes the icon of a file at the first question about its pictures.
class LateIconEngine : public QIconEngine
{
public:
    explicit LateIconEngine(QString file)
        : m_file(std::move(file))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override
    {
        return icon().availableSizes(mode, state);
    }
    QIconEngine *clone() const override { return new LateIconEngine(*this); }

private:
    const QIcon &icon() const
    {
        if (m_icon.isNull()) {
            m_icon = QIcon(m_file);
        }
        return m_icon;
    }

    QString m_file;
    mutable QIcon m_icon;
};

} // namespace

QPixmap picture(const QString &path)
{
    const QSize size = QImageReader(path).size(); // of which the beginning of the file tells
    return size.isEmpty() ? QPixmap() : QIcon(path).pixmap(size);
}

QIcon lateIcon(const QString &file)
{
    return QIcon(new LateIconEngine(file));
}

} // namespace mevo
