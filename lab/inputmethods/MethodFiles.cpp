#include "inputmethods/MethodFiles.h"

#include <QDir>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <X11/keysym.h>

namespace lab {

namespace {

/// Text of the first element of that name; null when the text is no XML or has none.
QString elementText(const QByteArray &xml, const QString &name)
{
    QXmlStreamReader reader(xml);
    QString text;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == name && text.isNull()) {
            text = reader.readElementText(QXmlStreamReader::SkipChildElements) + QLatin1String("");
        }
    }
    return reader.hasError() ? QString() : text;
}

unsigned functionKey(int number)
{
    return number >= 1 && number <= 12 ? unsigned(XK_F1 + number - 1) : 0;
}

QString below(const QString &dataFolder, const char *path)
{
    return QDir::cleanPath(dataFolder + QStringLiteral("/../localLow/") + QLatin1String(path));
}

} // namespace

QString xunFeiSettings(const QString &dataFolder)
{
    return below(dataFolder, "iFly Info Tek/iFlyIME") + QLatin1Char('/');
}

QString baiduSettings(const QString &dataFolder)
{
    return below(dataFolder, "Baidu/BaiduPinyin/SpeechInput.ini");
}

int generationOf(const QByteArray &iflyImeCfg)
{
    const QString version = elementText(iflyImeCfg, QStringLiteral("ver")).trimmed();
    return version.isEmpty() ? 0 : version.at(0).digitValue() > 0 ? version.at(0).digitValue() : 0;
}

unsigned xunFeiKey(const QByteArray &configXml)
{
    static const QRegularExpression pattern(QStringLiteral("^enable=1;keyStr=F([0-9]{1,2})$"));
    const auto match = pattern.match(elementText(configXml, QStringLiteral("start_end")).trimmed());
    return match.hasMatch() ? functionKey(match.captured(1).toInt()) : 0;
}

unsigned baiduKey(const QByteArray &ini)
{
    constexpr int controlCode = 17, firstFunctionCode = 0x70;
    static const QRegularExpression pattern(QStringLiteral("^\\[Setting\\]$[^\\[]*^HotKey *= *([0-9]+)\\s*$"),
                                            QRegularExpression::MultilineOption |
                                                QRegularExpression::DotMatchesEverythingOption);
    const auto match = pattern.match(QString::fromUtf8(ini).remove(QLatin1Char('\r')));
    if (!match.hasMatch()) {
        return 0;
    }
    const int code = match.captured(1).toInt();
    return code == controlCode ? unsigned(XK_Control_L) : functionKey(code - firstFunctionCode + 1);
}

} // namespace lab
