#include "engines/AsrLanMenu.h"

#include "engines/EngineSelection.h"
#include "engines/LanguageImages.h"

namespace mevo {

namespace {

const QLatin1String dialectCode("16k_zh_dialect");

/// Permission of a Baidu row by its code.
bool baiduRowShown(const EnginePermissions &state, const QLatin1String &code)
{
    static constexpr struct
    {
        const char *code;
        bool EnginePermissions::*shown;
    } rows[] = {{"1537", &EnginePermissions::ShowBdSdPTHI},
                {"1637", &EnginePermissions::ShowBdYYI},
                {"1837", &EnginePermissions::ShowBdSCHI},
                {"1737", &EnginePermissions::ShowBdEnI}};
    for (const auto &row : rows) {
        if (code == QLatin1String(row.code)) {
            return state.*row.shown;
        }
    }
    return false;
}

bool thirdPartyRowShown(const EnginePermissions &state, const MenuFacts &facts, int index)
{
    switch (index) {
    case 1:
        return state.ShowXunFeiInputMethod;
    case 2:
        return state.ShowSogouInputMethod;
    default:
        return state.ShowASR3Custom && facts.customMethodKnown;
    }
}

class Builder
{
public:
    Builder(const EngineState &state, const RecorderState &recorder, const MenuFacts &facts)
        : m_state(state)
        , m_recorder(recorder)
        , m_facts(facts)
    {
    }

    AsrMenu build()
    {
        if (m_state.ShowTXI) {
            addSection(Engine::Tencent);
        }
        if (!m_state.ShowBaiduI) {
            m_menu.forceTencent = true; // kept: with Baidu hidden the rows below are not offered either
            return m_menu;
        }
        addSection(Engine::Baidu);
        if (!m_facts.xpClass && m_state.ShowXFWebApi) {
            addSection(Engine::XunFei);
        }
        if (m_state.ShowASR3UI) {
            addSection(Engine::ThirdParty);
        }
        showOtherXunFeiLanguage();
        return m_menu;
    }

private:
    bool isShown(const LanguageRow &row) const
    {
        switch (row.engine) {
        case Engine::Tencent:
            return QLatin1String(row.code) != dialectCode ||
                   (m_state.UseTecentZhDialect && !m_menu.clearTencentDialect);
        case Engine::Baidu:
            return baiduRowShown(m_state, QLatin1String(row.code));
        case Engine::XunFei:
            return true;
        case Engine::ThirdParty:
            return thirdPartyRowShown(m_state, m_facts, QByteArray(row.code).toInt());
        }
        return false;
    }

    bool isInForce(const LanguageRow &row) const
    {
        const QLatin1String code(row.code);
        if (row.engine == Engine::ThirdParty) {
            return m_state.LocalEnableASR3 && m_state.LocalUseASR3Index == QByteArray(row.code).toInt();
        }
        if (m_state.LocalEnableASR3) {
            return false;
        }
        switch (row.engine) {
        case Engine::Tencent:
            return m_recorder.UseTXASRApi && m_state.TXCurrentVoiceType == code;
        case Engine::Baidu:
            return m_recorder.BaiDuNoStreamApi && m_state.BaiDuCurrentVoiceType == code;
        default:
            return m_recorder.UseXunFeiWebApi && xunFeiLanguageInForce(m_state) == code;
        }
    }

    void addSection(Engine engine)
    {
        for (const LanguageRow &row : menuLanguages()) {
            if (row.engine != engine) {
                continue;
            }
            const bool sameTencentCode =
                engine == Engine::Tencent && m_state.TXCurrentVoiceType == QLatin1String(row.code);
            if (sameTencentCode && QLatin1String(row.code) != dialectCode) {
                m_menu.clearTencentDialect = true;
            }
            if (!isShown(row)) {
                continue;
            }
            const bool checked = isInForce(row);
            m_menu.entries.push_back({&row, checked});
            if (checked) {
                m_menu.buttonImage = languageButtonStyle(
                    QLatin1String(m_facts.vertical ? row.verticalImage : row.image), m_facts.vertical);
            }
        }
        if (engine != Engine::ThirdParty) {
            m_menu.entries.push_back({});
        }
    }

    /// A dialect or a minor language has no row here; the button still tells which one is spoken.
    void showOtherXunFeiLanguage()
    {
        if (!m_menu.buttonImage.isEmpty() || m_state.LocalEnableASR3 || !m_recorder.UseXunFeiWebApi) {
            return;
        }
        for (const XunFeiLanguage &language : xunFeiLanguages()) {
            if (m_state.XunFeiWebApiCurrentVoiceType == QLatin1String(language.code)) {
                m_menu.buttonImage = languageButtonStyle(QLatin1String(language.image), m_facts.vertical);
            }
        }
    }

    const EngineState &m_state;
    const RecorderState &m_recorder;
    const MenuFacts &m_facts;
    AsrMenu m_menu;
};

} // namespace

AsrMenu buildAsrMenu(const EngineState &state, const RecorderState &recorder, const MenuFacts &facts)
{
    return Builder(state, recorder, facts).build();
}

} // namespace mevo
