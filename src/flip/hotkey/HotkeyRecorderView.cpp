#include "flip/hotkey/HotkeyRecorderView.h"

#include "flip/hotkey/HotkeyFormatter.h"
#include "platform/VirtualKey.h"

#include <QKeyEvent>
#include <QQuickWindow>

namespace tallowby {

HotkeyRecorderView::HotkeyRecorderView(QQuickItem *parent)
    : QQuickItem(parent) {
    setActiveFocusOnTab(true);
}

HotkeyRecorderView::~HotkeyRecorderView() {
    stopRecording();
}

void HotkeyRecorderView::setSettings(AppSettings *settings) {
    if (m_settings == settings) {
        return;
    }
    if (m_settings) {
        m_settings->disconnect(this);
    }
    m_settings = settings;
    if (settings) {
        connect(settings, &AppSettings::hotkeyKeyCodeChanged, this, &HotkeyRecorderView::combinationChanged);
        connect(settings, &AppSettings::hotkeyModifiersChanged, this, &HotkeyRecorderView::combinationChanged);
    }
    Q_EMIT settingsChanged();
    Q_EMIT combinationChanged();
}

QString HotkeyRecorderView::combination() const {
    return m_settings ? HotkeyFormatter::string(m_settings->hotkeyKeyCode(), m_settings->hotkeyModifiers()) : QString();
}

QString HotkeyRecorderView::combinationInWords() const {
    return m_settings ? HotkeyFormatter::keyCaps(m_settings->hotkeyKeyCode(), m_settings->hotkeyModifiers())
                            .join(QStringLiteral(" + "))
                      : QString();
}

void HotkeyRecorderView::toggleRecording() {
    if (m_isRecording) {
        stopRecording();
    } else {
        startRecording();
    }
}

void HotkeyRecorderView::startRecording() {
    if (m_isRecording || !window()) {
        return;
    }
    setErrorMessage(QString());
    m_monitoredWindow = window();
    m_monitoredWindow->installEventFilter(this);
    m_isRecording = true;
    Q_EMIT isRecordingChanged();
}

void HotkeyRecorderView::stopRecording() {
    if (!m_isRecording) {
        return;
    }
    if (m_monitoredWindow) {
        m_monitoredWindow->removeEventFilter(this);
        m_monitoredWindow.clear();
    }
    m_isRecording = false;
    Q_EMIT isRecordingChanged();
}

void HotkeyRecorderView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        startRecording();
    } else {
        QQuickItem::keyPressEvent(event);
    }
}

bool HotkeyRecorderView::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        record(*static_cast<QKeyEvent *>(event));
        return true;
    case QEvent::ShortcutOverride:
        event->accept(); // Else the press would go to the shortcut and never come.
        return true;
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
        return true;
    case QEvent::Hide:
        stopRecording();
        return false;
    default:
        return QQuickItem::eventFilter(watched, event);
    }
}

void HotkeyRecorderView::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemSceneChange || (change == ItemVisibleHasChanged && !data.boolValue)) {
        stopRecording();
    }
    QQuickItem::itemChange(change, data);
}

void HotkeyRecorderView::record(const QKeyEvent &event) {
    // The hot key is grabbed by its place, whatever the layout prints there.
    const auto byPlace = virtualKeyByPlace(event);
    const auto keyCode = byPlace ? byPlace : virtualKeyFromQtKey(Qt::Key(event.key()));
    if (!keyCode || !m_settings) {
        return; // A modifier on its own, or a key that has no code here.
    }
    const std::uint32_t modifiers = carbonModifierFlags(event.modifiers());
    if (*keyCode == keycode::kEscape && modifiers == 0) {
        stopRecording();
        return;
    }
    if (modifiers == 0) {
        setErrorMessage(tr("Shortcut needs at least one modifier key (⌘⌥⌃⇧)"));
        return;
    }
    setErrorMessage(QString());
    m_settings->setHotkeyKeyCode(*keyCode);
    m_settings->setHotkeyModifiers(modifiers);
    stopRecording();
}

void HotkeyRecorderView::setErrorMessage(const QString &message) {
    if (m_errorMessage != message) {
        m_errorMessage = message;
        Q_EMIT errorMessageChanged();
    }
}

} // namespace tallowby
