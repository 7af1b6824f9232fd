#pragma once

#include "platform/Clipboard.h"

#include <QObject>

#include <atomic>
#include <memory>

namespace mevo {

/// The desktop's clipboard. Lives on the GUI thread; hasText() is a mirror that any thread may read.
class QtClipboard : public QObject, public Clipboard
{
    Q_OBJECT

public:
    QtClipboard();
    void setText(const QString &text) override;
    void putBack(const QString &text) override;
    QString text() const override;
    void clear() override;
    bool hasText() const override { return m_hasText; }
    int changes() const override { return m_changes; }
    bool mayHaveBeenRead() const override;
    QString selection() const override;

private:
    std::atomic<bool> m_hasText{false};
    int m_changes = 0;
    std::shared_ptr<bool> m_read; ///< of the last text; shared with what is offered
};

} // namespace mevo
