#include "IconFile.h"

#include <QBuffer>
#include <QDataStream>
#include <QImage>

namespace mevo {

QByteArray iconFile(const QVector<QImage> &images)
{
    QByteArray head;
    QByteArray body;
    QDataStream out(&head, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint16(0) << quint16(1) << quint16(images.size());
    constexpr int headSize = 6;
    constexpr int entrySize = 16;
    for (const QImage &image : images) {
        QBuffer png;
        png.open(QIODevice::WriteOnly);
        image.save(&png, "PNG");
        // A side of 256 is written as 0.
        out << quint8(image.width() & 0xff) << quint8(image.height() & 0xff) << quint8(0) << quint8(0)
            << quint16(1) << quint16(32) << quint32(png.data().size())
            << quint32(headSize + entrySize * images.size() + body.size());
        body += png.data();
    }
    return head + body;
}

} // namespace mevo
