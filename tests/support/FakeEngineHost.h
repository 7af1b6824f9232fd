#pragma once

#include "engines/EngineHost.h"
#include "support/CallLog.h"

#include <functional>

/// Logs what an engine asks for.
class FakeEngineHost : public Logged<mevo::EngineHost>
{
public:
    using Logged::Logged;
    void loadCurrentBaiduCredentials() override { m_log.add(QStringLiteral("load account")); }
    void fetchBaiduToken() override
    {
        m_log.add(QStringLiteral("fetch token"));
        if (onFetch) {
            onFetch();
        }
    }
    void loadBaiduTranslateCredentials() override { m_log.add(QStringLiteral("load translation")); }
    void buildAsrLanMenu(bool persist, bool setup) override
    {
        m_log.add(QStringLiteral("menu %1 %2").arg(persist).arg(setup));
    }
    void ensureEngineTip() override { m_log.add(QStringLiteral("tip window")); }
    void showEngineTip(const QString &text, bool regardless) override
    {
        m_log.add(QStringLiteral("tip %1 ").arg(regardless) + text);
    }
    void channelCountChanged() override { m_log.add(QStringLiteral("channels")); }

    std::function<void()> onFetch; ///< what a fetch of the token does
};
