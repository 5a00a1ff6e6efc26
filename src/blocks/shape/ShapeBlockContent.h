#pragma once

#include "blocks/text/AutoExpandingTextEditor.h"
#include "canvas/container/BlockBody.h"
#include "canvas/drawing/PathDrawing.h"

#include <QColor>
#include <QFont>

namespace tallowby {

class PathDrawingItem;

/// The body of a shape: one of seven outlines in the block's frame, tinted and stroked in the block's colours, with a
/// label in its middle. A flip mirrors the outline and leaves the label readable.
class ShapeBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    /// In which outline and label are drawn, around the middle of the block: never smaller than a label needs.
    Q_PROPERTY(QRectF frame READ frame NOTIFY frameChanged)
    Q_PROPERTY(QString label READ label NOTIFY labelChanged)
    Q_PROPERTY(QFont labelFont READ labelFont NOTIFY labelFontChanged)
    Q_PROPERTY(QColor labelColor READ labelColor NOTIFY labelColorChanged)
    /// Not below an editor that holds any text.
    Q_PROPERTY(bool isLabelShown READ isLabelShown NOTIFY isLabelShownChanged)

public:
    static constexpr QSizeF kSmallestFrame{60, 40};
    /// Between the frame and the label, in points.
    static constexpr double kLabelPadding = 10;
    static constexpr double kTint = 0.1;
    /// In characters; more does not fit a shape.
    static constexpr qsizetype kLongestLabel = 2'000;

    explicit ShapeBlockContent(QQuickItem *parent = nullptr);

    [[nodiscard]] static QSizeF frameSize(QSizeF blockSize);
    /// In a frame whose origin is at (0, 0).
    [[nodiscard]] static PathDrawing drawing(const Block &block, QSizeF frameSize);

    [[nodiscard]] QRectF frame() const;
    [[nodiscard]] QString label() const;
    [[nodiscard]] QFont labelFont() const;
    [[nodiscard]] QColor labelColor() const;
    [[nodiscard]] bool isLabelShown() const { return !m_editor; }

    void setZoom(double zoom) override;
    void settleZoom() override;
    void setIsEditing(bool isEditing) override;
    [[nodiscard]] QQuickItem *inputItem() const override;
    void placeCaret(QPointF point) override;

Q_SIGNALS:
    void frameChanged();
    void labelChanged();
    void labelFontChanged();
    void labelColorChanged();
    void isLabelShownChanged();

protected:
    void componentComplete() override;
    [[nodiscard]] double textSize() const override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void updatePolish() override;

private:
    void openEditor();
    void closeEditor();
    void dressEditor();

    /// Owned as a child.
    PathDrawingItem *m_outline;
    /// Only while the label is edited; owned as a child.
    AutoExpandingTextEditor *m_editor = nullptr;
};

} // namespace tallowby
