#include "window/SelectionCopy.h"

#include "platform/Platform.h"
#include "window/SelectionChoice.h"

#include <QDebug>

#include <utility>

namespace mevo {

namespace {
constexpr int lookAgainMs = 10;
/// A program that is busy takes its time; one that has nothing selected never answers.
constexpr int longestWaitMs = 400;
} // namespace

SelectionCopy::SelectionCopy(Platform &platform, std::function<bool()> pressKeys)
    : m_platform(platform)
    , m_pressKeys(std::move(pressKeys))
{
}

void SelectionCopy::begin(bool emptied, std::function<void(const QString &)> copied)
{
    const bool again = isUnderWay();
    if (again && !emptied) {
        return;
    }
    m_copied = std::move(copied);
    m_before = emptied ? QString() : m_platform.clipboard->text();
    m_changesBefore = m_platform.clipboard->changes();
    m_waitMs = m_pressKeys() ? longestWaitMs : 0;
    m_pressedAt = m_platform.time->monotonicMs();
    if (!again) {
        m_platform.time->callAfter(lookAgainMs, this, [this] { look(); });
    }
}

void SelectionCopy::clipboardEmptied()
{
    m_before.clear();
    m_changesBefore = m_platform.clipboard->changes();
}

void SelectionCopy::look()
{
    const bool changed = m_platform.clipboard->changes() != m_changesBefore;
    if (!changed && m_platform.time->monotonicMs() - m_pressedAt < m_waitMs) {
        m_platform.time->callAfter(lookAgainMs, this, [this] { look(); });
        return;
    }
    end();
}

void SelectionCopy::end()
{
    CopyOutcome outcome;
    outcome.changed = m_platform.clipboard->changes() != m_changesBefore;
    outcome.clipboard = outcome.changed ? m_platform.clipboard->text() : QString();
    outcome.before = m_before;
    outcome.selection = m_platform.clipboard->selection();
    const SelectionChoice choice = chooseSelection(outcome);
    qInfo("Selection: %d characters, %s", choice.text.size(),
          outcome.changed ? "copied" : "nothing was copied");
    if (choice.putBack) {
        m_platform.clipboard->putBack(m_before);
    }
    m_before.clear();
    std::exchange(m_copied, nullptr)(choice.text);
}

} // namespace mevo
