#pragma once

#include <QQuickImageProvider>

namespace velloran {

/// Draws `image://shadow/?width=…&height=…&radius=…&blur=…&color=<aarrggbb>`, lengths in points: the shadow of a
/// rounded rectangle of that size, with 1.5 times the blur of room on every side. The blur's standard deviation is half
/// of `blur`.
class ShadowProvider final : public QQuickImageProvider {
public:
    ShadowProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace velloran
