#include "service/UntoldColumns.h"

#include "base/SettingsFile.h"

#include <QStringList>

namespace mevo {

namespace {

const QString untoldKey = QStringLiteral("RecordChoicesUntold");

/// The columns that a choice of the user's can stand in; the file may have been edited.
bool isChoice(const QString &column)
{
    static const QStringList columns{QStringLiteral("EnableASR3"), QStringLiteral("ForceUseASR3"),
                                     QStringLiteral("ForceUseXFMore3V"), QStringLiteral("MustClickRunASR3"),
                                     QStringLiteral("UseASR3Index")};
    return columns.contains(column);
}

QString joined(const RecordChoices &choices, QChar separator)
{
    QStringList parts;
    for (auto each = choices.cbegin(); each != choices.cend(); ++each) {
        parts.append(each.key() + QLatin1Char('=') + QString::number(each.value()));
    }
    return parts.join(separator);
}

} // namespace

RecordChoices untoldChoices(const SettingsFile &settings)
{
    RecordChoices choices;
    for (const QString &part : settings.value(untoldKey).toString().split(QLatin1Char(';'))) {
        const QString column = part.section(QLatin1Char('='), 0, 0);
        bool isNumber = false;
        const int number = part.section(QLatin1Char('='), 1).toInt(&isNumber);
        if (isNumber && isChoice(column)) {
            choices.insert(column, number);
        }
    }
    return choices;
}

void keepUntold(const RecordChoices &choices, SettingsFile &settings)
{
    RecordChoices untold = untoldChoices(settings);
    for (auto each = choices.cbegin(); each != choices.cend(); ++each) {
        untold.insert(each.key(), each.value());
    }
    settings.setValue(untoldKey, joined(untold, QLatin1Char(';')));
}

void dropTold(const RecordChoices &choices, SettingsFile &settings)
{
    RecordChoices untold = untoldChoices(settings);
    for (auto each = choices.cbegin(); each != choices.cend(); ++each) {
        if (untold.value(each.key(), each.value() + 1) == each.value()) {
            untold.remove(each.key());
        }
    }
    settings.setValue(untoldKey, joined(untold, QLatin1Char(';')));
}

QString assignments(const RecordChoices &choices)
{
    return joined(choices, QLatin1Char(','));
}

} // namespace mevo
