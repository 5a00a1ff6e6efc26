#pragma once

#include "blocks/text/EditedBody.h"
#include "canvas/drawing/PathDrawing.h"

#include <QColor>
#include <QFont>

namespace tallowby {

class PathDrawingItem;

/// The body of a shape: one of seven outlines in the block's frame, tinted and stroked in the block's colours, with a
/// label in its middle. A flip mirrors the outline and leaves the label readable.
class ShapeBlockContent : public tallowby::EditedBody {
    Q_OBJECT
    QML_ELEMENT
    /// In which outline and label are drawn, around the middle of the block: never smaller than a label needs.
    Q_PROPERTY(QRectF frame READ frame NOTIFY frameChanged)
    Q_PROPERTY(QString label READ label NOTIFY labelChanged)
    Q_PROPERTY(QFont labelFont READ labelFont NOTIFY labelFontChanged)
    Q_PROPERTY(QColor labelColor READ labelColor NOTIFY labelColorChanged)

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

    void setZoom(double zoom) override;
    void settleZoom() override;

Q_SIGNALS:
    void frameChanged();
    void labelChanged();
    void labelFontChanged();
    void labelColorChanged();

protected:
    void componentComplete() override;
    [[nodiscard]] double textSize() const override;
    [[nodiscard]] QLatin1StringView editorFile() const override { return QLatin1StringView("LabelEditor"); }
    void dressEditor(AutoExpandingTextEditor &editor) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void updatePolish() override;

private:
    /// Owned as a child.
    PathDrawingItem *m_outline;
};

} // namespace tallowby
