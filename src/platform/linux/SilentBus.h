#pragma once

#include <QByteArray>

#include <chrono>

namespace mevo {

/// The socket that an address of D-Bus names first (freedesktop.org, D-Bus, "Server Addresses"): its path,
/// or its name in the abstract space behind a null byte. Empty where there is none.
QByteArray busSocketOf(const QByteArray &address);

/// Whether a bus takes no connection, or takes it and says nothing until `limit`. One that refuses, or isn't
/// there, says so at once and is not silent. Works without an application object.
bool isSilentBus(const QByteArray &socket, std::chrono::milliseconds limit);

/// Whoever asks a bus that hangs is held for 25 s and more, and Qt does while an application object is made.
/// While this stands, a hanging bus of the session is hidden from this process: Qt, which asks once only,
/// goes without it.
class SilentBus
{
public:
    explicit SilentBus(std::chrono::milliseconds limit = std::chrono::seconds(2));
    /// The programs that we start see the bus again.
    ~SilentBus();
    Q_DISABLE_COPY(SilentBus)

    bool isHidden() const { return m_hidden; }

private:
    QByteArray m_address;
    bool m_hidden = false;
};

} // namespace mevo
