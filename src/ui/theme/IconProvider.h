#pragma once

#include <QQuickImageProvider>

namespace velloran {

/// Draws `image://icon/<symbol>?color=<aarrggbb>`: the shape of a symbol filled with one colour. A symbol without a
/// drawing gives no picture and a warning.
class IconProvider final : public QQuickImageProvider {
public:
    IconProvider() : QQuickImageProvider(Image) {}

    /// `requestedSize` is in device pixels.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace velloran
