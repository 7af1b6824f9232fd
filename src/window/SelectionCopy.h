#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace mevo {

struct Platform;

/// Gets hold of what is selected in the window in front: has the copy keys pressed, and waits for the
/// clipboard without holding the program up. One at a time.
class SelectionCopy : public QObject
{
public:
    /// `platform` must outlive this object; nothing is told after its end. `pressKeys` presses the copy keys,
    /// and answers whether the window takes any.
    SelectionCopy(Platform &platform, std::function<bool()> pressKeys);

    /// Copies and tells the text, an empty one when nothing is there. With `emptied` the clipboard keeps what
    /// is copied, and a copying that is under way begins again for this one. Without it, it does nothing
    /// while another is under way.
    void begin(bool emptied, std::function<void(const QString &)> copied);
    /// The clipboard has been emptied on purpose: nothing is put back, and that was not the copy.
    void clipboardEmptied();
    bool isUnderWay() const { return m_copied != nullptr; }

private:
    void look();
    void end();

    Platform &m_platform;
    std::function<bool()> m_pressKeys;
    std::function<void(const QString &)> m_copied;
    QString m_before;
    int m_changesBefore = 0;
    qint64 m_pressedAt = 0;
    int m_waitMs = 0;
};

} // namespace mevo
