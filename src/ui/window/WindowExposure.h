#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QWindow>

namespace velloran {

/// Tells whether the window around this item is on a screen: not hidden, not minimised, and not reported as covered by
/// the desktop. To be placed in the item that wants to know.
class WindowExposure : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool exposed READ isExposed NOTIFY exposedChanged FINAL)

public:
    explicit WindowExposure(QQuickItem* parent = nullptr);

    [[nodiscard]] bool isExposed() const { return exposed_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void exposedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void follow(QWindow* window);
    void refresh();

    QPointer<QWindow> window_;
    bool exposed_ = false;
};

} // namespace velloran
