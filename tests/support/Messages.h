#pragma once

#include <QStringList>
#include <QtGlobal>

/// Takes what the program logs while it lives, in place of the log. One at a time.
class Messages
{
public:
    Messages()
    {
        all.clear();
        warnings.clear();
    }
    ~Messages() { qInstallMessageHandler(m_before); }

    static inline QStringList all;
    static inline QStringList warnings;

private:
    static void take(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        all.append(text);
        if (type == QtWarningMsg) {
            warnings.append(text);
        }
    }
    QtMessageHandler m_before = qInstallMessageHandler(take);
};
