// Opens the editor of the command words on many rows and searches them; prints what takes how long.
// command_editor [ROWS] [RUNS]

#include "commands/CommandTable.h"
#include "state/SettingsState.h"
#include "ui/Ask.h"
#include "ui/commands/CommandWordDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

namespace {

using mevo::CommandType;

class Figure
{
public:
    explicit Figure(const char *name)
        : m_name(name)
    {
    }
    ~Figure()
    {
        std::sort(m_ms.begin(), m_ms.end());
        std::printf("%-34s p50 %8.2f  max %8.2f ms\n", m_name, m_ms[m_ms.size() / 2], m_ms.back());
    }
    Q_DISABLE_COPY(Figure)

    template <typename Work>
    void measure(const Work &work)
    {
        QElapsedTimer watch;
        watch.start();
        work();
        m_ms.push_back(double(watch.nsecsElapsed()) / 1e6);
    }

private:
    const char *m_name;
    std::vector<double> m_ms;
};

/// Processor time of this thread: what others do on the machine doesn't count.
double processorMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

mevo::CommandRows rowsOf(CommandType type, int count)
{
    mevo::CommandRows rows;
    for (int i = 0; i < count; ++i) {
        const QString content = type == CommandType::File ? QStringLiteral("/usr/bin/no-%1").arg(i)
                                                          : QStringLiteral("https://example.com/%1").arg(i);
        rows.push_back({i % 2 == 0 ? QStringLiteral("0") : QStringLiteral("1"),
                        QStringLiteral("打开网页%1;open page %1").arg(i), mevo::commandTypeLabel(type),
                        content, QString()});
    }
    return rows;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication app(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 10000;
    const int runs = argc > 2 ? std::atoi(argv[2]) : 9;
    const QTemporaryDir folder;
    const mevo::CommandTable tables(folder.path());
    if (!tables.writeTyped(CommandType::Web, rowsOf(CommandType::Web, count)) ||
        !tables.writeTyped(CommandType::File, rowsOf(CommandType::File, count))) {
        return 1;
    }
    mevo::askHook = [](const mevo::Question &) { return 0; };
    const SettingsState settings;
    Figure opening("open, every second row hidden");
    Figure hidden("show the hidden rows");
    Figure search("search, a word of the last row");
    Figure letter("a letter of a word");
    Figure files("view of the files");
    for (int run = 0; run < runs; ++run) {
        std::unique_ptr<CommandWordDialog> dialog;
        opening.measure([&] {
            dialog = std::make_unique<CommandWordDialog>(tables, settings);
            dialog->show();
            QCoreApplication::processEvents();
        });
        const auto button = [&dialog](const char *name) {
            return dialog->findChild<QAbstractButton *>(QLatin1String(name));
        };
        hidden.measure([&] {
            button("checkBox_ShowHideContents")->click();
            QCoreApplication::processEvents();
        });
        dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_SearchCmdWord"))
            ->setText(QStringLiteral("page %1").arg(count - 1));
        search.measure([&] {
            button("pushButton_SearchCmdWord")->click();
            QCoreApplication::processEvents();
        });
        auto *words = dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_CommandWord"));
        letter.measure([&] {
            words->insert(QStringLiteral("x"));
            QCoreApplication::processEvents();
        });
        // The draft and the marks come behind the letters.
        double longest = 0, longestUsed = 0;
        QElapsedTimer typing;
        typing.start();
        while (typing.elapsed() < 3000) {
            QElapsedTimer turn;
            turn.start();
            const double used = processorMs();
            QCoreApplication::processEvents();
            longest = std::max(longest, double(turn.nsecsElapsed()) / 1e6);
            longestUsed = std::max(longestUsed, processorMs() - used);
        }
        std::printf("run %d: the longest turn behind a letter %.2f ms, %.2f ms of the processor\n", run,
                    longest, longestUsed);
        button("pushButton_SaveCmdWord")->click();
        files.measure([&] {
            button("radioButton_OnlyShowFileType")->click();
            QCoreApplication::processEvents();
        });
    }
    return 0;
}
