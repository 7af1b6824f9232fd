#include "update/DownloadSetting.h"

#include <QMap>

namespace mevo {

const QString downloadSettingFile = QStringLiteral("DownloadSetting.ini");
const QString signatureSuffix = QStringLiteral(".sig");

namespace {

constexpr int largestFile = 64 * 1024;

/// One folder and one file in it.
bool isProgramBelow(const QString &path)
{
    const QStringList parts = path.split(QLatin1Char('/'));
    const auto leadsOn = [](const QString &part) {
        return !part.isEmpty() && part != QLatin1String(".") && part != QLatin1String("..") &&
               !part.contains(QChar::Null);
    };
    return parts.size() == 2 && leadsOn(parts[0]) && leadsOn(parts[1]);
}

} // namespace

QByteArray downloadSettingText(const DownloadSetting &setting)
{
    QString text = QStringLiteral("[Set]\nUpdaterName=%1\nMode=%2\nExeName=%3\nVersion=%4\n")
                       .arg(setting.updaterName, updateModeText(setting.mode), setting.exeName,
                            QString::number(setting.version));
    if (!setting.sha256.isEmpty()) {
        text += QStringLiteral("Sha256=%1\n").arg(setting.sha256);
    }
    if (!setting.updateKey.isEmpty()) {
        text += QStringLiteral("UpdateKey=%1\n").arg(setting.updateKey);
    }
    return text.toUtf8();
}

std::optional<DownloadSetting> parseDownloadSetting(const QByteArray &content)
{
    if (content.size() > largestFile) {
        return std::nullopt;
    }
    QMap<QString, QString> values;
    QString group;
    for (const QString &line : QString::fromUtf8(content).split(QLatin1Char('\n'))) {
        const QString text = line.trimmed();
        const int equals = text.indexOf(QLatin1Char('='));
        if (text.startsWith(QLatin1Char('[')) && text.endsWith(QLatin1Char(']'))) {
            group = text.mid(1, text.size() - 2);
        } else if (group == QLatin1String("Set") && equals > 0) {
            values.insert(text.left(equals).trimmed(), text.mid(equals + 1).trimmed());
        }
    }
    const auto mode = updateModeOf(values.value(QStringLiteral("Mode")));
    DownloadSetting setting;
    setting.updaterName = values.value(QStringLiteral("UpdaterName"));
    setting.exeName = values.value(QStringLiteral("ExeName"));
    setting.sha256 = values.value(QStringLiteral("Sha256"));
    setting.updateKey = values.value(QStringLiteral("UpdateKey"));
    setting.version = values.value(QStringLiteral("Version")).toInt();
    if (!mode || setting.version <= 0 || !isArchiveName(setting.updaterName) ||
        !isProgramBelow(setting.exeName)) {
        return std::nullopt;
    }
    setting.mode = *mode;
    return setting;
}

} // namespace mevo
