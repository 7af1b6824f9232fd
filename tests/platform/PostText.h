#pragma once

#include "platform/linux/X11WindowSystem.h"

#include <QtTest>

/// Posts a text and waits for what became of it; a failure of the test when nothing did in 60 s.
inline mevo::PostResult postText(mevo::X11WindowSystem &windows, mevo::WindowId window, const QString &text)
{
    mevo::PostResult result;
    bool done = false;
    windows.postText(window, text, [&](const mevo::PostResult &posted) {
        result = posted;
        done = true;
    });
    if (!QTest::qWaitFor([&] { return done; }, 60000)) {
        QTest::qFail("the text is still being typed", __FILE__, __LINE__);
    }
    return result;
}
