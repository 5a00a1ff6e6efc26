#pragma once

#include "canvas/overlay/toolbar/BlockToolbar.h"
#include "canvas/view/InfiniteCanvasView.h"

#include <QPointer>
#include <QQmlListProperty>
#include <QQuickItem>

namespace tallowby {

/// The bar that floats over the selected blocks and sets how they look. Which one it is, the kinds of the blocks say;
/// it is made when they are selected and goes with the selection. Pointer clicks in it leave the keyboard where it is;
/// F6 brings the keyboard, and F6 or Escape gives it back.
class FormatToolbarView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    /// What it keeps clear of while it is visible.
    Q_PROPERTY(QQmlListProperty<QQuickItem> obstacles READ obstacles CONSTANT)
    /// While something else is in front.
    Q_PROPERTY(bool isHeldBack READ isHeldBack WRITE setIsHeldBack NOTIFY isHeldBackChanged)
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)

public:
    explicit FormatToolbarView(QQuickItem *parent = nullptr);
    ~FormatToolbarView() override;

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] QQmlListProperty<QQuickItem> obstacles() { return {this, &m_obstacles}; }
    [[nodiscard]] bool isHeldBack() const { return m_isHeldBack; }
    void setIsHeldBack(bool isHeldBack);
    [[nodiscard]] bool isShown() const { return m_isShown; }
    /// Null while the selected blocks have nothing in common that could be set.
    [[nodiscard]] BlockToolbar *toolbar() const { return m_toolbar; }

Q_SIGNALS:
    void canvasChanged();
    void isHeldBackChanged();
    void isShownChanged();

protected:
    void componentComplete() override;
    void updatePolish() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QUrl wantedFile() const;
    [[nodiscard]] QRectF target() const;
    void follow();
    void makeToolbar();
    void place();
    void setIsShown(bool isShown);
    void takeKeyboard();
    void giveKeyboardBack();
    [[nodiscard]] bool handleKey(const QKeyEvent &event);
    void pressButton();
    void walk(bool isForward);

    QPointer<InfiniteCanvasView> m_canvas;
    QList<QQuickItem *> m_obstacles;
    QUrl m_file;
    /// Owned as a child.
    BlockToolbar *m_toolbar = nullptr;
    /// As it was placed by last; empty when that was for other blocks.
    QRectF m_target;
    bool m_isHeldBack = false;
    bool m_isShown = false;
};

} // namespace tallowby
