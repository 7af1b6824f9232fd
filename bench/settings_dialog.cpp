// How long the settings dialog takes to open, from its making to its first picture, and pictures of its
// pages. settings_dialog [OPENINGS [LANGUAGE [FOLDER]]]; LANGUAGE is zh, cht or en. With a folder, each page,
// its rest below the edge too, is written there as PNG. The scale is Qt's QT_SCALE_FACTOR. Run inside a desk:
// lab/desk/with-desk --wm -- build/release/bin/settings_dialog 20 en /tmp

#include "settings/DialogFixture.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTranslator>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

/// Every page from its top to its end, a picture for each height of the dialog. False where one can't be
/// written.
bool drawPages(const Opened &opened, const QString &folder, const QString &name)
{
    auto *pages = opened.find<QTabWidget>("tabWidget_Setting");
    for (int i = 0; i < pages->count(); ++i) {
        pages->setCurrentIndex(i);
        QScrollBar *bar = static_cast<QScrollArea *>(pages->widget(i))->verticalScrollBar();
        for (int part = 0, at = 0;; ++part, at += bar->pageStep()) {
            bar->setValue(at);
            QCoreApplication::processEvents();
            const QString file = QStringLiteral("%1-page%2-%3.png").arg(name).arg(i + 1).arg(part + 1);
            if (!opened.dialog->grab().save(QDir(folder).filePath(file))) {
                std::fprintf(stderr, "settings_dialog: %s cannot be written\n", qPrintable(file));
                return false;
            }
            if (bar->value() >= bar->maximum()) {
                break;
            }
        }
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int openings = std::max(1, arguments.value(1, QStringLiteral("20")).toInt());
    const QString language = arguments.value(2, QStringLiteral("zh"));
    QTranslator translator;
    if (language != QLatin1String("zh")) {
        if (!translator.load(QStringLiteral(":/translations/%1.qm").arg(language))) {
            std::fprintf(stderr, "settings_dialog: no language %s\n", qPrintable(language));
            return 1;
        }
        QCoreApplication::installTranslator(&translator);
    }
    std::vector<double> milliseconds;
    for (int i = 0; i < openings; ++i) {
        QElapsedTimer watch;
        watch.start();
        const Opened opened;
        QApplication::processEvents();
        milliseconds.push_back(double(watch.nsecsElapsed()) / 1e6);
        if (i + 1 == openings && arguments.size() > 3 && !drawPages(opened, arguments[3], language)) {
            return 1;
        }
    }
    std::printf("first opening %.1f ms\n", milliseconds.front());
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf(
        "openings p50 %.1f  max %.1f ms (%zu), the settings' reading and the wait for the focus included\n",
        milliseconds[milliseconds.size() / 2], milliseconds.back(), milliseconds.size());
    return 0;
}
