// The bar, its menus and the talk window, on a platform of fakes.

#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "engines/EngineCatalogue.h"
#include "support/Rows.h"
#include "ui/MicTipDialog.h"
#include "window/Program.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QScreen>
#include <QtTest>

namespace {

struct Bar : Program
{
    explicit Bar(const QByteArray &settings = {})
    {
        QFile file(mevo::appFile("MEVOSetting.ini"_s));
        if (!file.open(QIODevice::Append) || file.write(settings) != settings.size()) {
            qFatal("the settings cannot be written");
        }
        file.close();
        start();
    }
    QStringList latchOffs()
    {
        const QStringList sent = fake.log.calls("hid send 05 20 08 00 00 00 00 00"_s);
        fake.log.clear();
        return sent;
    }
};

QStringList labelsOf(const QMenu *menu)
{
    QStringList labels;
    for (const QAction *action : menu->actions()) {
        if (!action->text().isEmpty()) {
            labels.append(action->text());
        }
    }
    return labels;
}

void drag(QWidget *window, const QPoint &to, Qt::MouseButtons buttons)
{
    QMouseEvent event(QEvent::MouseMove, to, window->mapToGlobal(to), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(window, &event);
}

} // namespace

class TestBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void languageMenu()
    {
        Bar bar;
        MainWindow &window = *bar.window;
        window.ShowTXI = window.ShowBaiduI = window.ShowXFWebApi = window.ShowASR3UI = true;
        window.ShowBdSdPTHI = window.ShowBdYYI = window.ShowBdSCHI = window.ShowBdEnI = true;
        window.ShowXunFeiInputMethod = window.ShowSogouInputMethod = window.ShowASR3Custom = true;
        window.LocalASR3CustomInstallPath = "SpeechInput.exe"_s;
        window.UseTecentZhDialect = true;
        mevo::SettingsFile().setValue("TXCurrentVoiceType"_s, "16k_zh_dialect"_s);
        window.BuildAsrLanMenu(false, false);
        const QStringList cloud{"普通话(腾讯版)"_s,     "粤语(腾讯版)"_s,   "普通话+医疗(腾讯版)"_s,
                                "自识别方言(腾讯版)"_s, "英语(腾讯版)"_s,   "日语(腾讯版)"_s,
                                "普通话(百度版)"_s,     "粤语(百度版)"_s,   "四川话(百度版)"_s,
                                "英语(百度版)"_s,       "普通话(讯飞版)"_s, "英语(讯飞版)"_s};
        const QStringList methods{"使用讯飞语音输入法"_s, "使用搜狗语音输入法"_s, "使用自定义语音输入法"_s};
        const QStringList labels = labelsOf(window.languageMenu());
        QCOMPARE(labels.mid(0, cloud.size()), cloud);
        QCOMPARE(labels.size(), cloud.size() + methods.size());
        for (int i = 0; i < methods.size();
             ++i) { // which may say behind it that it has to be installed first
            QVERIFY2(labels[cloud.size() + i].startsWith(methods[i]), qPrintable(labels[cloud.size() + i]));
        }
    }

    void barMenu()
    {
        Bar bar;
        const auto *menu = bar.window->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
        for (const QMenu *candidate : bar.window->findChildren<QMenu *>()) {
            if (candidate->windowTitle() == QLatin1String("BarMenu")) {
                menu = candidate;
            }
        }
        QStringList expected{"隐藏此菜单"_s,   "显示垂直界面"_s, "隐藏主界面"_s, "默认窗口显示位置"_s,
                             "关闭语音识别"_s, "使用说明"_s,     "退出软件"_s};
        QCOMPARE(labelsOf(menu), expected);
        bar.window->show();
        bar.window->on_ShowHorizontalOrVertical();
        bar.window->on_showMainAction();
        expected[1] = "显示水平界面"_s;
        expected[2] = "显示界面"_s;
        QCOMPARE(labelsOf(menu), expected);
        bar.window->on_ShowHorizontalOrVertical();
        bar.window->on_showMainAction();
        expected[1] = "显示垂直界面"_s;
        expected[2] = "隐藏界面"_s;
        QCOMPARE(labelsOf(menu), expected);
    }

    void dialects()
    {
        const QStringList expected =
            "长沙话 changshanese ChangShaHua;东北话 dongbeiese DongBeiHua;甘肃话 gansunese GanSuHua;"
            "广东话 cantonese YueYu;杭州话 hangzhounese HangZhouHua;河北话 hebeinese HeBeiHua;"
            "合肥话 hefeinese HeiFeiHua;河南话 henanese HeNanHua;客家话 hakkanese KeJiaHua;"
            "闽南话 minnanese MinNanHua;南昌话 nanchangnese NanChangHua;南京话 nankinese NanJingHua;"
            "山东话 shandongnese ShanDongHua;上海话 shanghainese ShangHaiHua;陕西话 shanxinese ShanXiHua;"
            "四川话 lmz SiChuanHua;台湾话 taiwanese TaiWanHua;太原话 taiyuanese TaiYuanHua;"
            "天津话 tianjinese TianJinHua;武汉话 wuhanese WuHanHua;云南话 yunnanese YunNanHua;"
            "宁夏话 ningxianese NingXiaHua;贵州话 guizhounese GuiZhouHua;皖北话 wanbeinese WanBeiHua;"
            "普通话 mandarin PuTongHuaXF;英语 en_us English;日语 ja_jp jp;韩语 ko_kr kr;俄语 ru-ru ru;"
            "法语 fr_fr fr;西班牙语 es_es es"_s.split(u';');
        QStringList rows;
        for (const mevo::XunFeiLanguage &language : mevo::xunFeiLanguages()) {
            rows.append("%1 %2 %3"_s.arg(QString::fromUtf8(language.label), QLatin1String(language.code),
                                         QLatin1String(language.image)));
        }
        QCOMPARE(rows, expected);
    }

    /// Turned upright and back, the bar goes to its default place only when the user has not given it one.
    void orientation_data()
    {
        const Rows<QByteArray, bool> row; // saved, moves
        row("no place", QByteArray(), true);
        row("half a place", QByteArray("MainWinLeft=60\n"), true);
        row("a place", QByteArray("MainWinLeft=60\nMainWinTop=70\n"), false);
    }
    void orientation()
    {
        const auto [saved, moves] = rowOf<QByteArray, bool>();
        Bar bar(saved);
        MainWindow &window = *bar.window;
        const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
        window.move(30, 40); // as nobody has saved
        window.on_ShowHorizontalOrVertical();
        QCOMPARE(window.size(), QSize(45, 260));
        QCOMPARE(window.pos(), moves ? QPoint(screen.width() - 99, 100) : QPoint(30, 40));
        window.move(50, 60);
        window.on_ShowHorizontalOrVertical();
        QCOMPARE(window.size(), QSize(260, 45));
        QCOMPARE(window.pos(), moves ? QPoint(screen.width() - 299, screen.height() - 199) : QPoint(50, 60));
    }

    void firstPlaceAtAnArrival()
    {
        Bar bar("ShowVerticalUI=true\n");
        MainWindow &window = *bar.window;
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QCOMPARE(window.x(), screen.width() - 99);
        bar.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
        QTRY_VERIFY(!window.DeviceConnected);
        bar.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival);
        QTRY_VERIFY(window.DeviceConnected && window.isVisible());
        QCOMPARE(window.x(), screen.right() - screen.left() - 299);
    }

    /// The pointer over the talk window shows in its picture, a session or none, but not while it is latched.
    void hoverPictures()
    {
        Bar bar;
        MicTipDialog &tip = *bar.window->micTip();
        tip.show();
        const auto hover = [&tip](QEvent::Type type) {
            QEvent event(type);
            if (type == QEvent::Enter) {
                QEnterEvent enter({70, 90}, {70, 90}, {70, 90});
                QApplication::sendEvent(&tip, &enter);
            } else {
                QApplication::sendEvent(&tip, &event);
            }
            return tip.picture();
        };
        const QString active = ":/rec/MicLongPressSpeaking_Active.png"_s;
        const QString idle = ":/rec/MicLongPressSpeaking_NoActive.png"_s;
        const QString speak = ":/rec/MicSpeakPlease.png"_s;
        for (const bool recording : {false, true}) {
            bar.window->Recording = recording;
            QCOMPARE(hover(QEvent::Enter), active);
            QCOMPARE(hover(QEvent::Leave), idle);
        }
        bar.window->MicLatched = true;
        tip.UpdataMicWin(speak);
        QCOMPARE(hover(QEvent::Enter), speak);
        QCOMPARE(hover(QEvent::Leave), speak);
        bar.window->MicLatched = bar.window->Recording = false;
    }

    /// Any move of a latched window ends its session; the trembling of the click that latched it is no move.
    void aMoveEndsALatchedSession_data()
    {
        const Rows<int, bool, bool> row; // distance, right (the right button is still down), ends
        row("the click trembles", 3, true, false);
        row("the click drags", 9, true, true);
        row("one pixel, later", 1, false, true);
    }
    void aMoveEndsALatchedSession()
    {
        const auto [distance, right, ends] = rowOf<int, bool, bool>();
        Bar bar;
        MainWindow &window = *bar.window;
        MicTipDialog &tip = *window.micTip();
        window.ClickCanASR = true;
        tip.show();
        const QPoint at(74, 100);
        QTest::mousePress(&tip, Qt::RightButton, Qt::NoModifier, at);
        QVERIFY(window.Recording && window.MicLatched);
        bar.latchOffs();
        drag(&tip, at + QPoint(distance, 0), right ? Qt::RightButton : Qt::LeftButton);
        QCOMPARE(window.Recording.load(), !ends);
        QCOMPARE(bar.latchOffs().size(), ends ? 1 : 0);
        if (ends) {
            QVERIFY(!window.MicLatched); // nothing was said: else the receiver's keys would stay dead
            drag(&tip, at + QPoint(distance + 5, 0), Qt::RightButton);
            QCOMPARE(bar.fake.log.calls(), QStringList());
        }
    }
};

QTEST_MAIN(TestBar)
#include "tst_bar.moc"
