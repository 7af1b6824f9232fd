#pragma once

#include "platform/SystemServices.h"

#include <functional>

namespace mevo {

class LinuxSystemFacts : public SystemFacts
{
public:
    bool isXpClass() const override { return false; }
    int localeId() const override;
    qint64 freeSpaceMiB() const override;
    bool compilerRuntimeInstalled() const override { return true; }
    QString computerId() const override;

    /// The Windows locale id of a locale name such as "zh_TW"; 0x0409 for one that is not Chinese.
    static int localeIdOf(const QString &localeName);
};

/// The mark is a key in the user's configuration.
class LinuxElevation : public Elevation
{
public:
    bool isSet() const override;
    bool set() override { return write(true); }
    bool clear() override { return write(false); }

private:
    static bool write(bool on);
};

/// An XDG autostart entry.
class XdgStartupEntry : public StartupEntry
{
public:
    bool exists(const QString &name) const override;
    bool set(const QString &name) override;
    bool clear(const QString &name) override;

private:
    static QString path(const QString &name);
};

/// This system has no registry: nothing is ever found.
class NoRegistry : public Registry
{
public:
    std::optional<QString> value(const QString &, const QString &) const override { return std::nullopt; }
};

/// The connection by the default route. With every service on this machine no route is needed.
class RouteNetworkState : public NetworkState
{
public:
    /// `allServicesLocal` is asked at each look; null for never.
    explicit RouteNetworkState(std::function<bool()> allServicesLocal)
        : m_allServicesLocal(std::move(allServicesLocal))
    {
    }
    Connection connection() override;

    /// The kind of the default route in the text of the kernel's routing table; None when it has none.
    static Connection fromRoutes(const QByteArray &table);

private:
    std::function<bool()> m_allServicesLocal;
};

/// A lock file in the user's runtime folder; the kernel frees it with its holder, killed or not.
class FlockSingleInstance : public SingleInstance
{
public:
    ~FlockSingleInstance() override { FlockSingleInstance::release(); }
    bool acquire(const QString &name) override;
    void release() override;

private:
    int m_file = -1;
};

} // namespace mevo
