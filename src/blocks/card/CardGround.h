#pragma once

#include <private/qquickrectangle_p.h>

class QSGNode;

namespace tallowby {

/// The ground of a card. Qt's own painter makes a rectangle for the zoom of 1: larger, its round corners are
/// staircases, and smaller, some of its edges are lost. Without a graphics processor a ground with corners is drawn as
/// a path there, and one that has only an edge is fitted to the pixels of the screen.
class CardGround : public QQuickRectangle {
    Q_OBJECT
    QML_ELEMENT
    /// As that of the body.
    Q_PROPERTY(bool isScaled READ isScaled WRITE setIsScaled NOTIFY isScaledChanged REQUIRED)

public:
    using QQuickRectangle::QQuickRectangle;

    [[nodiscard]] bool isScaled() const { return m_isScaled; }
    void setIsScaled(bool isScaled);

Q_SIGNALS:
    void isScaledChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    /// What the ground is shown by.
    enum class Form {
        rectangle,
        path,
        smallCard,
    };

    [[nodiscard]] Form form(bool hasEdge) const;

    bool m_isScaled = false;
    Form m_form = Form::rectangle;
};

} // namespace tallowby
