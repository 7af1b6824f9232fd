#pragma once

#include <QString>
#include <QStringList>

#include <mutex>

/// The calls that fakes have taken, in order, from any thread.
class CallLog
{
public:
    void add(const QString &call)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_calls.append(call);
    }
    QStringList calls() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_calls;
    }
    /// The calls that start with `prefix`.
    QStringList calls(const QString &prefix) const
    {
        QStringList found;
        for (const QString &call : calls()) {
            if (call.startsWith(prefix)) {
                found.append(call);
            }
        }
        return found;
    }
    bool has(const QString &call) const { return calls().contains(call); }
    int indexOf(const QString &call) const { return calls().indexOf(call); }
    void clear()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_calls.clear();
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_calls;
};

/// A fake of an interface, which writes its calls down.
template <class Interface>
class Logged : public Interface
{
public:
    explicit Logged(CallLog &log)
        : m_log(log)
    {
    }

protected:
    CallLog &m_log;
};
