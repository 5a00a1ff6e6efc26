#pragma once

#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>

namespace tallowby {

/// Scrolls a page so that what has the keyboard is in view. Declared inside the Flickable that is the page. Main thread
/// only.
class FocusScroller : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *page READ page WRITE setPage REQUIRED)
    /// What stays in view above it and below it, in points.
    Q_PROPERTY(qreal margin MEMBER m_margin)

public:
    using QObject::QObject;

    [[nodiscard]] QQuickItem *page() const { return m_page; }
    void setPage(QQuickItem *page);

private:
    void watch();
    void follow();

    QPointer<QQuickItem> m_page;
    qreal m_margin = 8;
    QMetaObject::Connection m_watch;
};

} // namespace tallowby
