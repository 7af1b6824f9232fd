#include "base/SettingsFile.h"
#include "state/SettingsTable.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

/// The full load from a file in which every key is set, opened anew as the program does, with the two
/// keys that each load writes.
static void fullSettingsLoad(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("MEVOSetting.ini"));
    {
        mevo::SettingsFile file(QStringLiteral("MainSetting"), path);
        for (const mevo::SettingRow &row : mevo::settingRows()) {
            file.setValue(QLatin1String(row.key), QStringLiteral("1"));
        }
    }
    MainState members;
    for (auto _ : state) {
        mevo::SettingsFile file(QStringLiteral("MainSetting"), path);
        mevo::loadSettings(members, file, true);
    }
}
BENCHMARK(fullSettingsLoad)->Unit(benchmark::kMicrosecond);
