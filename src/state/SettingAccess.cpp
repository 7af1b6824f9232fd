#include "state/SettingAccess.h"

#include <QHash>

namespace mevo {

namespace {

using S = MainState;

struct Reader
{
    const MainState &state;

    QVariant operator()(bool S::*member) const { return state.*member; }
    QVariant operator()(std::atomic<bool> S::*member) const { return (state.*member).load(); }
    QVariant operator()(int S::*member) const { return state.*member; }
    QVariant operator()(std::atomic<int> S::*member) const { return (state.*member).load(); }
    QVariant operator()(QString S::*member) const { return state.*member; }
    QVariant operator()(QStringList S::*member) const { return (state.*member).join(QLatin1Char(';')); }
};

struct Writer
{
    const QVariant &value;
    MainState &state;

    void operator()(bool S::*member) const { state.*member = value.toBool(); }
    void operator()(std::atomic<bool> S::*member) const { state.*member = value.toBool(); }
    void operator()(int S::*member) const { state.*member = value.toInt(); }
    void operator()(std::atomic<int> S::*member) const { state.*member = value.toInt(); }
    void operator()(QString S::*member) const { state.*member = value.toString(); }
    void operator()(QStringList S::*member) const { state.*member = listParts(value.toString()); }
};

} // namespace

QStringList listParts(const QString &text)
{
    // An absent list has no words, not one empty word that a text of mere punctuation would equal.
    return text.isEmpty() ? QStringList() : text.split(QLatin1Char(';'));
}

const SettingRow *settingRow(const QString &key)
{
    static const QHash<QString, const SettingRow *> rows = [] {
        QHash<QString, const SettingRow *> byKey;
        for (const SettingRow &row : settingRows()) {
            byKey.insert(QLatin1String(row.key), &row);
        }
        return byKey;
    }();
    return rows.value(key);
}

QVariant memberValue(const SettingRow &row, const MainState &state)
{
    return std::visit(Reader{state}, row.member);
}

void setMemberValue(const SettingRow &row, const QVariant &value, MainState &state)
{
    std::visit(Writer{value, state}, row.member);
}

QVariant storedFlag(const SettingRow *row, bool on)
{
    const bool number = row != nullptr && (row->kind == SettingKind::NonZero ||
                                           std::holds_alternative<int MainState::*>(row->member));
    return number ? QVariant(on ? 1 : 0) : QVariant(on);
}

} // namespace mevo
