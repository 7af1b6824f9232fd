#include "service/PushFrame.h"

#include "base/WebPage.h"

#include <QDebug>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace mevo {

namespace {

constexpr int LengthDigits = 5;
constexpr int longestNameBytes = 200;

enum PageField { PageKind, PageAddress, PageSeconds, PageLink, PageFields };
enum PictureField {
    PictureKind,
    PictureAddress,
    PictureSeconds,
    PictureSize,
    PictureName,
    PictureLink,
    PictureFields
};

std::optional<PushNotice> refuse(const char *reason)
{
    qWarning("Push: a frame is refused: %s", reason);
    return std::nullopt;
}

/// A number of digits alone, from 0 on.
std::optional<int> number(const QString &text)
{
    return text.isEmpty() ? std::nullopt : lengthOfDigits(text.midRef(0));
}

/// The fields that both kinds have.
std::optional<PushNotice> commonFields(PushNotice::Kind kind, const QString &address, const QString &seconds,
                                       const QString &link)
{
    const QUrl content = webPage(address);
    if (content.isEmpty()) {
        return refuse("its content is not on the web");
    }
    const std::optional<int> stay = number(seconds);
    if (!stay) {
        return refuse("its seconds are no number");
    }
    const QUrl target = webPage(link);
    if (target.isEmpty() && !link.isEmpty()) {
        qWarning("Push: a link that is not on the web is left out");
    }
    PushNotice notice;
    notice.kind = kind;
    notice.content = content;
    notice.staySeconds = std::min(*stay, longestNoticeStay);
    notice.link = target;
    return notice;
}

} // namespace

std::optional<PushNotice> readPushFrame(const WebCipher &cipher, const QString &frame)
{
    const QString payload = frame.mid(LengthDigits);
    if (frame.size() <= LengthDigits || number(frame.left(LengthDigits)) != payload.size()) {
        return refuse("its length does not agree");
    }
    const QString text = cipher.DecryptString(payload);
    if (text.isNull()) {
        return refuse("no cipher text");
    }
    const QStringList fields = text.split(QLatin1Char(';'));
    if (fields.first() == QLatin1String("url") && fields.size() == PageFields) {
        return commonFields(PushNotice::Kind::Page, fields[PageAddress], fields[PageSeconds],
                            fields[PageLink]);
    }
    if (fields.first() != QLatin1String("image") || fields.size() != PictureFields) {
        return refuse("an unknown kind, or not its fields");
    }
    const std::optional<int> size = number(fields[PictureSize]);
    if (!size || *size == 0 || *size > largestNoticePicture) {
        return refuse("a picture of no or too large a size");
    }
    // A name without a suffix may be that of a program or a folder of ours: it gets a picture's.
    const QString given = fields[PictureName];
    const QString name = given.contains(QLatin1Char('.')) ? given : given + QStringLiteral(".png");
    if (!isPictureName(name)) {
        return refuse("no name of a picture");
    }
    std::optional<PushNotice> notice = commonFields(PushNotice::Kind::Picture, fields[PictureAddress],
                                                    fields[PictureSeconds], fields[PictureLink]);
    if (notice) {
        notice->pictureSize = *size;
        notice->pictureName = name;
    }
    return notice;
}

bool isPictureName(const QString &name)
{
    static const QRegularExpression form(
        QStringLiteral("\\A[^./\\\\:*?\"<>|\\p{C}][^/\\\\:*?\"<>|\\p{C}]*\\.(png|jpe?g|gif|bmp)\\z"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return name.toUtf8().size() <= longestNameBytes && form.match(name).hasMatch();
}

} // namespace mevo
