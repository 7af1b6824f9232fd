#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

struct sqlite3;

namespace lab {

class LabCipher;

/// The backend's tables in a SQLite file that is attached under the schema's name, so that statements of
/// the form "select ... from SCHEMA.TABLE" run as they come.
class LabDatabase
{
public:
    LabDatabase() = default;
    ~LabDatabase();
    LabDatabase(const LabDatabase &) = delete;
    LabDatabase &operator=(const LabDatabase &) = delete;

    /// Opens or makes the file and gives tables that are empty their initial rows. False with `error()` on
    /// failure.
    bool open(const QString &file, const QString &schema, const LabCipher &cipher);
    QString error() const { return m_error; }

    /// Runs one select, update or insert. {"items": n, "result0": {...}}; anything else is refused, with
    /// "items" -1 and the reason under "error".
    QJsonObject run(const QByteArray &statement);

    /// Writes the rows of the input methods anew; their installers are below the address, which ends in "/".
    bool offerInputMethods(const QString &schema, const QString &address);

    /// The receiver of the initial rows, and the accounts of the services.
    static constexpr char DongleId[] = "02-01-001357";
    /// Of a program that is used without a receiver.
    static constexpr char NoDeviceId[] = "02-01--1";
    static constexpr char BaiduAppId[] = "lab-app-1";
    static constexpr char BaiduClientId[] = "lab-client-id-1";
    static constexpr char BaiduClientSecret[] = "lab-client-secret-1";
    static constexpr char TencentSecretId[] = "AKIDlab00000000000000000000000000001";
    static constexpr char TencentSecretKey[] = "labkey00000000000000000000000001";
    /// App id, api key and secret; the second is the one that may use the minor languages.
    static constexpr const char *XunFeiAccounts[2][3] = {{"1ab00001", "lab-xf-key-1", "lab-xf-secret-1"},
                                                         {"1ab00002", "lab-xf-key-2", "lab-xf-secret-2"}};

private:
    bool execute(const QByteArray &sql);
    void seed(const QString &schema, const LabCipher &cipher);

    sqlite3 *m_database = nullptr;
    QString m_error;
};

} // namespace lab
