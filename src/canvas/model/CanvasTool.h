#pragma once

#include "model/BlockType.h"

#include <QObject>
#include <qqmlintegration.h>

namespace tallowby {

/// What the pointer acts with on the canvas. Tools are equal when their kinds are and, for shapes, the shapes.
class CanvasTool {
    Q_GADGET
    QML_VALUE_TYPE(canvasTool)
    /// A value of CanvasTools.Kind.
    Q_PROPERTY(int kind READ kindValue CONSTANT)
    /// A value of ShapeTypes.Shape.
    Q_PROPERTY(int shapeType READ shapeTypeValue CONSTANT)

public:
    enum class Kind { shape, select, hand, pencil, text, image, stickyNote, voiceNote, eraser };

    CanvasTool() = default;
    CanvasTool(Kind kind)
        : m_kind(kind) {}
    [[nodiscard]] static CanvasTool shape(ShapeType type) {
        CanvasTool tool(Kind::shape);
        tool.m_shapeType = type;
        return tool;
    }

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// Means something for the kind `shape` only.
    [[nodiscard]] ShapeType shapeType() const { return m_shapeType; }

    friend bool operator==(const CanvasTool &, const CanvasTool &) = default;

private:
    [[nodiscard]] int kindValue() const { return int(m_kind); }
    [[nodiscard]] int shapeTypeValue() const { return int(m_shapeType); }

    Kind m_kind = Kind::select;
    ShapeType m_shapeType = ShapeType::rectangle;
};

/// The kinds of tools by the names that views can write: those begin with a capital letter.
namespace CanvasTools {
Q_NAMESPACE
QML_NAMED_ELEMENT(CanvasTools)

enum Kind {
    Shape = int(CanvasTool::Kind::shape),
    Select = int(CanvasTool::Kind::select),
    Hand = int(CanvasTool::Kind::hand),
    Pencil = int(CanvasTool::Kind::pencil),
    Text = int(CanvasTool::Kind::text),
    Image = int(CanvasTool::Kind::image),
    StickyNote = int(CanvasTool::Kind::stickyNote),
    VoiceNote = int(CanvasTool::Kind::voiceNote),
    Eraser = int(CanvasTool::Kind::eraser),
};
Q_ENUM_NS(Kind)
} // namespace CanvasTools

/// The shapes by the names that views can write.
namespace ShapeTypes {
Q_NAMESPACE
QML_NAMED_ELEMENT(ShapeTypes)

enum Shape {
    Rectangle = int(ShapeType::rectangle),
    Circle = int(ShapeType::circle),
    Arrow = int(ShapeType::arrow),
    Line = int(ShapeType::line),
    Diamond = int(ShapeType::diamond),
    Triangle = int(ShapeType::triangle),
    SpeechBubble = int(ShapeType::speechBubble),
};
Q_ENUM_NS(Shape)
} // namespace ShapeTypes

} // namespace tallowby
