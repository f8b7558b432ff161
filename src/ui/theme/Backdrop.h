#pragma once

#include <QImage>
#include <QPoint>
#include <QQuickItem>

#include <memory>

namespace velloran {

/// What had been painted at some place of the screen, in pixels of the device.
struct KeptPixels {
    QImage picture;
    QPoint place;
};

/// Keeps what has been painted below it, at its own place, for a `BackdropVeil` above. Shows nothing itself.
class Backdrop : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit Backdrop(QQuickItem* parent = nullptr);

    /// Filled anew with every frame that is painted here.
    [[nodiscard]] std::shared_ptr<const KeptPixels> pixels() const { return pixels_; }

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    std::shared_ptr<KeptPixels> pixels_ = std::make_shared<KeptPixels>();
};

/// Lays what a backdrop has kept over everything that was painted since. Half opaque, it makes that look half as
/// strong, as one thing and not part by part: a title fades into what lies behind its button and not into the button's
/// face.
class BackdropVeil : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// As large as this, and destroyed together with it.
    Q_PROPERTY(velloran::Backdrop* backdrop MEMBER backdrop_ NOTIFY backdropChanged REQUIRED FINAL)

public:
    explicit BackdropVeil(QQuickItem* parent = nullptr);

signals:
    void backdropChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    Backdrop* backdrop_ = nullptr;
};

} // namespace velloran
