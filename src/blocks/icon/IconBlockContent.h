#pragma once

#include "canvas/container/BlockBody.h"

#include <QColor>
#include <QPointer>

namespace tallowby {

class IconPickerView;

/// The body of an icon: its symbol, as large as the block, in the block's colour. Editing it opens the panel in which
/// another one is chosen.
class IconBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    /// A name that has a picture, whatever the payload says.
    Q_PROPERTY(QString symbol READ symbol NOTIFY symbolChanged)
    Q_PROPERTY(QColor tint READ tint NOTIFY tintChanged)
    /// For how many points of the screen the symbol is drawn; follows the zoom when that has settled.
    Q_PROPERTY(int shownSide READ shownSide NOTIFY shownSideChanged)
    Q_PROPERTY(bool isFlippedHorizontally READ isFlippedHorizontally NOTIFY symbolChanged)
    Q_PROPERTY(bool isFlippedVertically READ isFlippedVertically NOTIFY symbolChanged)

public:
    using BlockBody::BlockBody;
    ~IconBlockContent() override;

    [[nodiscard]] const QString &symbol() const { return m_symbol; }
    [[nodiscard]] QColor tint() const;
    [[nodiscard]] int shownSide() const { return m_shownSide; }
    [[nodiscard]] bool isFlippedHorizontally() const { return m_isFlippedHorizontally; }
    [[nodiscard]] bool isFlippedVertically() const { return m_isFlippedVertically; }

    void settleZoom() override;
    void setIsEditing(bool isEditing) override;
    [[nodiscard]] QQuickItem *inputItem() const override;
    [[nodiscard]] QString spokenText() const override;

Q_SIGNALS:
    void symbolChanged();
    void tintChanged();
    void shownSideChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void readPayload();
    void openPicker();
    void closePicker();
    void placePicker();

    QString m_symbol;
    bool m_isFlippedHorizontally = false;
    bool m_isFlippedVertically = false;
    int m_shownSide = 0;
    /// Only while the symbol is chosen. A child of the canvas, so that it floats over all blocks.
    QPointer<IconPickerView> m_picker;
};

} // namespace tallowby
