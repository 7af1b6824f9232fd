// How long the translation window takes to open, from the button to its first picture on the screen, and how
// long a text takes to be shown translated over the service's own time; and the longest that the window stood
// still while a service was silent. The real window and client, the lab's service on a thread of its own.
// Run inside a desk: lab/desk/with-desk --wm -- build/release/bin/translation_window [TEXTS [SERVICE_MS]]

#include "base/SettingsFile.h"
#include "services/LabHttpServer.h"
#include "translation/TranslateService.h"
#include "ui/translation/CTransTipDialog.h"
#include "window/Program.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>
#include <QTextEdit>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>
#include <vector>

namespace {

/// The service, which answers after a time of its own choice and notes how long each answer took it.
class ServiceThread : public QThread
{
public:
    explicit ServiceThread(int answerMs)
        : m_answerMs(answerMs)
    {
    }
    void run() override
    {
        lab::TranslateService service("appid", "key", [](const QJsonObject &) {});
        QObject context;
        lab::LabHttpServer server(
            [&](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
                if (!request.path().endsWith("/translate")) {
                    reply({404, {}, {}});
                    return;
                }
                if (silent) {
                    return;
                }
                QElapsedTimer watch;
                watch.start();
                QTimer::singleShot(m_answerMs, Qt::PreciseTimer, &context, [&, request, reply, watch] {
                    service.handle(request, reply);
                    const std::lock_guard<std::mutex> lock(m_mutex);
                    m_lastMs = double(watch.nsecsElapsed()) / 1e6;
                });
            });
        server.start(0);
        port = server.serverPort();
        exec();
    }
    /// Of the last answer.
    double ownMs()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_lastMs;
    }
    std::atomic<int> port{0};
    std::atomic<bool> silent{false};

private:
    int m_answerMs;
    std::mutex m_mutex;
    double m_lastMs = 0;
};

/// Notes when the translation window has painted itself for the first time.
class FirstPicture : public QObject
{
public:
    explicit FirstPicture(const QElapsedTimer &watch)
        : m_watch(watch)
    {
        qApp->installEventFilter(this);
    }
    double ms = -1;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (ms < 0 && event->type() == QEvent::Paint && qobject_cast<CTransTipDialog *>(watched) != nullptr) {
            ms = 0;
            QTimer::singleShot(0, this, [this] { ms = double(m_watch.nsecsElapsed()) / 1e6; });
        }
        return false;
    }

private:
    const QElapsedTimer &m_watch;
};

template <typename Done>
bool waitFor(const Done &done, int milliseconds = 10000)
{
    QElapsedTimer watch;
    watch.start();
    QEventLoop loop; // only one that is executed deletes what is to be deleted later
    QTimer look;
    look.callOnTimeout([&] {
        if (done() || watch.elapsed() >= milliseconds) {
            loop.quit();
        }
    });
    look.start(1);
    loop.exec();
    return done();
}

void print(const char *what, std::vector<double> milliseconds)
{
    std::sort(milliseconds.begin(), milliseconds.end());
    const std::size_t count = milliseconds.size();
    std::printf("%-44s p50 %6.1f  p95 %6.1f  max %6.1f ms (%zu)\n", what, milliseconds[count / 2],
                milliseconds[count * 95 / 100], milliseconds.back(), count);
}

int giveUp(const char *why)
{
    std::fprintf(stderr, "translation_window: %s\n", why);
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int texts = std::max(1, arguments.value(1, QStringLiteral("50")).toInt());
    constexpr int openings = 20;

    ServiceThread service(arguments.value(2, QStringLiteral("20")).toInt());
    service.start();
    if (!waitFor([&service] { return service.port != 0; })) {
        return giveUp("the service does not start");
    }
    {
        Program program(true, QStringLiteral("127.0.0.1:%1").arg(service.port.load()));
        program.start();
        MainWindow &window = *program.window;
        window.BaiduTranslateAppId = QStringLiteral("appid");
        window.BaiduTranslateKey = QStringLiteral("key");
        window.show();
        { // what is typed by itself is another matter
            mevo::SettingsFile settings(QStringLiteral("TransSetting"));
            settings.setValue(QStringLiteral("SendTransResult2ScreenMode"), 10000);
        }
        const auto dialog = [&window] { return window.findChild<CTransTipDialog *>(); };

        std::vector<double> opened;
        for (int i = 0; i < openings; ++i) {
            QElapsedTimer watch;
            FirstPicture picture(watch);
            watch.start();
            window.pushBuutton_Translate_clicked();
            if (!waitFor([&picture] { return picture.ms > 0; })) {
                return giveUp("the window does not come");
            }
            if (i == 0) {
                print("button to window, the first time", {picture.ms});
            } else {
                opened.push_back(picture.ms);
            }
            if (i + 1 < openings) {
                window.pushBuutton_Translate_clicked();
                waitFor([&dialog] { return dialog() == nullptr; });
            }
        }
        print("button to window, from then on", opened);

        auto *const pane = dialog()->findChild<QTextEdit *>(QStringLiteral("textEdit_DestLan"));
        std::vector<double> over;
        for (int i = 0; i < texts; ++i) {
            const QString text = QStringLiteral("第%1句话").arg(i);
            pane->clear();
            QElapsedTimer watch;
            watch.start();
            window.showRecText(text + QStringLiteral("__over__"));
            double shown = -1;
            const auto connection = QObject::connect(pane, &QTextEdit::textChanged, pane, [&shown, &watch] {
                shown = double(watch.nsecsElapsed()) / 1e6;
            });
            const bool came = waitFor([&shown] { return shown > 0; });
            QObject::disconnect(connection);
            if (!came || !pane->toPlainText().contains(text)) {
                return giveUp("a text is not translated");
            }
            waitFor([] { return false; }, 5); // the service has noted its time
            over.push_back(shown - service.ownMs());
        }
        print("text to translation, over the service's time", over);

        service.silent = true;
        QElapsedTimer beat;
        double longest = 0;
        int beats = 0;
        QTimer heart;
        QObject::connect(&heart, &QTimer::timeout, [&] {
            longest = std::max(longest, double(beat.nsecsElapsed()) / 1e6);
            ++beats;
            beat.start();
        });
        window.showRecText(QStringLiteral("没有回答__over__"));
        beat.start();
        heart.start(1);
        waitFor([] { return false; }, 1500);
        heart.stop();
        std::printf("%-44s longest %6.1f ms (%d looks)\n", "standing still while a service is silent",
                    longest, beats);
    }
    service.quit();
    service.wait();
    return 0;
}
