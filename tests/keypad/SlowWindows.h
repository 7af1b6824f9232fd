#pragma once

#include "support/FakePlatform.h"

#include <deque>

/// A program that takes its texts only when it is told to.
class SlowWindows : public FakeWindowSystem
{
public:
    using FakeWindowSystem::FakeWindowSystem;
    void postText(mevo::WindowId window, const QString &text, PostDone done) override
    {
        FakeWindowSystem::postText(window, text, [this, done](const mevo::PostResult &result) {
            m_held.push_back([done, result] { done(result); });
        });
    }
    void takeAll()
    {
        while (!m_held.empty()) {
            const auto next = m_held.front();
            m_held.pop_front();
            next();
        }
    }

private:
    std::deque<std::function<void()>> m_held;
};
