#include "service/CountWrites.h"

#include "service/Statements.h"
#include "state/MainState.h"

namespace mevo {

namespace {

Statement statementOf(CountColumn column)
{
    switch (column) {
    case CountColumn::Baidu:
        return Statement::CountBaidu;
    case CountColumn::Tencent:
        return Statement::CountTencent;
    case CountColumn::XunFei:
        return Statement::CountXunFei;
    case CountColumn::Translation:
        break;
    }
    return Statement::WriteDeviceColumns;
}

} // namespace

CountWrite countWrite(CountColumn column, MainState &state, const QString &time, const QString &stamp)
{
    const int count = state.dayCounts.used(column);
    QStringList values;
    if (column == CountColumn::Translation) {
        values.append(QStringLiteral("BDFY1MUsedQuantity=%1").arg(count));
    } else {
        values = QStringList{QString::number(count), time, QString::number(state.CurrentVersion), stamp};
    }
    values.append(state.dayCounts.receiverId());
    return {state.dayCounts.receiver(), column, count,
            deviceStatement(statementOf(column), state.SchemaName, values)};
}

void CountWrites::add(const CountWrite &write)
{
    Lane &lane = m_lanes[{write.receiver, write.column}];
    if (lane.number != 0) {
        lane.waiting = write;
        return;
    }
    send(write);
}

void CountWrites::send(const CountWrite &write)
{
    const Key key{write.receiver, write.column};
    const int number = ++m_numbers;
    m_lanes[key].number = number;
    m_lanes[key].count = write.count;
    const CallOff callOff = m_send(write, [this, key, number] { ended(key, number); });
    if (m_lanes[key].number == number) {
        m_lanes[key].callOff = callOff;
    }
}

void CountWrites::ended(const Key &key, int number)
{
    Lane &lane = m_lanes[key];
    if (lane.number != number) {
        return; // called off
    }
    lane.number = 0;
    lane.callOff = nullptr;
    if (const auto waiting = std::exchange(lane.waiting, std::nullopt)) {
        send(*waiting);
    }
}

void CountWrites::callOff(Lane &lane)
{
    lane.number = 0;
    if (const CallOff stop = std::exchange(lane.callOff, nullptr)) {
        stop();
    }
}

void CountWrites::overtake()
{
    for (auto &[key, lane] : m_lanes) {
        if (const auto waiting = std::exchange(lane.waiting, std::nullopt)) {
            callOff(lane);
            send(*waiting);
        }
    }
}

void CountWrites::supersede(int receiver, CountColumn column, int count)
{
    const auto found = m_lanes.find({receiver, column});
    if (found == m_lanes.end()) {
        return;
    }
    Lane &lane = found->second;
    lane.waiting.reset();
    if (lane.number != 0 && lane.count != count) {
        callOff(lane);
    }
}

} // namespace mevo
