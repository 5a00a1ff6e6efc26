#pragma once

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>

#include <private/qinputmethod_p.h>
#include <qpa/qplatforminputcontext.h>

#include <utility>

namespace tallowby::test {

/// An input method that is as strict as the real ones. It takes the place of the platform's while it lives.
class FakeInputMethod : public QPlatformInputContext {
public:
    enum class Framework {
        /// Sends the word to whatever has the focus when it is asked to commit, and once more after it was reset, at
        /// the next turn of the event loop. IBus with a Korean engine does.
        ibus,
        /// Does nothing when it is asked to commit: the word stays and goes on, wherever the focus is. Fcitx does.
        fcitx,
    };

    explicit FakeInputMethod(Framework framework)
        : m_framework(framework) {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this;
    }
    ~FakeInputMethod() override { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr; }

    /// More letters of the word that is being composed.
    void compose(const QString &letters) {
        m_word += letters;
        send(m_word, {});
    }
    /// The word is done.
    void commitWord() { send({}, std::exchange(m_word, {})); }

    [[nodiscard]] bool isValid() const override { return true; }
    void commit() override {
        if (m_framework == Framework::ibus && !m_word.isEmpty()) {
            send({}, m_word);
            reset();
        }
    }
    void reset() override {
        const QString word = std::exchange(m_word, {});
        if (m_framework == Framework::ibus && !word.isEmpty()) {
            QMetaObject::invokeMethod(
                this, [word] { send({}, word); }, Qt::QueuedConnection);
        }
    }

private:
    static void send(const QString &preedit, const QString &commit) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }

    Framework m_framework;
    QString m_word;
};

} // namespace tallowby::test
