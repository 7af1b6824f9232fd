// The slide of a notice on the desk's own display: times between its steps, and the processor time that it
// takes, as parts of a core. notice_slide [SLIDES [PICTURE_HEIGHT]]

#include "base/ApplicationFiles.h"
#include "platform/Platform.h"
#include "ui/CADShowDlg.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QMoveEvent>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

#include <sys/resource.h>

namespace {

double msOf(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

/// Processor time of this process so far, in milliseconds.
struct Used
{
    double user = 0;
    double system = 0;

    static Used now()
    {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        const auto ms = [](const timeval &time) {
            return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
        };
        return {ms(usage.ru_utime), ms(usage.ru_stime)};
    }
};

/// Notes when the window moves, and by how much.
class StepWatch : public QObject
{
public:
    std::vector<double> betweenMs;
    std::vector<int> pixels;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Move) {
            const auto *move = static_cast<QMoveEvent *>(event);
            const double now = msOf(CLOCK_MONOTONIC);
            if (m_last > 0) {
                betweenMs.push_back(now - m_last);
                pixels.push_back(m_y - move->pos().y());
            }
            m_last = now;
            m_y = move->pos().y();
        }
        return false;
    }

private:
    double m_last = 0;
    int m_y = 0;
};

double at(const std::vector<double> &sorted, double part)
{
    return sorted[std::min(sorted.size() - 1, std::size_t(double(sorted.size()) * part))];
}

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir home;
    qputenv("MEVO_HOME", home.path().toLocal8Bit());
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int slides = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10;
    const int height = argc > 2 ? std::max(20, std::atoi(argv[2])) : 600;

    QImage image(400, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(x & 0xff, y & 0xff, (x * y) & 0xff));
        }
    }
    QBuffer buffer;
    image.save(&buffer, "png");
    QFile file(mevo::appFile(QStringLiteral("bench.png")));
    if (!file.open(QIODevice::WriteOnly) || file.write(buffer.data()) != buffer.size() || !file.flush()) {
        return 1;
    }
    const WebCipher cipher;
    const std::unique_ptr<mevo::Platform> platform = mevo::makePlatform();
    const QString hex = cipher.EncryptString(
        QStringLiteral("image;http://127.0.0.1:9/;1;%1;bench.png;").arg(buffer.data().size()));
    const QString frame = QString::number(hex.size()).rightJustified(5, QLatin1Char('0')) + hex;

    std::vector<double> times, shares, users, systems;
    int most = 0;
    for (int i = 0; i < slides; ++i) {
        auto *const notice =
            new CADShowDlg(cipher, std::nullopt, nullptr, nullptr, platform->ownWindows.get());
        notice->onTextMessageReceived(frame);
        while (!notice->isVisible()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); // the picture is decoded
        }
        QCoreApplication::processEvents(); // the first painting is not the slide's
        StepWatch watch;
        notice->installEventFilter(&watch);
        const double wall = msOf(CLOCK_MONOTONIC);
        const Used before = Used::now();
        int y = notice->y() + 1;
        QElapsedTimer still; // it has arrived when it has stood for 50 ms
        still.start();
        double end = wall;
        Used used = before;
        QTimer look;
        QEventLoop loop;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (notice->y() != y) {
                y = notice->y();
                end = msOf(CLOCK_MONOTONIC);
                used = Used::now();
                still.start();
            } else if (still.elapsed() > 50) {
                loop.quit();
            }
        });
        look.start(20);
        loop.exec();
        users.push_back(100 * (used.user - before.user) / (end - wall));
        systems.push_back(100 * (used.system - before.system) / (end - wall));
        shares.push_back(users.back() + systems.back());
        times.insert(times.end(), watch.betweenMs.begin(), watch.betweenMs.end());
        for (const int step : watch.pixels) {
            most = std::max(most, step);
        }
        notice->removeEventFilter(&watch);
        notice->close();
    }
    if (times.empty()) {
        std::fprintf(stderr, "nothing moved\n");
        return 1;
    }
    std::sort(times.begin(), times.end());
    for (std::vector<double> *figures : {&shares, &users, &systems}) {
        std::sort(figures->begin(), figures->end());
    }
    std::printf("steps %zu  between them p50 %.2f  p95 %.2f  p99 %.2f  max %.2f ms; largest step %d pixels\n",
                times.size(), at(times, 0.5), at(times, 0.95), at(times, 0.99), times.back(), most);
    std::printf(
        "processor time of the slide p50 %.2f  max %.2f %% of a core; user p50 %.2f, system p50 %.2f\n",
        at(shares, 0.5), shares.back(), at(users, 0.5), at(systems, 0.5));
    return 0;
}
