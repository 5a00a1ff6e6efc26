#pragma once

#include <QObject>
#include <QUuid>
#include <qqmlintegration.h>

#include <memory>

namespace tallowby {

/// One line of a checklist. Writing to it changes no payload: the list is written back through its block.
class ChecklistItem : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A checklist block makes its items")
    Q_PROPERTY(QUuid id READ id CONSTANT)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool isDone READ isDone WRITE setIsDone NOTIFY isDoneChanged)

public:
    explicit ChecklistItem(QUuid id, const QString &text = {}, bool isDone = false)
        : m_id(id)
        , m_text(text)
        , m_isDone(isDone) {}

    [[nodiscard]] QUuid id() const { return m_id; }
    [[nodiscard]] const QString &text() const { return m_text; }
    void setText(const QString &text);
    [[nodiscard]] bool isDone() const { return m_isDone; }
    void setIsDone(bool isDone);

Q_SIGNALS:
    void textChanged();
    void isDoneChanged();

private:
    QUuid m_id;
    QString m_text;
    bool m_isDone;
};
using ChecklistItemPtr = std::shared_ptr<ChecklistItem>;

} // namespace tallowby
