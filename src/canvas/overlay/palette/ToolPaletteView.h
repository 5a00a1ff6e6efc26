#pragma once

#include "canvas/model/CanvasViewModel.h"

#include <QColor>
#include <QPointer>
#include <QQuickItem>
#include <QVariantList>

namespace tallowby {

/// What the palette offers: a tool or a shape.
class PaletteChoice {
    Q_GADGET
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)

public:
    QString symbol;
    QString name;
};

/// A colour for strokes: as it is kept, as it shows on the paper of the theme, and its name.
class PencilColor {
    Q_GADGET
    Q_PROPERTY(QString value MEMBER value CONSTANT)
    Q_PROPERTY(QColor shown MEMBER shown CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)

public:
    QString value;
    QColor shown;
    QString name;
};

/// The tools of the canvas and what can be set about them. It only writes the model; what a tool does with the pointer
/// is the canvas view's.
class ToolPaletteView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::CanvasViewModel *viewModel READ viewModel WRITE setViewModel NOTIFY viewModelChanged REQUIRED)
    /// Of `PaletteChoice`; the digit that chooses a tool is its place here and one.
    Q_PROPERTY(QVariantList tools READ tools CONSTANT)
    /// Of `PaletteChoice`.
    Q_PROPERTY(QVariantList shapes READ shapes CONSTANT)
    /// Of `PencilColor`.
    Q_PROPERTY(QVariantList pencilColors READ pencilColors NOTIFY pencilColorsChanged)
    /// In canvas points.
    Q_PROPERTY(QVariantList pencilWidths READ pencilWidths CONSTANT)
    /// Places in the lists; -1 where no shape is drawn.
    Q_PROPERTY(int activeTool READ activeTool NOTIFY activeToolChanged)
    Q_PROPERTY(int activeShape READ activeShape NOTIFY activeToolChanged)
    Q_PROPERTY(bool isPencilActive READ isPencilActive NOTIFY activeToolChanged)
    /// A button or a finger is down on the canvas.
    Q_PROPERTY(bool isGestureRunning READ isGestureRunning WRITE setIsGestureRunning NOTIFY isGestureRunningChanged)
    /// Out of the way of a gesture that draws or erases, unless the pointer has come near.
    Q_PROPERTY(bool isFaint READ isFaint NOTIFY isFaintChanged)

public:
    explicit ToolPaletteView(QQuickItem *parent = nullptr);

    [[nodiscard]] CanvasViewModel *viewModel() const { return m_viewModel; }
    void setViewModel(CanvasViewModel *viewModel);
    [[nodiscard]] static QVariantList tools();
    [[nodiscard]] static QVariantList shapes();
    [[nodiscard]] static QVariantList pencilColors();
    [[nodiscard]] static QVariantList pencilWidths();
    [[nodiscard]] int activeTool() const;
    [[nodiscard]] int activeShape() const;
    [[nodiscard]] bool isPencilActive() const;
    [[nodiscard]] bool isGestureRunning() const { return m_isGestureRunning; }
    void setIsGestureRunning(bool isRunning);
    [[nodiscard]] bool isFaint() const;

    /// The shape tool takes up the shape that was drawn last.
    Q_INVOKABLE void chooseTool(int place);
    Q_INVOKABLE void chooseShape(int place);
    Q_INVOKABLE void toggleLock();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void viewModelChanged();
    void activeToolChanged();
    void isGestureRunningChanged();
    void isFaintChanged();
    void pencilColorsChanged();

private:
    void noteTool();
    void setIsPointerNear(bool isNear);

    QPointer<CanvasViewModel> m_viewModel;
    ShapeType m_lastShape = ShapeType::rectangle;
    bool m_isGestureRunning = false;
    bool m_isPointerNear = false;
};

} // namespace tallowby
