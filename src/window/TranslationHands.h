#pragma once

#include "session/TranslationPort.h"
#include "translation/TranslationHost.h"
#include "ui/translation/TransWindowHost.h"

#include <QPointer>

#include <deque>
#include <memory>

class CTransTipDialog;
class MainWindow;
class Trans;
class WXTextSpeech;

namespace mevo {

class OnlineReading;
class SelectionCopy;

/// The translation window as the session sees it, and the program as that window and the translation client
/// see it.
class TranslationHands : public TranslationPort, public TransWindowHost, public TranslationHost
{
public:
    explicit TranslationHands(MainWindow &window);
    ~TranslationHands() override;

    // TranslationPort
    bool exists() const override;
    bool isVisible() const override;
    bool isClosing() const override;
    bool takesKeys() const override;
    bool create() override;
    void show() override;
    void destroy() override;

    /// A sentence that is translated instead of being typed.
    void showSentence(const QString &text, const SessionContext &session);
    /// A voice key that went down while selections are translated.
    void keyPressed(char *report);
    /// A translation waits for its window to come to the front.
    bool isTyping() const { return !m_onTheWay.empty(); }
    /// Spoken sentences, or their translations, that have not been typed; they are forgotten.
    QStringList takeUnsent();
    /// Ends the window without the user's doing, at an exit or with the receiver.
    void retire();

    // TransWindowHost
    QPair<bool, QString> translate(const QString &text, const QString &to, const QString &from) override;
    SessionContext sentenceSession() const override;
    bool resultIdle() const override;
    WindowId foregroundWindow() override;
    void typeText(const SentTranslation &translation) override;
    void keepText(const QString &text) override;
    void takeFocus() override;
    void neverTakeFocus() override;
    void giveFocusTo(WindowId window) override;
    void setDelimitTranslation(bool on) override;
    void copySelection(bool emptied, WindowId front, const Copied &copied) override;
    void clearClipboard() override;
    void readAloud(Pane pane, const QString &text, const PaneReading &reading) override;
    void stopReading() override;
    void tell(const QString &title, const QString &text) override;
    void closing(const std::vector<SpokenText> &untold) override;
    void closed() override;

    // TranslationHost
    void translationLimitReached(const QString &title, const QString &text) override;

private:
    /// A text whose window is being brought to the front, or that waits for the one before it.
    struct OnTheWay
    {
        int number = 0;
        SentTranslation translation;
    };

    void typeNext();
    void deliver(const SentTranslation &translation, bool there);
    /// Whether keys would reach another program's window now.
    bool somebodyTakesKeys() const;
    /// Has `front` come to the front, unless it is 0; then tells whether it did.
    void whenInFront(WindowId front, std::function<void(bool)> action);
    void copyWhenFree(bool emptied, const Copied &copied);
    void lookForFront(WindowId front, int looks, std::function<void(bool)> action);

    MainWindow &m_window;
    QPointer<CTransTipDialog> m_dialog;
    std::shared_ptr<Trans> m_translator; ///< one that waits for an answer stays until it has it
    std::unique_ptr<OnlineReading> m_onlineReading;
    std::unique_ptr<WXTextSpeech> m_systemVoice;
    std::unique_ptr<SelectionCopy> m_selectionCopy;
    std::deque<OnTheWay> m_onTheWay;
    bool m_bringing = false;                    ///< the window of the first of them
    int m_texts = 0;                            ///< so far
    const SessionContext *m_sentence = nullptr; ///< of the sentence that is being shown just now
    bool m_limitTold = false;
};

} // namespace mevo
