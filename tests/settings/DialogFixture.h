#pragma once

#include "settings/FakeSettingsHost.h"

#include "base/SettingsFile.h"
#include "state/SettingsTable.h"
#include "support/ScratchHome.h"
#include "ui/Ask.h"
#include "ui/settings/CSettingDialog.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollArea>
#include <QTabWidget>
#include <QtTest>

/// The settings dialog over a file of settings, shown. Questions are answered by `answer`.
struct Opened
{
    static const ScratchHome &home()
    {
        static const ScratchHome folder;
        return folder;
    }

    MainState state;
    FakeSettingsHost host{state};
    std::unique_ptr<CSettingDialog> dialog;
    QStringList questions;
    int answer = -1;
    std::function<void()> onQuestion;

    /// `prepare` changes the state between the load and the making of the dialog.
    explicit Opened(const QByteArray &settings = QByteArray(),
                    const std::function<void(Opened &)> &prepare = nullptr)
    {
        home().write(QStringLiteral("MEVOSetting.ini"), "[MainSetting]\n" + settings);
        {
            mevo::SettingsFile file;
            mevo::loadSettings(state, file, false);
        }
        mevo::loadProxySettings(state, mevo::SettingsFile(QStringLiteral("NetworkProxy")));
        state.HidCommandHandle = reinterpret_cast<mevo::HidHandle>(1); // NOLINT: a receiver is there
        state.DeviceConnected = true;
        mevo::askHook = [this](const mevo::Question &question) {
            questions.append(question.text);
            if (onQuestion) {
                onQuestion();
            }
            return answer;
        };
        if (prepare) {
            prepare(*this);
        }
        dialog = std::make_unique<CSettingDialog>(state, host);
        dialog->present(nullptr);
        if (!QTest::qWaitForWindowActive(dialog.get())) {
            qWarning("The dialog is not active");
        }
        host.calls.clear();
    }
    ~Opened()
    {
        dialog.reset();
        mevo::askHook = nullptr;
    }
    Q_DISABLE_COPY(Opened)

    template <class T = QAbstractButton>
    T *find(const char *name) const
    {
        T *widget = dialog->findChild<T *>(QLatin1String(name));
        if (widget == nullptr) {
            qFatal("There is no %s", name);
        }
        return widget;
    }
    /// Brings a control's page to the front, and the control into sight.
    void turnTo(QWidget *widget) const
    {
        auto *pages = find<QTabWidget>("tabWidget_Setting");
        for (int i = 0; i < pages->count(); ++i) {
            if (pages->widget(i)->isAncestorOf(widget)) {
                pages->setCurrentIndex(i);
                static_cast<QScrollArea *>(pages->widget(i))->ensureWidgetVisible(widget);
            }
        }
    }
    /// With the mouse, when the control can be seen; one that stands behind another is pressed by its name.
    void click(const char *name) const
    {
        auto *button = find(name);
        turnTo(button);
        if (button->isVisible()) {
            const QPoint left(8, button->height() / 2); // where a box or a dot is
            QTest::mouseClick(button, Qt::LeftButton, {}, left);
        } else {
            button->click();
        }
    }
    bool isOn(const char *name) const { return find(name)->isChecked(); }
    bool isShown(const char *name) const
    {
        auto *widget = find<QWidget>(name);
        turnTo(widget);
        return widget->isVisible();
    }
    /// Puts the cursor into a field and types at its end.
    void type(const char *name, const QString &text) const
    {
        auto *line = find<QLineEdit>(name);
        turnTo(line);
        line->setFocus();
        line->end(false);
        QTest::keyClicks(line, text);
    }
    void replace(const char *name, const QString &text) const
    {
        auto *line = find<QLineEdit>(name);
        turnTo(line);
        line->setFocus();
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        QTest::keyClicks(line, text);
    }
    void pick(const char *name, int index) const
    {
        auto *box = find<QComboBox>(name);
        turnTo(box);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Home);
        for (int i = 0; i < index; ++i) {
            QTest::keyClick(box, Qt::Key_Down);
        }
        QCOMPARE(box->currentIndex(), index);
    }
    static QString stored(const char *key, const char *group = "MainSetting")
    {
        return mevo::SettingsFile(QLatin1String(group))
            .value(QLatin1String(key), QStringLiteral("absent"))
            .toString();
    }
};
