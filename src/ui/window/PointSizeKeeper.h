#pragma once

#include <QObject>
#include <QPointer>
#include <QSize>
#include <QTimer>
#include <QWindow>
#include <QtQmlIntegration>

namespace velloran {

/// Keeps the size in points of a window that comes to a screen of another scale. A window system that counts in pixels
/// lets it keep those, so that it would show half as much, or twice.
///
/// The window takes its size back once it has come to rest, around the same middle: while it is being moved, its size
/// decides which screen it counts to.
class PointSizeKeeper : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QWindow* window READ window WRITE setWindow NOTIFY windowChanged FINAL)

public:
    explicit PointSizeKeeper(QObject* parent = nullptr);

    [[nodiscard]] QWindow* window() const { return window_; }

    void setWindow(QWindow* window);

signals:
    void windowChanged();

private:
    void screenChanged();
    void resized();
    void moved();
    void restoreSize();

    QPointer<QWindow> window_;
    qreal scale_ = 1;
    /// On a screen of that scale.
    QSize lastSize_;
    /// The size to come back to; invalid while there is none.
    QSize wanted_;
    QTimer rest_;
};

} // namespace velloran
