#pragma once

#include "app/shell/WindowController.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace tallowby {

/// A button of a notice.
struct NoticeChoice {
    QString text;
    std::function<void()> action;
};

/// A window that says one thing about the notes and offers what can be done about it. Main thread only.
class NoticeWindowController : public WindowController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString details READ details NOTIFY detailsChanged)
    /// The last one is what most people want.
    Q_PROPERTY(QStringList choices READ choices CONSTANT)

public:
    NoticeWindowController(const WindowServices &window, QString title, std::vector<NoticeChoice> choices);

    [[nodiscard]] const QString &title() const { return m_title; }
    [[nodiscard]] const QString &details() const { return m_details; }
    void setDetails(const QString &details);
    [[nodiscard]] QStringList choices() const;
    Q_INVOKABLE void choose(int index);

Q_SIGNALS:
    void detailsChanged();

private:
    const QString m_title;
    const std::vector<NoticeChoice> m_choices;
    QString m_details;
};

} // namespace tallowby
