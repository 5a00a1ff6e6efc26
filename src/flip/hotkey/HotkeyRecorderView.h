#pragma once

#include "platform/AppSettings.h"

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

/// The field that shows the hot key and records a new one. While it records, every key press of its window goes to it
/// and to nothing else. The looks are composed on it in HotkeyRecorder.qml.
class HotkeyRecorderView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::AppSettings *settings READ settings WRITE setSettings NOTIFY settingsChanged REQUIRED)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(QString combination READ combination NOTIFY combinationChanged)
    /// As it stands on the keys.
    Q_PROPERTY(QString combinationInWords READ combinationInWords NOTIFY combinationChanged)

public:
    explicit HotkeyRecorderView(QQuickItem *parent = nullptr);
    ~HotkeyRecorderView() override;

    [[nodiscard]] AppSettings *settings() const { return m_settings; }
    void setSettings(AppSettings *settings);
    [[nodiscard]] bool isRecording() const { return m_isRecording; }
    /// Empty when the last attempt was fine.
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    /// The stored combination as glyphs and key name.
    [[nodiscard]] QString combination() const;
    [[nodiscard]] QString combinationInWords() const;

    /// Starts recording, or stops it without a change.
    Q_INVOKABLE void toggleRecording();
    void startRecording();
    void stopRecording();

Q_SIGNALS:
    void settingsChanged();
    void isRecordingChanged();
    void errorMessageChanged();
    void combinationChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void record(const class QKeyEvent &event);
    void setErrorMessage(const QString &message);

    QPointer<AppSettings> m_settings;
    QPointer<QObject> m_monitoredWindow;
    QString m_errorMessage;
    bool m_isRecording = false;
};

} // namespace tallowby
