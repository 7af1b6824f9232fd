#include "base/VersionText.h"

#include "base/ProgramVersion.h"

#include <QDate>
#include <QLocale>

namespace mevo {

QString versionText()
{
    return versionText(programVersion());
}

QString versionText(int version)
{
    return QString::asprintf("V%d.%02d", version / 100, version % 100);
}

QString buildStamp(const QString &compilerDate, const QString &compilerTime)
{
    QString text = compilerDate.simplified(); // the day of the month comes with a blank for its zero
    const int day = text.indexOf(QLatin1Char(' ')) + 1;
    if (text.mid(day, 2).endsWith(QLatin1Char(' '))) {
        text.insert(day, QLatin1Char('0'));
    }
    const QDate date = QLocale(QLocale::English).toDate(text, QStringLiteral("MMM dd yyyy"));
    return QStringLiteral("(%1 %2)").arg(date.toString(QStringLiteral("yyyy.MM.dd")), compilerTime);
}

QString buildStamp()
{
    return buildStamp(QStringLiteral(__DATE__), QStringLiteral(__TIME__));
}

} // namespace mevo
