// Types many characters, in texts of 1 to 400, into several windows by turns, every other text without the
// focus, and counts what is lost or comes twice:
// lab/desk/with-desk --wm --dbus -- build/release/bin/posting_endurance [CHARACTERS] [SEED] [KIND...]

#include "desk/TargetWindow.h"
#include "platform/linux/X11WindowSystem.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int readMs = 60000;

/// Common Chinese characters, letters, digits and marks; now and then a line end, the same one again, or one
/// of two halves.
QString randomText(std::mt19937 &random, int length)
{
    const QString marks =
        QStringLiteral("，。；：？！（）《》 abcdefghijklmnopqrstuvwxyzABCDEFG0123456789.-+=/");
    QString text;
    while (text.size() < length) {
        switch (random() % 20) {
        case 0:
            text += text.isEmpty() || text.at(text.size() - 1).isSurrogate() ? QChar(u'的')
                                                                             : text.at(text.size() - 1);
            break;
        case 1:
            // No line end at the end, where editors have one of their own.
            text += random() % 3 == 0 && text.size() + 1 < length ? QChar(u'\n') : QChar(u'，');
            break;
        case 2:
            if (random() % 4 == 0 && text.size() + 2 <= length) {
                text += QStringLiteral("😀");
            }
            break;
        case 3:
        case 4:
        case 5:
            // No space at a line's start: editors begin the lines after it with one as well.
            text += text.isEmpty() || text.endsWith(QLatin1Char('\n'))
                        ? QChar(u'、')
                        : marks.at(int(random() % unsigned(marks.size())));
            break;
        default:
            text += QChar(ushort(0x4e00 + random() % 3500));
        }
    }
    if (text.endsWith(QLatin1Char('\n'))) {
        text[text.size() - 1] = QChar(u'。');
    }
    return text;
}

struct Count
{
    int lost = 0;
    int extra = 0;
};

Count compare(const QString &wanted, const QString &seen)
{
    // Same length and order is the rule; only a difference is worth the table.
    if (wanted == seen) {
        return {};
    }
    std::vector<int> row(size_t(seen.size()) + 1, 0);
    for (const QChar character : wanted) {
        int diagonal = 0;
        for (size_t i = 1; i < row.size(); ++i) {
            const int above = row[i];
            row[i] = seen.at(int(i) - 1) == character ? diagonal + 1 : std::max(row[i], row[i - 1]);
            diagonal = above;
        }
    }
    return {int(wanted.size()) - row.back(), int(seen.size()) - row.back()};
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const qint64 goal = argc > 1 ? std::atoll(argv[1]) : 1000000;
    const unsigned seed = argc > 2 ? unsigned(std::atoi(argv[2])) : 1;
    QStringList kinds;
    for (int i = 3; i < argc; ++i) {
        kinds.append(QString::fromLocal8Bit(argv[i]));
    }
    if (kinds.isEmpty()) {
        kinds = mevo::lab::TargetWindow::kinds();
    }
    if (goal <= 0) {
        std::fprintf(stderr, "usage: posting_endurance [CHARACTERS] [SEED] [KIND...]\n");
        return 2;
    }

    struct Window
    {
        std::unique_ptr<mevo::lab::TargetWindow> target;
        mevo::WindowId id = 0;
    };
    mevo::X11WindowSystem windows;
    std::vector<Window> targets;
    for (const QString &kind : kinds) {
        Window window;
        window.target = mevo::lab::TargetWindow::start(kind);
        if (!window.target) {
            std::fprintf(stderr, "%s: no window\n", qPrintable(kind));
            return 1;
        }
        window.id = windows.focusedWindow();
        targets.push_back(std::move(window));
    }
    if (targets.size() < 2) {
        std::fprintf(stderr, "at least two windows are wanted\n");
        return 2;
    }

    std::mt19937 random(seed);
    qint64 typed = 0, texts = 0, unfocused = 0, lost = 0, extra = 0, undelivered = 0;
    QElapsedTimer whole, said;
    whole.start();
    said.start();
    const auto say = [&](const char *what) {
        std::printf("%s: %lld characters in %lld texts, %lld of them without the focus, %lld s: lost %lld, "
                    "doubled or strange %lld, said not to have gone %lld\n",
                    what, static_cast<long long>(typed), static_cast<long long>(texts),
                    static_cast<long long>(unfocused), whole.elapsed() / 1000, static_cast<long long>(lost),
                    static_cast<long long>(extra), static_cast<long long>(undelivered));
        std::fflush(stdout);
    };
    while (typed < goal) {
        Window &to = targets[size_t(texts / 2) % targets.size()];
        Window &beside = targets[(size_t(texts / 2) + 1) % targets.size()];
        const bool focused = texts % 2 == 0;
        const QString text = randomText(random, 1 + int(random() % 400));
        // On a busy machine an editor may not have saved in time.
        const auto empty = [](Window &window) {
            return window.target->clear() || window.target->clear() || window.target->clear();
        };
        if (!empty(to) || !empty(beside) || !(focused ? to : beside).target->focus()) {
            std::printf("%s cannot be emptied\n", qPrintable(to.target->kind()));
            say("stopped");
            return 1;
        }
        mevo::PostResult result;
        QEventLoop loop;
        windows.postText(to.id, text, [&](const mevo::PostResult &posted) {
            result = posted;
            loop.quit();
        });
        loop.exec();
        // A terminal notes Return as what the key sends.
        const auto lineEnds = [](QString seen) { return seen.replace(QLatin1Char('\r'), QLatin1Char('\n')); };
        const QString wanted = text.left(result.posted);
        QString seen = lineEnds(to.target->text(int(wanted.size()), readMs));
        if (seen.size() == wanted.size() + 1 && seen.endsWith(QLatin1Char('\n'))) {
            seen.chop(1); // some editors end a file with a line end
        }
        const Count count = compare(wanted, seen);
        const auto strays = lineEnds(beside.target->peek()).size();
        if (count.lost + count.extra + strays > 0) {
            std::printf(
                "%s, text %lld, %s: lost %d, extra %d, %d in the other window\n  wanted %s\n  seen   %s\n",
                qPrintable(to.target->kind()), static_cast<long long>(texts),
                focused ? "focused" : "without the focus", count.lost, count.extra, int(strays),
                qPrintable(wanted), qPrintable(seen));
        }
        lost += count.lost;
        extra += count.extra + strays;
        undelivered += text.size() - result.posted;
        typed += text.size();
        unfocused += focused ? 0 : 1;
        ++texts;
        if (said.elapsed() > 60000) {
            said.restart();
            say("so far");
        }
    }
    say("done");
    return lost + extra == 0 ? 0 : 1;
}
