#pragma once

#include "platform/Notifications.h"

#include <QString>

#include <vector>

namespace mevo {

/// The messages that stand on the screen, so that one which is told many times in a row is shown once.
class StandingMessages
{
public:
    /// Whether the message is to be shown: it does not stand there already. It then stands for `milliseconds`
    /// from `nowMs` on, a monotonic time; not at all when the length is none. `alone` when whatever stands
    /// makes room for it.
    bool take(const QString &title, const QString &text, MessageIcon icon, int milliseconds, qint64 nowMs,
              bool alone);
    /// The message has not come to be seen, or is gone: the next one of its kind is shown.
    void forget(const QString &title, const QString &text, MessageIcon icon);

private:
    struct Message
    {
        QString title;
        QString text;
        MessageIcon icon;
        qint64 untilMs;

        bool is(const QString &otherTitle, const QString &otherText, MessageIcon otherIcon) const
        {
            return title == otherTitle && text == otherText && icon == otherIcon;
        }
    };
    std::vector<Message> m_messages;
};

} // namespace mevo
