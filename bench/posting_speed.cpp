// Characters a second into windows that nobody here wrote, ours beside "xdotool type", on the same text in
// the same run: lab/desk/with-desk --wm --dbus -- build/release/bin/posting_speed [ROUNDS]

#include "desk/TargetWindow.h"
#include "platform/linux/X11WindowSystem.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr int readMs = 3000;

/// What people dictate: Chinese with punctuation, some Latin words and figures, one character of two halves.
QString dictatedText()
{
    QString text;
    for (int i = 0; i < 5; ++i) {
        text +=
            QStringLiteral("今天的会议改到下午三点半，请大家带上上周的报告；version %1 的测试结果在附件里😀。")
                .arg(i);
    }
    return text;
}

void postWithProgram(mevo::X11WindowSystem &windows, const QString &text)
{
    QEventLoop loop;
    windows.postText(windows.focusedWindow(), text, [&loop](const mevo::PostResult &) { loop.quit(); });
    loop.exec();
}

void postWithXdotool(const QString &text)
{
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("type"), QStringLiteral("--clearmodifiers"),
                                                  QStringLiteral("--"), text});
}

/// What is missing or has changed its place: all but the longest common subsequence.
int lostCharacters(const QString &wanted, const QString &seen)
{
    std::vector<int> row(size_t(seen.size()) + 1, 0);
    for (const QChar character : wanted) {
        int diagonal = 0;
        for (size_t i = 1; i < row.size(); ++i) {
            const int above = row[i];
            row[i] = seen.at(int(i) - 1) == character ? diagonal + 1 : std::max(row[i], row[i - 1]);
            diagonal = above;
        }
    }
    return int(wanted.size()) - row.back();
}

double percentile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, size_t(share * double(values.size())))];
}

void measure(mevo::X11WindowSystem &windows, const QString &kind, bool ours, int rounds, const QString &text)
{
    const auto target = mevo::lab::TargetWindow::start(kind);
    if (!target) {
        std::printf("%-11s %-8s no window\n", qPrintable(kind), ours ? "ours" : "xdotool");
        return;
    }
    std::vector<double> times;
    int lost = 0;
    for (int round = 0; round < rounds && target->clear() && target->focus(); ++round) {
        QElapsedTimer clock;
        clock.start();
        if (ours) {
            postWithProgram(windows, text);
        } else {
            postWithXdotool(text);
        }
        times.push_back(double(clock.nsecsElapsed()) / 1e6);
        lost += lostCharacters(text, target->text(int(text.size()), readMs));
    }
    if (times.empty()) {
        return;
    }
    const double median = percentile(times, 0.5);
    std::printf("%-11s %-8s p50 %6.0f  p95 %6.0f  max %6.0f ms  %6.0f characters a second  lost %d of %d\n",
                qPrintable(kind), ours ? "ours" : "xdotool", median, percentile(times, 0.95),
                percentile(times, 1), double(text.size()) * 1000 / median, lost,
                int(text.size()) * int(times.size()));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: posting_speed ours|xdotool KIND ROUNDS\n");
        return 2;
    }
    mevo::X11WindowSystem windows;
    measure(windows, QString::fromLocal8Bit(argv[2]), std::strcmp(argv[1], "ours") == 0,
            std::max(1, std::atoi(argv[3])), dictatedText());
    return 0;
}
