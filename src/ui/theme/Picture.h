#pragma once

#include <QPixmap>
#include <QQuickItem>
#include <QSize>

namespace velloran {

/// One of the program's own pictures, kept in proportion inside the size given and turned with it. It is scaled down
/// once, while it is read, never coarser than the screen; for sizes of which the program has one that is scaled
/// already, that is read.
class Picture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The picture's name, without its extension.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged REQUIRED FINAL)

public:
    explicit Picture(QQuickItem* parent = nullptr);

    [[nodiscard]] QString name() const { return name_; }

    void setName(const QString& name);

    /// The picture of that name inside of so many pixels; null when there is none. Usable from any thread.
    [[nodiscard]] static QImage read(const QString& name, QSize inside);
    /// The same, scaled from the large one.
    [[nodiscard]] static QImage readLarge(const QString& name, QSize inside);

signals:
    void nameChanged();

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    QString name_;
    /// What `pixmap_` was read for.
    QString shownName_;
    QSize shownInside_;
    QPixmap pixmap_;
};

} // namespace velloran
