#pragma once

#include <QQuickImageProvider>

class QQmlEngine;

namespace tallowby {

/// The pictures that the theme makes, for `Image` and `BorderImage`:
/// - `image://theme/symbol/<name>/<color>`: a symbol by name, tinted with a colour in hex digits; a boxed question
///   mark for a name without a picture;
/// - `image://theme/shadow/<blur>/<radius>/<pixel ratio>`: the soft shadow of a rounded surface as a nine-slice
///   picture, black, opaque where the surface hides it; its borders are `blur + radius` points.
class ThemeImageProvider : public QQuickImageProvider {
public:
    ThemeImageProvider();

    /// Gives the engine the provider, once.
    static void install(QQmlEngine &engine);

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace tallowby
