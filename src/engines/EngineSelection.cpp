#include "engines/EngineSelection.h"

namespace mevo {

namespace {

void leaveThirdParty(EngineState &state)
{
    state.LocalEnableASR3 = false;
    state.LocalUseASR3Index = -1;
}

EngineChange moveTo(Engine engine, RecorderState &recorder, bool persist, bool setup)
{
    setEngineFlags(recorder, engine);
    if (engine == Engine::XunFei) {
        recorder.BaiduTokenRefreshed = false;
    }
    EngineChange change;
    change.writes = engineKeyWrites(recorder);
    change.rebuild = true;
    change.persistEngine = persist;
    change.setupInputMethod = setup;
    return change;
}

/// The engine's language, where none has ever been chosen or the settings file was lost: without one there is
/// no account, or the service refuses.
void chooseMissingLanguage(EngineChange &change, QString &current, const char *key, const char *code)
{
    if (current.isEmpty()) {
        current = QLatin1String(code);
        change.writes.push_back({key, current});
    }
}

} // namespace

void setEngineFlags(RecorderState &recorder, Engine engine)
{
    recorder.BaiDuNoStreamApi = engine == Engine::Baidu;
    recorder.UseXunFeiWebApi = engine == Engine::XunFei;
    recorder.UseTXASRApi = engine == Engine::Tencent || engine == Engine::ThirdParty;
}

Engine engineInForce(const RecorderState &recorder)
{
    return recorder.UseXunFeiWebApi ? Engine::XunFei : recorder.UseTXASRApi ? Engine::Tencent : Engine::Baidu;
}

bool hasEngine(const RecorderState &recorder)
{
    return recorder.BaiDuNoStreamApi || recorder.UseTXASRApi || recorder.UseXunFeiWebApi;
}

std::vector<SettingWrite> engineKeyWrites(const RecorderState &recorder)
{
    return {{"UseXunFeiWebApi", int(recorder.UseXunFeiWebApi)},
            {"UseTXASRApi", int(recorder.UseTXASRApi)},
            {"BaiDuNoStreamApi", int(recorder.BaiDuNoStreamApi)}};
}

QString engineStatement(const RecorderState &recorder, const QString &schema, const QString &dongleId)
{
    if (!hasEngine(recorder)) {
        return {};
    }
    const Statement statement = recorder.UseXunFeiWebApi ? Statement::UseXunFei
                                : recorder.UseTXASRApi   ? Statement::UseTencent
                                                         : Statement::UseBaidu;
    return deviceStatement(statement, schema, {dongleId});
}

const CredentialListRow *accountListFor(const LanguageRow &row, const EngineState &state)
{
    const QLatin1String code(row.code);
    return row.engine == Engine::Baidu && state.BaiDuCurrentVoiceType != code ? baiduCredentialList(code)
                                                                              : nullptr;
}

EngineChange chooseLanguage(const LanguageRow &row, EngineState &state, RecorderState &recorder)
{
    const QLatin1String code(row.code);
    EngineChange change;
    state.BaiDuNoStreamApi_FastVersion = false;
    switch (row.engine) {
    case Engine::Tencent:
        state.TXCurrentVoiceType = code;
        state.UseTecentZhDialect = code == QLatin1String("16k_zh_dialect");
        break;
    case Engine::Baidu:
        state.BaiDuCurrentVoiceType = code;
        recorder.BaiduTokenRefreshed = true;
        break;
    case Engine::XunFei:
        state.XunFeiWebApiCurrentVoiceType = code;
        recorder.BaiduTokenRefreshed = false;
        break;
    case Engine::ThirdParty:
        state.LocalEnableASR3 = true;
        state.LocalUseASR3Index = QByteArray(row.code).toInt();
        if (state.TXCurrentVoiceType.isEmpty()) { // its engine hears commands meanwhile
            state.TXCurrentVoiceType = QStringLiteral("16k_zh");
        }
        break;
    }
    setEngineFlags(recorder, row.engine);
    if (row.engine != Engine::ThirdParty) {
        leaveThirdParty(state);
    }
    change.writes = {{"BaiDuCurrentVoiceType", state.BaiDuCurrentVoiceType},
                     {"BaiDuNoStreamApi_FastVersion", int(state.BaiDuNoStreamApi_FastVersion)},
                     {"XunFeiWebApiCurrentVoiceType", state.XunFeiWebApiCurrentVoiceType},
                     {"TXCurrentVoiceType", state.TXCurrentVoiceType},
                     {"BaiDuNoStreamApi", int(recorder.BaiDuNoStreamApi)},
                     {"UseBaiDuiAI", int(recorder.BaiDuNoStreamApi)},
                     {"UseTXASRApi", int(recorder.UseTXASRApi)},
                     {"UseXunFeiWebApi", int(recorder.UseXunFeiWebApi)},
                     {"UseTecentZhDialect", int(state.UseTecentZhDialect)},
                     {"LocalEnableASR3", int(state.LocalEnableASR3)},
                     {"LocalUseASR3Index", state.LocalUseASR3Index}};
    change.rebuild = true;
    change.persistEngine = true;
    change.setupInputMethod = row.engine == Engine::ThirdParty;
    return change;
}

std::vector<EngineChange> applyRecordSelectors(EngineState &state, RecorderState &recorder, bool xpClass,
                                               int storedDialect, int storedSmallLan, bool userHasChosen)
{
    std::vector<EngineChange> changes;
    const auto keeps = [&](Engine engine) { return userHasChosen && engineInForce(recorder) == engine; };
    if (xpClass && (state.UseXFWAPIPara == 1 || state.UseXFSDKPara == 1)) {
        state.UseBDAPIPara = state.UseXFWAPIPara = state.UseXFSDKPara = 0;
        state.UseTXAPIPara = 1;
        if (!userHasChosen) {
            changes.push_back(moveTo(Engine::Tencent, recorder, false, false));
        }
    }
    if (state.UseBDFstPara >= 0 && !keeps(Engine::Baidu) &&
        (state.UseBDFstPara != 0) != state.BaiDuNoStreamApi_FastVersion) {
        state.BaiDuNoStreamApi_FastVersion = state.UseBDFstPara != 0;
        state.BaiDuCurrentVoiceType =
            state.BaiDuNoStreamApi_FastVersion ? QStringLiteral("80001") : QStringLiteral("1537");
        EngineChange change;
        change.writes = {{"BaiDuNoStreamApi_FastVersion", int(state.BaiDuNoStreamApi_FastVersion)},
                         {"BaiDuCurrentVoiceType", state.BaiDuCurrentVoiceType}};
        change.rebuild = true;
        changes.push_back(change);
    }
    if (state.UseXFWPIDWAPara >= 0) {
        recorder.EnableXunFeiWebApiDwa = state.UseXFWPIDWAPara != 0;
        EngineChange change;
        change.writes = {{"EnableXunFeiWebApiDwa", int(recorder.EnableXunFeiWebApiDwa)}};
        changes.push_back(change);
    }
    // More than one selector may be set: the last one wins.
    if (state.UseBDAPIPara == 1 && !recorder.BaiDuNoStreamApi && !userHasChosen) {
        EngineChange change = moveTo(Engine::Baidu, recorder, false, false);
        chooseMissingLanguage(change, state.BaiDuCurrentVoiceType, "BaiDuCurrentVoiceType", "1537");
        changes.push_back(change);
    }
    if (state.UseXFWAPIPara == 1 && !recorder.UseXunFeiWebApi && !userHasChosen) {
        changes.push_back(moveTo(Engine::XunFei, recorder, false, false));
    }
    if (state.UseTXAPIPara == 1 && !recorder.UseTXASRApi && !userHasChosen) {
        EngineChange change = moveTo(Engine::Tencent, recorder, false, false);
        chooseMissingLanguage(change, state.TXCurrentVoiceType, "TXCurrentVoiceType", "16k_zh");
        changes.push_back(change);
    }
    if (state.ShowXFSmallLan != storedSmallLan || state.ShowXFDialect != storedDialect) {
        EngineChange change;
        change.writes = {{"ShowXFSmallLan", state.ShowXFSmallLan}, {"ShowXFDialect", state.ShowXFDialect}};
        if (!keeps(Engine::XunFei)) {
            state.XunFeiWebApiCurrentVoiceType = QStringLiteral("mandarin");
            change.writes.push_back({"XunFeiWebApiCurrentVoiceType", state.XunFeiWebApiCurrentVoiceType});
            change.rebuild = change.persistEngine = change.setupInputMethod = recorder.UseXunFeiWebApi;
        }
        changes.push_back(change);
    }
    return changes;
}

EngineChange leaveHiddenDialect(EngineState &state)
{
    EngineChange change;
    if (!state.ShowTecentZhDialect && state.TXCurrentVoiceType == QLatin1String("16k_zh_dialect")) {
        state.TXCurrentVoiceType = QStringLiteral("16k_zh");
        change.writes = {{"TXCurrentVoiceType", state.TXCurrentVoiceType}};
        change.rebuild = true;
    }
    return change;
}

EngineChange fallToXunFei(RecorderState &recorder)
{
    recorder.BaiDuNoStreamApi = false;
    recorder.UseXunFeiWebApi = true;
    recorder.BaiduTokenRefreshed = false;
    recorder.BaiduViaSettings = false;
    EngineChange change;
    change.writes = {{"UseXunFeiWebApi", 1}, {"BaiDuNoStreamApi", 0}};
    change.rebuild = change.persistEngine = change.setupInputMethod = true;
    return change;
}

EngineChange chooseAtFirstArrival(EngineState &state, RecorderState &recorder)
{
    state.EnableASR3 = false;
    state.UseASR3Index = -1;
    leaveThirdParty(state);
    state.BaiDuCurrentVoiceType = QStringLiteral("1537");
    EngineChange change = moveTo(Engine::Baidu, recorder, false, false);
    change.writes.insert(change.writes.end(),
                         {{"BaiDuCurrentVoiceType", state.BaiDuCurrentVoiceType},
                          {"BaiDuNoStreamApi_FastVersion", int(state.BaiDuNoStreamApi_FastVersion)},
                          {"LocalEnableASR3", 0},
                          {"LocalUseASR3Index", -1},
                          {"FirstRunApp", 0}});
    return change;
}

EngineChange fallToTencent(EngineState &state, RecorderState &recorder)
{
    EngineChange change = moveTo(Engine::Tencent, recorder, true, true);
    chooseMissingLanguage(change, state.TXCurrentVoiceType, "TXCurrentVoiceType", "16k_zh");
    return change;
}

EngineChange chooseEngine(Engine engine, EngineState &state, RecorderState &recorder)
{
    recorder.BaiduTokenRefreshed = false;
    recorder.BaiduViaSettings = engine == Engine::Baidu;
    leaveThirdParty(state);
    EngineChange change = moveTo(engine, recorder, true, false);
    change.writes.push_back({"LocalEnableASR3", int(state.LocalEnableASR3)});
    change.writes.push_back({"LocalUseASR3Index", state.LocalUseASR3Index});
    if (engine == Engine::Baidu) {
        chooseMissingLanguage(change, state.BaiDuCurrentVoiceType, "BaiDuCurrentVoiceType", "1537");
    } else if (engine == Engine::XunFei) {
        chooseMissingLanguage(change, state.XunFeiWebApiCurrentVoiceType, "XunFeiWebApiCurrentVoiceType",
                              "mandarin");
    } else {
        chooseMissingLanguage(change, state.TXCurrentVoiceType, "TXCurrentVoiceType", "16k_zh");
    }
    return change;
}

EngineChange chooseInputMethod(int index, EngineState &state, RecorderState &recorder)
{
    recorder.BaiDuNoStreamApi = recorder.UseTXASRApi = recorder.UseXunFeiWebApi = false;
    state.LocalUseASR3Index = index >= 1 && index <= 3 ? index : -1;
    state.LocalEnableASR3 = true;
    EngineChange change;
    change.writes = engineKeyWrites(recorder);
    change.writes.push_back({"LocalUseASR3Index", state.LocalUseASR3Index});
    change.writes.push_back({"LocalEnableASR3", 1});
    change.rebuild = change.setupInputMethod = true;
    return change;
}

EngineChange chooseTencentDialect(bool on, EngineState &state)
{
    state.UseTecentZhDialect = on;
    state.TXCurrentVoiceType = on ? QStringLiteral("16k_zh_dialect") : QStringLiteral("16k_zh");
    EngineChange change;
    change.writes = {{"UseTecentZhDialect", int(on)}, {"TXCurrentVoiceType", state.TXCurrentVoiceType}};
    change.rebuild = true;
    return change;
}

QString xunFeiLanguageInForce(const EngineState &state)
{
    return state.XunFeiWebApiCurrentVoiceType.isEmpty() ? QStringLiteral("mandarin")
                                                        : state.XunFeiWebApiCurrentVoiceType;
}

QString languageAfterXunFeiRefusal(const QString &current)
{
    static const char *const minor[] = {"ja_jp", "ko_kr", "ru-ru", "fr_fr", "es_es"};
    for (const char *code : minor) {
        if (current == QLatin1String(code)) {
            return QStringLiteral("en_us");
        }
    }
    return QStringLiteral("mandarin");
}

} // namespace mevo
