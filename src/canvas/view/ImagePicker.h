#pragma once

#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

namespace tallowby {

class InfiniteCanvasView;

/// Lets the user choose a picture for the canvas, or where one is saved. The dialogue lies inside the canvas's own
/// window: that one covers the screen, and a window of the desktop would open behind it.
class ImagePicker : public QObject {
    Q_OBJECT

public:
    /// The view must outlive it.
    explicit ImagePicker(InfiniteCanvasView &view);
    ~ImagePicker() override;

    using Chosen = std::function<void(const QUrl &)>;

    void open(const Chosen &chosen);
    void openToSave(const QString &fileName, const Chosen &chosen);

private Q_SLOTS:
    void handOver();
    void giveBackFocus();
    void close();

private:
    /// False when it cannot be made.
    bool prepare(const Chosen &chosen);
    void show();

    InfiniteCanvasView &m_view;
    std::unique_ptr<QObject> m_dialog;
    Chosen m_chosen;
};

} // namespace tallowby
