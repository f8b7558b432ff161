#pragma once

#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QSize>
#include <QWindow>
#include <QtQmlIntegration>

namespace velloran {

/// The part of the window's screen that panels and docks leave free.
class WorkArea : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// The window whose screen is meant.
    Q_PROPERTY(QWindow* window READ window WRITE setWindow NOTIFY windowChanged FINAL)
    /// In points; the primary screen's while there is no window.
    Q_PROPERTY(QSize size READ size NOTIFY sizeChanged FINAL)

public:
    explicit WorkArea(QObject* parent = nullptr);

    [[nodiscard]] QWindow* window() const { return window_; }

    void setWindow(QWindow* window);
    [[nodiscard]] QSize size() const;

signals:
    void windowChanged();
    void sizeChanged();

private:
    void follow(QScreen* screen);

    QPointer<QWindow> window_;
    QPointer<QScreen> screen_;
};

} // namespace velloran
