#pragma once

#include <QColor>
#include <QQuickItem>

namespace velloran {

/// A quarter of a round glow with its middle in the top left corner, full up to its start and gone at its end, which is
/// as far as the item is wide. Laid over an opaque ground it adds its light to what is there. It is worked out where
/// and when it is painted: most of it lies below cards, and kept as a picture it would take a megabyte.
class Glow : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Its alpha is how strong the light is.
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged REQUIRED FINAL)
    /// In points from the corner.
    Q_PROPERTY(qreal start READ start WRITE setStart NOTIFY startChanged REQUIRED FINAL)

public:
    explicit Glow(QQuickItem* parent = nullptr);

    [[nodiscard]] QColor color() const { return color_; }

    void setColor(const QColor& color);

    [[nodiscard]] qreal start() const { return start_; }

    void setStart(qreal start);

signals:
    void colorChanged();
    void startChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    QColor color_;
    qreal start_ = 0;
};

} // namespace velloran
