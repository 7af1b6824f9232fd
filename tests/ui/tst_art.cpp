// Every picture that the program asks for is in the resources, in its size, drawn, and tells what it should.
#include "support/Rows.h"

#include <QDirIterator>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QImageReader>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

namespace {

struct Family
{
    const char *pattern; ///< path below ":/rec/"; "*" stands for each of the words
    QSize size;
    QStringList words;
};

QStringList split(const char *words)
{
    return QString::fromLatin1(words).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QVector<Family> families()
{
    const QStringList languages = split(
        "PuTongHua PuTongHuaXF TXFangYan YueYu SiChuanHua English kr ru fr es ChangShaHua DongBeiHua "
        "GanSuHua "
        "HangZhouHua HeBeiHua HeiFeiHua HeNanHua KeJiaHua MinNanHua NanChangHua NanJingHua ShanDongHua "
        "ShangHaiHua ShanXiHua TaiWanHua TaiYuanHua TianJinHua WuHanHua YunNanHua NingXiaHua GuiZhouHua "
        "WanBeiHua ZiDingYi");
    const QStringList thirdParties = split("xunfei sougo");
    const QStringList levels = split("0 1 2 3 4 5 6");
    const QStringList looks = split("On Hover");
    const QSize tip(149, 170);
    const QSize tray(32, 32);
    const QSize across(36, 20);
    const QSize upright(20, 35);
    return {
        {"mainbk.png", {260, 45}, {}},
        {"mainbkV.png", {45, 260}, {}},
        {"Mic_*.png", {15, 24}, looks},
        {"KeyPad_*.png", {26, 20}, looks},
        {"HandWriter_*.png", {22, 22}, looks},
        {"CommandWord_*.png", {22, 22}, looks},
        {"Translate_*.png", {22, 22}, looks},
        {"Setting_*.png", {21, 21}, looks},
        {"close_*.png", {8, 8}, split("normal press")},
        {"ChineseLan/*.png", across, languages + split("PuTongHuaYiliao PuTongHuaYiliao.png jp")},
        {"ChineseLan/*V.png", upright, languages + split("PutongHuaYiliao PuTongHuaYiliao Jp jp")},
        {"*.png", across, thirdParties},
        {"*V.png", upright, thirdParties},
        {"MicLongPressSpeaking_*.png", tip, split("NoActive Active")},
        {"MicSpeakPlease.png", tip, {}},
        {"Recorder*.png", tip, levels},
        {"Right_Recorder*.png", tip, levels},
        {"*Status.png", {13, 13}, split("Voice Command Search Disable")},
        {"StatusMouseHover.png", {13, 13}, {}},
        {"*.png", tray, split("ORDeviceConnect ORDeviceDisConnect ORNoNetwork ORLowPower NoORDevice")},
        {"PowerLevel*.png", {40, 20}, split("0 1 2 3")},
        {"transbk.png", {455, 230}, {}},
        {"transbk_*.png", {455, 555}, split("set set_delimit")},
        {"tans/TransRead_*.png", {22, 22}, looks},
        {"tans/TransClear_*.png", {22, 22}, looks},
        {"tans/TransSwap_*.png", {20, 16}, looks},
        {"tans/TransClose_*.png", {20, 20}, looks},
        {"tans/TransTick_*.png", {14, 14}, looks},
        {"tans/TransArrow.png", {10, 7}, {}},
        {"app.png", {128, 128}, {}},
    };
}

QString path(const QString &name)
{
    return QLatin1String(":/rec/") + name;
}

QString numbered(const char *pattern, int number)
{
    return path(QString::fromLatin1(pattern).arg(number));
}

QString doubled(const QString &name)
{
    QString result = name;
    return result.insert(name.lastIndexOf(QLatin1String(".png")), QLatin1String("@2x"));
}

template <class Look>
void forEachPixel(const QImage &image, const Look &look)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            look(x, y, image.pixel(x, y));
        }
    }
}

/// Opaque enough to be seen, and not of one colour all over.
bool isDrawn(const QImage &image)
{
    QSet<QRgb> colors;
    int seen = 0;
    forEachPixel(image, [&](int, int, QRgb pixel) {
        colors.insert(pixel);
        seen += qAlpha(pixel) > 40;
    });
    return colors.size() > 3 && seen * 10 > image.width() * image.height();
}

/// Share of the pixels that differ visibly.
double difference(const QString &one, const QString &other)
{
    const QImage a(one);
    const QImage b(other);
    if (a.size() != b.size() || a.isNull()) {
        return 1;
    }
    int different = 0;
    forEachPixel(a, [&](int x, int y, QRgb p) {
        const QRgb q = b.pixel(x, y);
        const int distance = qAbs(qRed(p) - qRed(q)) + qAbs(qGreen(p) - qGreen(q)) +
                             qAbs(qBlue(p) - qBlue(q)) + qAbs(qAlpha(p) - qAlpha(q));
        different += distance > 60;
    });
    return static_cast<double>(different) / (a.width() * a.height());
}

/// Mean lightness as seen on black.
double lightness(const QString &name)
{
    const QImage image(name);
    double sum = 0;
    forEachPixel(image, [&sum](int, int, QRgb pixel) { sum += qGray(qPremultiply(pixel)); });
    return sum / (image.width() * image.height());
}

} // namespace

class TestArt : public QObject
{
    Q_OBJECT

private slots:
    void pictures_data()
    {
        const Rows<QSize> row; // size
        for (const Family &family : families()) {
            const QStringList words = family.words.isEmpty() ? QStringList(QString()) : family.words;
            for (const QString &word : words) {
                const QString name = QString::fromLatin1(family.pattern).replace(QLatin1Char('*'), word);
                row(qPrintable(name), family.size);
            }
        }
    }
    void pictures()
    {
        const auto [size] = rowOf<QSize>();
        const QString name = path(QString::fromLatin1(QTest::currentDataTag()));
        const QImage plain(name);
        const QImage large(doubled(name));
        QCOMPARE(plain.size(), size);
        QCOMPARE(large.size(), size * 2);
        QVERIFY(isDrawn(plain));
        QVERIFY(isDrawn(large));
    }

    void icons_data()
    {
        const Rows<QSize> row; // least
        for (const QString &country :
             split("CN UK JP KR FR RU ES PL PT DE TH CZ AE VN IT GR NL DK SE FI HU RO BG EE SI")) {
            row(qPrintable("tans/%1.ico"_s.arg(country)), {20, 14});
        }
        row("logo.ico", {16, 16});
    }
    void icons()
    {
        const auto [least] = rowOf<QSize>();
        const QString name = path(QString::fromLatin1(QTest::currentDataTag()));
        const QList<QSize> sizes = QIcon(name).availableSizes();
        QVERIFY(sizes.contains(least));
        QVERIFY(sizes.contains(least * 4));
        QImageReader reader(name);
        do {
            const QImage image = reader.read();
            QVERIFY(!image.isNull());
            QVERIFY(isDrawn(image));
        } while (reader.jumpToNextImage());
    }

    void statesDiffer_data()
    {
        const Rows<QStringList> row; // names
        row("tip", split("MicLongPressSpeaking_NoActive MicLongPressSpeaking_Active MicSpeakPlease "
                         "Recorder0 Recorder3 Right_Recorder0 Right_Recorder3"));
        row("status buttons", split("VoiceStatus CommandStatus SearchStatus DisableStatus StatusMouseHover"));
        row("tray", split("ORDeviceConnect ORDeviceDisConnect ORNoNetwork ORLowPower NoORDevice"));
        row("battery", split("PowerLevel0 PowerLevel1 PowerLevel2 PowerLevel3"));
        row("translation settings", split("transbk_set transbk_set_delimit"));
        row("close", split("close_normal close_press"));
        row("Mandarin by its engine", split("ChineseLan/PuTongHua ChineseLan/PuTongHuaXF"));
    }
    void statesDiffer()
    {
        const auto [names] = rowOf<QStringList>();
        for (int i = 0; i < names.size(); ++i) {
            for (int j = 0; j < i; ++j) {
                const double share = difference(path(names[i] + QLatin1String(".png")),
                                                path(names[j] + QLatin1String(".png")));
                QVERIFY2(share > 0.01, qPrintable(names[i] + QLatin1String(" looks like ") + names[j]));
            }
        }
    }

    /// A button with a neighbour's words on it would mislead; boxes of a missing font would all look the
    /// same.
    void languagesDiffer()
    {
        QVector<QImage> seen;
        QDirIterator files(path("ChineseLan"_s));
        while (files.hasNext()) {
            const QString name = files.next();
            const QImage image(name);
            const bool second = name.contains(QLatin1String("Yiliao.png.png")) ||
                                name.contains(QLatin1String("PuTongHuaYiliaoV")) ||
                                name.contains(QLatin1String("/jpV"));
            if (!second && (image.size() == QSize(36, 20) || image.size() == QSize(20, 35))) {
                QVERIFY2(!seen.contains(image), qPrintable(name));
                seen.append(image);
            }
        }
        QVERIFY(seen.size() > 60);
    }

    void levelsRise()
    {
        for (const char *set : {"Recorder%1.png", "Right_Recorder%1.png"}) {
            for (int level = 1; level <= 6; ++level) {
                QVERIFY(lightness(numbered(set, level)) > lightness(numbered(set, level - 1)));
                QVERIFY(difference(numbered(set, level), numbered(set, level - 1)) > 0.005);
            }
        }
    }

    void hoverIsBrighter()
    {
        for (const QString &stem : split("Mic KeyPad HandWriter CommandWord Translate Setting")) {
            QVERIFY(lightness(path(stem + QLatin1String("_Hover.png"))) >
                    lightness(path(stem + QLatin1String("_On.png"))));
        }
    }

    /// Nothing is drawn where the window puts its three status buttons.
    void statusButtonsHaveRoom()
    {
        QStringList names = split("MicLongPressSpeaking_NoActive MicLongPressSpeaking_Active MicSpeakPlease");
        for (const char *set : {"Recorder%1", "Right_Recorder%1"}) {
            for (int level = 0; level <= 6; ++level) {
                names << QString::fromLatin1(set).arg(level);
            }
        }
        for (const QString &name : names) {
            const QImage image(path(name + QLatin1String(".png")));
            for (const int left : {3, 32, 62}) {
                const QRect room(QPoint(left, 5), QPoint(left + 12, 17));
                forEachPixel(image.copy(room), [&](int, int, QRgb pixel) {
                    QVERIFY2(pixel == image.pixel(room.center()), qPrintable(name));
                });
            }
        }
    }

    /// Whole names in the program's sources; names put together from parts are in the list above.
    void sourcesNameOnlyWhatIsThere()
    {
        const QRegularExpression literal(R"(:/rec/[A-Za-z0-9_/.]+\.(?:png|ico)\b)"_s);
        int found = 0;
        QDirIterator files(QStringLiteral(MEVO_SOURCES), {"*.cpp"_s, "*.h"_s, "*.ui"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            auto matches = literal.globalMatch(QString::fromUtf8(file.readAll()));
            while (matches.hasNext()) {
                const QString name = matches.next().captured();
                QVERIFY2(QFile::exists(name), qPrintable(file.fileName() + QLatin1String(": ") + name));
                ++found;
            }
        }
        QVERIFY(found > 0);
    }
};

QTEST_MAIN(TestArt)
#include "tst_art.moc"
