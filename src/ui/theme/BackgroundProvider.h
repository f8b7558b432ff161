#pragma once

#include <QQuickImageProvider>

namespace velloran {

/// Draws `image://background/glow?start=<points>&radius=<points>&color=<aarrggbb>`: a quarter of a round glow with its
/// middle in the top left corner, full up to the start and gone at the radius, which is the picture's side. Laid over
/// an opaque ground it adds its light to what is there.
class BackgroundProvider final : public QQuickImageProvider {
public:
    BackgroundProvider() : QQuickImageProvider(Image) {}

    /// `requestedSize` is in device pixels.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace velloran
