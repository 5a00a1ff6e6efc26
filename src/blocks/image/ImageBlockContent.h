#pragma once

#include "blocks/image/PictureLoading.h"
#include "canvas/container/BlockBody.h"
#include "storage/PictureQueue.h"

namespace tallowby {

class PathDrawingItem;

/// The body of an image: its picture, whole and in its own proportions, with the corners of a card. It is decoded away
/// from the main thread at about the resolution that is shown, and again when the zoom has settled where that is too
/// coarse; what was decoded is kept in the cache, so that a picture that comes back into view is there at once.
class ImageBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isShown READ isShown NOTIFY stateChanged)
    /// The block has no picture, and takes one.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY stateChanged)
    /// Why the picture is not shown.
    Q_PROPERTY(QString message READ message NOTIFY stateChanged)

public:
    /// Decoded pixels per pixel of the screen: a picture lies between those, and one for one it would be blurred.
    static constexpr double kOversampling = 1.5;
    /// Of what is wanted: less is decoded anew. A drag on a corner does not ask for another picture at each step.
    static constexpr double kFineEnough = 0.8;
    /// From here on what is decoded would flicker, scaled down to the screen.
    static constexpr double kCoarsestScaling = 2.5;
    /// In bytes. So small a payload is looked into at once.
    static constexpr qsizetype kSmallPayload = 4096;

    explicit ImageBlockContent(QQuickItem *parent = nullptr);

    [[nodiscard]] bool isShown() const { return !m_decoded.isNull(); }
    [[nodiscard]] bool isEmpty() const { return m_isEmpty; }
    [[nodiscard]] QString message() const;

    void setZoom(double zoom) override;
    void settleZoom() override;
    bool activate() override;
    bool dropFiles(const QList<QUrl> &files) override;
    [[nodiscard]] std::vector<MenuEntry> menuEntries() override;

Q_SIGNALS:
    void stateChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void updatePolish() override;

private:
    void payloadChanged();
    void requestPicture();
    void load();
    void takePicture(const LoadedPicture &loaded, int payloadNumber);
    void show(const QImage &decoded);
    [[nodiscard]] QRectF pictureFrame() const;
    /// In pixels, for what is on the screen now.
    [[nodiscard]] int wantedSide() const;
    void choosePicture();
    void save();
    void copy();

    /// Owned as a child.
    PathDrawingItem *m_picture;
    QImage m_decoded;
    /// The decoded picture, made ready to be drawn with.
    QImage m_texture;
    /// Of the whole picture; empty as long as nobody has looked.
    QSize m_wholeSize;
    /// A drawing is decoded as fine as it is shown.
    bool m_isScalable = false;
    PictureRefusal m_refusal = PictureRefusal::none;
    bool m_isEmpty = false;
    /// Counts the payloads, so that the picture of an earlier one is not shown.
    int m_payloadNumber = 0;
    bool m_isPayloadNew = true;
    bool m_isLoading = false;
    bool m_isLoadDue = false;
    PictureTask m_loading;
};

} // namespace tallowby
