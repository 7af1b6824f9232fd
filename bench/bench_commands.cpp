#include "commands/CommandFile.h"
#include "commands/CommandMatcher.h"

#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

namespace {

/// A merged table of that many rows, each with two spoken forms.
class TableFile
{
public:
    explicit TableFile(qint64 rows)
    {
        mevo::CommandRows table;
        for (qint64 i = 0; i < rows; ++i) {
            table.push_back({QStringLiteral("0"), QStringLiteral("打开网页%1;open page %1").arg(i),
                             mevo::commandTypeLabel(mevo::CommandType::Web),
                             QStringLiteral("https://www.example.com/%1").arg(i), QStringLiteral("2")});
        }
        QFile file(path());
        file.open(QIODevice::WriteOnly);
        file.write(mevo::commandFileText(table));
    }
    QString path() const { return m_folder.filePath(QStringLiteral("table.ini")); }

private:
    QTemporaryDir m_folder;
};

QString lastWord(const benchmark::State &state)
{
    return QStringLiteral("open page %1").arg(state.range(0) - 1);
}

} // namespace

/// The look-up that reads a table that was not read before.
static void firstCommandLookUp(benchmark::State &state)
{
    const TableFile table(state.range(0));
    for (auto _ : state) {
        mevo::CommandMatcher matcher(table.path());
        benchmark::DoNotOptimize(matcher.find(lastWord(state)));
    }
}
BENCHMARK(firstCommandLookUp)->RangeMultiplier(10)->Range(10, 100000)->Unit(benchmark::kMillisecond);

/// Later ones of a table that nobody changes.
static void laterCommandLookUp(benchmark::State &state)
{
    const TableFile table(state.range(0));
    mevo::CommandMatcher matcher(table.path());
    QThread::msleep(200); // until the file's times tell every change
    matcher.find(QString());
    for (auto _ : state) {
        benchmark::DoNotOptimize(matcher.find(lastWord(state)));
    }
}
BENCHMARK(laterCommandLookUp)
    ->RangeMultiplier(10)
    ->Range(10, 100000)
    ->Iterations(100000)
    ->Unit(benchmark::kMicrosecond);
