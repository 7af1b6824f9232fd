// Characters a second into windows that nobody here wrote, as the program types or as "xdotool type" does:
// lab/desk/with-desk --wm --dbus -- build/release/bin/posting_speed ours|xdotool KIND ROUNDS
// Ours is a text of new characters, the same one again, and beside them what the target could take at most:
// as many strokes, in one go, of a key that needs no binding.

#include "desk/TargetWindow.h"
#include "platform/linux/ProcessQuiet.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11Ping.h"
#include "platform/linux/X11WindowSystem.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QProcess>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr int readMs = 3000;
constexpr int answerMs = 2000;

/// What people dictate: Chinese with punctuation, some Latin words and figures, one character of two halves;
/// some 110 different characters, other Chinese ones in every round.
QString dictatedText(int round)
{
    QString text;
    for (int i = 0; i < 5; ++i) {
        QString sentence =
            QStringLiteral("今天的会议改到下午三点半，请大家带上上周的报告；version %1 的测试结果在附件里😀。")
                .arg(i);
        for (QChar &character : sentence) {
            if (character.unicode() >= 0x4e00 && character.unicode() < 0x9fa0) {
                character =
                    QChar(0x4e00 + (character.unicode() - 0x4e00 + 100 * round + 7 * (i / 2)) % 0x5000);
            }
        }
        text += sentence;
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

/// Strokes of two keys of the map by turns, and the same waiting for the target as behind a text.
class PlainStrokes
{
public:
    PlainStrokes()
        : m_ping(m_connection)
    {
    }
    void strike(int count, qint64 processId)
    {
        Display *display = m_connection.display();
        const unsigned long topLevel = m_connection.topLevel(m_connection.focus());
        const unsigned keys[] = {XKeysymToKeycode(display, XK_a), XKeysymToKeycode(display, XK_s)};
        m_ping.listen(true);
        XGrabServer(display);
        for (int i = 0; i < count; ++i) {
            XTestFakeKeyEvent(display, keys[i % 2], True, CurrentTime);
            XTestFakeKeyEvent(display, keys[i % 2], False, CurrentTime);
        }
        XUngrabServer(display);
        XSync(display, False);
        if (mevo::X11Ping::isOffered(m_connection, topLevel)) {
            m_ping.send(topLevel);
            m_ping.await(answerMs);
        } else {
            mevo::awaitQuiet(processId, 20, 2000);
        }
        m_ping.listen(false);
        m_connection.discardEvents();
    }

private:
    mevo::X11Connection m_connection;
    mevo::X11Ping m_ping;
};

struct Times
{
    std::vector<double> milliseconds;
    int lost = 0, characters = 0;

    void print(const QString &kind, const char *what) const
    {
        if (milliseconds.empty()) {
            return;
        }
        const double median = percentile(milliseconds, 0.5);
        const double length = double(characters) / double(milliseconds.size());
        std::printf(
            "%-18s %-11s p50 %6.0f  p95 %6.0f  max %6.0f ms  %6.0f characters a second  lost %d of %d\n",
            qPrintable(kind), what, median, percentile(milliseconds, 0.95), percentile(milliseconds, 1),
            length * 1000 / median, lost, characters);
        std::fflush(stdout);
    }
};

/// Types the text into the emptied target, and notes how long that took and what is missing.
template <typename Typing>
bool type(mevo::lab::TargetWindow &target, const QString &text, Times &times, Typing typing)
{
    if (!target.clear() || !target.focus()) {
        return false;
    }
    QElapsedTimer clock;
    clock.start();
    typing();
    times.milliseconds.push_back(double(clock.nsecsElapsed()) / 1e6);
    times.characters += text.size();
    times.lost += lostCharacters(text, target.text(int(text.size()), readMs));
    return true;
}

int measure(const QString &kind, bool ours, int rounds)
{
    mevo::X11WindowSystem windows;
    const auto target = mevo::lab::TargetWindow::start(kind);
    if (!target) {
        std::printf("%-18s no window\n", qPrintable(kind));
        return 1;
    }
    PlainStrokes plain;
    Times fresh, again, limit, xdotool;
    bool ready = true;
    for (int round = 0; round < rounds && ready; ++round) {
        QString text = dictatedText(round);
        if (kind == QLatin1String("kate")) {
            text.remove(QStringLiteral("😀")); // which it drops
        }
        if (!ours) {
            ready = type(*target, text, xdotool, [&] { postWithXdotool(text); });
            continue;
        }
        ready = type(*target, text, fresh, [&] { postWithProgram(windows, text); }) &&
                type(*target, text, again, [&] { postWithProgram(windows, text); }) &&
                type(*target, QStringLiteral("as").repeated(text.size() / 2), limit,
                     [&] { plain.strike(text.size() / 2 * 2, target->processId()); });
    }
    fresh.print(kind, "ours");
    again.print(kind, "ours, again");
    limit.print(kind, "limit");
    xdotool.print(kind, "xdotool");
    return ready ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: posting_speed ours|xdotool KIND ROUNDS\n");
        return 2;
    }
    return measure(QString::fromLocal8Bit(argv[2]), std::strcmp(argv[1], "ours") == 0,
                   std::max(1, std::atoi(argv[3])));
}
