#include "service/RecordColumns.h"

#include "service/WebApiReply.h"

#include <QDebug>
#include <QStringList>

#include <limits>
#include <optional>
#include <variant>

namespace mevo {

namespace {

constexpr int longestText = 255;
constexpr int longestDelayMs = 60000;
constexpr int highestCount = 1000000000; ///< and there is room to go on counting
constexpr int anyNumber = std::numeric_limits<int>::max();
constexpr int customMethod = 3;

using Member = std::variant<bool MainState::*, std::atomic<bool> MainState::*, int MainState::*,
                            std::atomic<int> MainState::*, QString MainState::*>;

/// What a column does besides filling its member.
enum Effect : unsigned {
    Nothing = 0,
    Stores = 1,    ///< also a key of the settings file
    ShapesMenu = 2 ///< the language menu shows it
};

struct RecordColumn
{
    const char *name;
    Member member;
    unsigned effect = Nothing;
    int lowest = -anyNumber;
    int highest = anyNumber;
    std::optional<CountColumn> count; ///< what is counted here goes on from the value
};

/// A column whose member a base of the state has.
template <class Class, class Type>
RecordColumn column(const char *name, Type Class::*member, unsigned effect = Nothing, int lowest = -anyNumber,
                    int highest = anyNumber, std::optional<CountColumn> count = {})
{
    return {name, static_cast<Type MainState::*>(member), effect, lowest, highest, count};
}

using S = MainState;

const QVector<RecordColumn> &recordColumns()
{
    static const QVector<RecordColumn> columns = {
        column("ForceUseXFMore3V", &S::ForceUseXFMore3V, Stores),
        column("ShowASR3Custom", &S::ShowASR3Custom, ShapesMenu),
        column("ShowXunFeiInputMethod", &S::ShowXunFeiInputMethod, ShapesMenu),
        column("ShowSogouInputMethod", &S::ShowSogouInputMethod, ShapesMenu),
        column("ShowBaiduI", &S::ShowBaiduI, ShapesMenu),
        column("ShowTXI", &S::ShowTXI, ShapesMenu),
        column("ShowXFWebApi", &S::ShowXFWebApi, ShapesMenu),
        column("ShowTecentZhDialect", &S::ShowTecentZhDialect, ShapesMenu),
        column("ShowPowerLevel", &S::ShowPowerLevel),
        column("ShowPowerLow", &S::ShowPowerLow),
        column("ShowBdFtPTHI", &S::ShowBdFtPTHI, ShapesMenu),
        column("ShowBdSdPTHI", &S::ShowBdSdPTHI, ShapesMenu),
        column("ShowBdYYI", &S::ShowBdYYI, ShapesMenu),
        column("ShowBdSCHI", &S::ShowBdSCHI, ShapesMenu),
        column("ShowBdEnI", &S::ShowBdEnI, ShapesMenu),
        column("UseASR3Index", &S::UseASR3Index, Nothing, -1, customMethod),
        column("ForceUseASR3", &S::ForceUseASR3),
        column("EnableASR3", &S::EnableASR3),
        column("ShowASR3UI", &S::ShowASR3UI, ShapesMenu),
        column("MustClickRunASR3", &S::MustClickRunASR3),
        column("EnableAutoCallASR3", &S::EnableAutoCallASR3),
        column("UseBDAPIPara", &S::UseBDAPIPara),
        column("UseXFSDKPara", &S::UseXFSDKPara),
        column("UseTXAPIPara", &S::UseTXAPIPara),
        column("UseXFWAPIPara", &S::UseXFWAPIPara),
        column("UseBDFstPara", &S::UseBDFstPara),
        column("UseXFWPIDWAPara", &S::UseXFWPIDWAPara),
        column("HideXFSDK", &S::HideXFSDK),
        column("ShowXFDialect", &S::ShowXFDialect),
        column("ShowXFSmallLan", &S::ShowXFSmallLan),
        column("HW2ScreenIntervalTime", &S::HW2ScreenIntervalTime, Stores, 0, longestDelayMs),
        column("Asr2ScreenIntervalTime", &S::Asr2ScreenIntervalTime, Stores, 0, longestDelayMs),
        column("ShowAssistInfo", &S::ShowAssistInfo),
        column("AutoUpdateSwitch", &S::AutoUpdateSwitch),
        column("ManualUpdateSwitch", &S::ManualUpdateSwitch),
        column("ForceUpdate", &S::ForceUpdate),
        column("BDSR1DUsedQuantity", &S::BDSR1DUsedQuantity, Nothing, 0, highestCount, CountColumn::Baidu),
        column("BDSR1DMaxUsageQuantity", &S::BDSR1DMaxUsageQuantity, Nothing, 0, highestCount),
        column("BDFY1MUsedQuantity", &S::BDFY1MUsedQuantity, Nothing, 0, highestCount,
               CountColumn::Translation),
        column("BDFY1MMaxUsageQuantity", &S::BDFY1MMaxUsageQuantity, Nothing, 0, highestCount),
        column("XFSR1DUsedQuantity", &S::XFSR1DUsedQuantity, Nothing, 0, highestCount, CountColumn::XunFei),
        column("XFSR1DMaxUsageQuantity", &S::XFSR1DMaxUsageQuantity, Nothing, 0, highestCount),
        column("TXSR1DUsedQuantity", &S::TXSR1DUsedQuantity, Nothing, 0, highestCount, CountColumn::Tencent),
        column("TXSR1DMaxUsageQuantity", &S::TXSR1DMaxUsageQuantity, Nothing, 0, highestCount),
        column("IPRecord", &S::IPRecord),
        column("LastLoginDateTime", &S::LastLoginDateTime),
    };
    return columns;
}

/// The number of a column, nothing when it has none within the range.
std::optional<int> numberOf(const QJsonObject &row, const RecordColumn &column)
{
    bool isNumber = false;
    const int number = columnText(row, QLatin1String(column.name)).toInt(&isNumber, 10);
    return isNumber && number >= column.lowest && number <= column.highest ? std::optional<int>(number)
                                                                           : std::nullopt;
}

enum class Taken { Not, Same, Changed };

/// Fills the member of one column.
class Taker
{
public:
    Taker(MainState &state, const QJsonObject &row, const RecordColumn &column)
        : m_state(state)
        , m_row(row)
        , m_column(column)
    {
    }
    Taken operator()(bool MainState::*member) const { return takeNumber<bool>(m_state.*member); }
    Taken operator()(std::atomic<bool> MainState::*member) const { return takeNumber<bool>(m_state.*member); }
    Taken operator()(int MainState::*member) const { return takeNumber<int>(m_state.*member); }
    Taken operator()(std::atomic<int> MainState::*member) const { return takeNumber<int>(m_state.*member); }
    Taken operator()(QString MainState::*member) const
    {
        const QJsonValue value = m_row.value(QLatin1String(m_column.name));
        if (!value.isString() || value.toString().size() > longestText) {
            return Taken::Not;
        }
        m_state.*member = value.toString();
        return Taken::Changed;
    }

private:
    template <class Type, class Target>
    Taken takeNumber(Target &target) const
    {
        const std::optional<int> number = numberOf(m_row, m_column);
        if (!number) {
            return Taken::Not;
        }
        if (m_column.count) {
            m_state.dayCounts.take(*m_column.count, *number);
            return Taken::Changed;
        }
        const Type value = static_cast<Type>(*number);
        const bool changed = target != value;
        target = value;
        return changed ? Taken::Changed : Taken::Same;
    }

    MainState &m_state;
    const QJsonObject &m_row;
    const RecordColumn &m_column;
};

int storedValue(const MainState &state, const RecordColumn &column)
{
    if (const auto *flag = std::get_if<bool MainState::*>(&column.member)) {
        return int(state.**flag);
    }
    if (const auto *number = std::get_if<std::atomic<int> MainState::*>(&column.member)) {
        return state.**number;
    }
    return state.*std::get<int MainState::*>(column.member);
}

/// What the record says of input methods, as far as one column rules another. Columns that were not taken
/// rule nothing.
void settleInputMethods(MainState &state, const QStringList &taken)
{
    const auto isTaken = [&taken](const char *column) { return taken.contains(QLatin1String(column)); };
    const bool enabled = state.EnableASR3;
    if ((isTaken("UseASR3Index") || isTaken("ShowASR3Custom") || isTaken("EnableASR3")) &&
        state.UseASR3Index == customMethod && !state.ShowASR3Custom) {
        state.EnableASR3 = false;
    }
    if ((isTaken("EnableAutoCallASR3") || isTaken("MustClickRunASR3")) && state.EnableAutoCallASR3) {
        state.MustClickRunASR3 = false;
    }
    if (isTaken("EnableASR3") || enabled != state.EnableASR3) {
        state.LocalEnableASR3 = state.EnableASR3;
    }
}

} // namespace

RecordEffects applyRecordColumns(MainState &state, const QJsonObject &row, bool xpClass)
{
    RecordEffects effects;
    // What an earlier row has selected is not selected again by one that does not say so.
    state.UseBDAPIPara = state.UseXFSDKPara = state.UseTXAPIPara = state.UseXFWAPIPara = -1;
    state.UseBDFstPara = state.UseXFWPIDWAPara = -1;
    const bool inputMethod = state.LocalEnableASR3;
    QVector<const RecordColumn *> stored;
    QStringList takenOver;
    QStringList passedOver;
    for (const RecordColumn &column : recordColumns()) {
        const QString name = QLatin1String(column.name);
        const Taken taken = std::visit(Taker(state, row, column), column.member);
        if (taken != Taken::Not) {
            takenOver.append(name);
        } else if (row.contains(name) && !row.value(name).isNull()) {
            passedOver.append(name);
        }
        if (taken == Taken::Changed && (column.effect & ShapesMenu) != 0) {
            effects.menuChanged = true;
        }
        if (taken != Taken::Not && (column.effect & Stores) != 0) {
            stored.append(&column);
        }
    }
    if (!passedOver.isEmpty()) {
        qWarning().noquote() << "Device record: passed over:" << passedOver.join(QLatin1Char(' '));
    }
    if (xpClass) {
        state.ForceUseXFMore3V = false;
    }
    for (const RecordColumn *column : stored) {
        effects.settings.append({QLatin1String(column->name), storedValue(state, *column)});
    }
    settleInputMethods(state, takenOver);
    effects.menuChanged = effects.menuChanged || inputMethod != state.LocalEnableASR3;
    return effects;
}

void applyNewRecord(MainState &state)
{
    state.BDSR1DMaxUsageQuantity = state.TXSR1DMaxUsageQuantity = state.XFSR1DMaxUsageQuantity = 500;
    state.BDFY1MMaxUsageQuantity = 5000;
    for (const CountColumn column : countColumns) {
        state.dayCounts.take(column, 0);
    }
    state.UseASR3Index = 1;
    state.ForceUseASR3 = true;
    state.EnableASR3 = false;
    state.MustClickRunASR3 = false;
    state.ShowASR3UI = true;
    state.EnableAutoCallASR3 = true;
}

} // namespace mevo
