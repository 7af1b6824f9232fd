#include "ui/settings/SettingAccounts.h"

#include <QApplication>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace mevo {

namespace {

QString say(const char *text)
{
    return QCoreApplication::translate("CSettingDialog", text);
}

bool isBlank(const QLineEdit *line)
{
    const AccountValue value = accountValue(line->text());
    return value.fault == AccountValue::Fault::None && value.text.isEmpty();
}

/// Why the text of a field cannot be stored, empty where it can.
QString refusalOf(const QLineEdit *line)
{
    switch (accountValue(line->text()).fault) {
    case AccountValue::Fault::None:
        break;
    case AccountValue::Fault::TooLong:
        return say(QT_TRANSLATE_NOOP("CSettingDialog", "没有保存：%1 太长。")).arg(line->accessibleName());
    case AccountValue::Fault::Invisible:
        return say(QT_TRANSLATE_NOOP("CSettingDialog", "没有保存：%1 中间有换行或看不见的字符。"))
            .arg(line->accessibleName());
    }
    return {};
}

/// A text above or beneath the controls of its group, as long as it may be.
void letWrap(QLabel *label, bool above)
{
    label->setWordWrap(true);
    // Out of its line, whose height follows from the controls in it.
    if (auto *layout = qobject_cast<QVBoxLayout *>(label->parentWidget()->layout())) {
        layout->insertWidget(above ? 0 : layout->count(), label);
    }
}

} // namespace

SettingAccounts::SettingAccounts(const QHash<QString, QWidget *> &controls, AccountsHost &host,
                                 QObject *parent)
    : QObject(parent)
    , m_host(host)
    , m_kept(static_cast<QLabel *>(controls.value(QStringLiteral("label_OwnAccountsKept"))))
{
    m_services.reserve(accountServices.size()); // its elements are referred to
    for (const AccountService service : accountServices) {
        add(service, controls);
    }
    letWrap(m_kept, true);
}

/// Its controls have the names of the kept text's.
void SettingAccounts::add(AccountService id, const QHash<QString, QWidget *> &controls)
{
    const QString name = QStringLiteral("Own") + accountServiceName(id);
    const QStringList fields = accountFields(id);
    const auto button = [&](const char *what) {
        return static_cast<QPushButton *>(controls.value(QLatin1String(what) + name));
    };
    auto *told = static_cast<QLabel *>(controls.value(QStringLiteral("label_") + name));
    m_services.push_back(
        {id, {}, button("pushButton_Check"), button("pushButton_Remove"), told, {}, false, {}, 0, {}});
    Service &service = m_services.back();
    for (const QString &field : fields) {
        auto *line = static_cast<QLineEdit *>(controls.value(QStringLiteral("lineEdit_") + name + field));
        if (field != fields.first()) { // the first one names the account and is no secret
            line->setEchoMode(QLineEdit::Password);
        }
        connect(line, &QLineEdit::editingFinished, this, [this, &service] { edited(service); });
        service.fields.push_back(line);
    }
    connect(service.check, &QPushButton::clicked, this, [this, &service] { check(service); });
    connect(service.remove, &QPushButton::clicked, this, [this, &service] { remove(service); });
    letWrap(told, false);
}

/// Half an account is not stored while the user is still at it: the new id would be used with the old key.
void SettingAccounts::edited(Service &service)
{
    const auto *at = qobject_cast<const QLineEdit *>(QApplication::focusWidget());
    const bool stays =
        QApplication::focusWidget() == nullptr || // gone to another program, to copy from there
        std::find(service.fields.begin(), service.fields.end(), at) != service.fields.end();
    const bool all = std::none_of(service.fields.begin(), service.fields.end(), isBlank);
    if (!stays || all) {
        store(service);
    }
}

/// All of it or, when a field cannot be stored, nothing: the other ones belong to it.
void SettingAccounts::store(Service &service)
{
    OwnAccounts accounts = m_host.ownAccounts();
    bool typed = false;
    service.refusal.clear();
    for (std::size_t field = 0; field < service.fields.size(); ++field) {
        const QLineEdit *line = service.fields[field];
        service.refusal += refusalOf(line);
        typed = (!isBlank(line) && accounts.set(service.id, int(field), line->text())) || typed;
    }
    if (!service.refusal.isEmpty()) {
        fill(service);
        return;
    }
    for (QLineEdit *line : service.fields) {
        line->clear();
    }
    if (typed) {
        forgetCheck(service);
        keep(accounts);
    }
}

void SettingAccounts::store()
{
    for (Service &service : m_services) {
        store(service);
    }
}

void SettingAccounts::keep(const OwnAccounts &accounts)
{
    m_host.keepAccounts(accounts);
    fill();
}

void SettingAccounts::check(Service &service)
{
    store(service);
    if (!service.refusal.isEmpty() || service.checking) {
        return;
    }
    // The button stays usable: else the keyboard would go on to the one that takes the account away.
    service.checking = true;
    service.verdict = say(QT_TRANSLATE_NOOP("CSettingDialog", "正在检查……"));
    service.checked = m_host.ownAccounts().values(service.id);
    const int number = ++service.checks;
    m_host.checkAccount(service.id, this, [this, &service, number](const AccountVerdict &verdict) {
        if (number == service.checks) {
            service.verdict = accountVerdictText(verdict);
            service.checking = false;
            fill(service);
        }
    });
    fill(service);
}

/// The account is another one, and so is what can be said of it.
void SettingAccounts::forgetCheck(Service &service)
{
    service.verdict.clear();
    ++service.checks;
    service.checking = false;
}

void SettingAccounts::remove(Service &service)
{
    for (QLineEdit *line : service.fields) {
        line->clear();
    }
    service.refusal.clear();
    forgetCheck(service);
    OwnAccounts accounts = m_host.ownAccounts();
    accounts.remove(service.id);
    keep(accounts);
}

void SettingAccounts::open()
{
    m_host.rereadAccounts();
}

void SettingAccounts::close()
{
    m_host.endAccountChecks();
    for (Service &service : m_services) {
        forgetCheck(service);
    }
}

void SettingAccounts::fill()
{
    for (Service &service : m_services) {
        fill(service);
    }
    m_kept->setText(keptText());
}

QString SettingAccounts::keptText() const
{
    QStringList troubles;
    switch (m_host.accountsUnread()) {
    case SecretPlace::Nowhere:
        break;
    case SecretPlace::Desktop:
        troubles.append(say(QT_TRANSLATE_NOOP(
            "CSettingDialog", "系统的密钥环没有解锁或没有回应，其中保存的账号暂时不能使用。")));
        break;
    case SecretPlace::File:
        troubles.append(
            say(QT_TRANSLATE_NOOP("CSettingDialog", "保存账号的文件无法读取，其中的账号暂时不能使用。")));
        break;
    }
    switch (m_host.accountsUnkept()) {
    case AccountsUnkept::None:
        break;
    case AccountsUnkept::Waiting:
        troubles.append(say(QT_TRANSLATE_NOOP(
            "CSettingDialog",
            "账号的改动暂存在只有您本人可以读取的文件中，退出软件也不会丢失，稍后会自动保存。")));
        break;
    case AccountsUnkept::InMemory:
        troubles.append(say(QT_TRANSLATE_NOOP(
            "CSettingDialog", "账号的改动还没有保存下来，会自动重试；如果先退出软件，改动会丢失。")));
        break;
    }
    if (!troubles.isEmpty()) {
        return troubles.join(QLatin1Char('\n'));
    }
    switch (m_host.accountsPlace()) {
    case SecretPlace::Desktop:
        return say(QT_TRANSLATE_NOOP("CSettingDialog", "账号保存在系统的密钥环中。"));
    case SecretPlace::File:
        return say(QT_TRANSLATE_NOOP("CSettingDialog", "账号保存在只有您本人可以读取的文件中。"));
    case SecretPlace::Nowhere:
        break;
    }
    return say(QT_TRANSLATE_NOOP("CSettingDialog", "在各服务商的网站申请账号，填写后优先使用自己的账号。"));
}

void SettingAccounts::fill(Service &service)
{
    const OwnAccounts::Values &values = m_host.ownAccounts().values(service.id);
    if (!service.verdict.isEmpty() && service.checked != values) {
        forgetCheck(service);
    }
    for (std::size_t field = 0; field < service.fields.size(); ++field) {
        const QString &value = values[field];
        service.fields[field]->setPlaceholderText(value.isEmpty()
                                                      ? QString()
                                                      : say(QT_TRANSLATE_NOOP("CSettingDialog", "已保存")) +
                                                            QLatin1Char(' ') + secretHint(value));
    }
    service.remove->setEnabled(m_host.ownAccounts().hasAny(service.id));
    const QString &said = service.refusal.isEmpty() ? service.verdict : service.refusal;
    service.told->setText(said.isEmpty() ? situation(service) : said);
}

QString SettingAccounts::situation(const Service &service) const
{
    const OwnAccounts &own = m_host.ownAccounts();
    const QString part = own.hasAny(service.id) && !own.isComplete(service.id)
                             ? say(QT_TRANSLATE_NOOP("CSettingDialog", "自有账号没有填写完整。"))
                             : QString();
    switch (m_host.accountInForce(service.id)) {
    case AccountSource::Own:
        return say(QT_TRANSLATE_NOOP("CSettingDialog", "正在使用自有账号"));
    case AccountSource::None:
        return part + say(QT_TRANSLATE_NOOP("CSettingDialog", "没有账号"));
    default:
        return part + say(QT_TRANSLATE_NOOP("CSettingDialog", "正在使用系统提供的账号"));
    }
}

} // namespace mevo
