#pragma once

#include "canvas/view/InfiniteCanvasView.h"

#include <QPointer>
#include <QQuickItem>
#include <QVariantList>

namespace tallowby {

/// A line of the keyboard help: the keys, with a blank between two of them, and what they do.
class HelpShortcut {
    Q_GADGET
    Q_PROPERTY(QString key MEMBER key CONSTANT)
    Q_PROPERTY(QString desc MEMBER desc CONSTANT)

public:
    QString key;
    QString desc;
};

/// The panel that lists the keys of the canvas; there while the canvas says so.
class KeyboardHelpOverlay : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    /// Asked for at each showing.
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY reducesMotionChanged)
    /// Of `HelpShortcut`.
    Q_PROPERTY(QVariantList shortcuts READ shortcuts CONSTANT)

public:
    using QQuickItem::QQuickItem;

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] bool isShown() const { return m_isShown; }
    [[nodiscard]] bool reducesMotion() const { return m_reducesMotion; }
    [[nodiscard]] static QVariantList shortcuts();

    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void canvasChanged();
    void isShownChanged();
    void reducesMotionChanged();

private:
    void follow();

    QPointer<InfiniteCanvasView> m_canvas;
    bool m_isShown = false;
    bool m_reducesMotion = false;
};

} // namespace tallowby
