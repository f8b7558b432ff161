#pragma once

#include "fakes/RecordingPlatform.h"

#include <QImage>
#include <QPointF>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStringList>

#include <memory>

namespace velloran::test {

/// A real window that shows one piece of QML and is driven by real events. The piece may write what happens to it into
/// the log with `stage.note("…")`; its parts are found by their `objectName`. Transitions take no time unless a test
/// asks for them.
class Stage {
public:
    /// `qml` is the content of a window of that size: any number of items of the program's module.
    explicit Stage(const QByteArray& qml, QSize size = {480, 320});
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

    /// The item with that `objectName`, or the first one of that type; it has to exist.
    [[nodiscard]] QQuickItem& item(const QString& name) const;
    [[nodiscard]] QObject& object(const QString& name) const;
    /// All items of that type at or below `root`, in the order of their making. The type is called as in QML.
    static QList<QQuickItem*> itemsOf(const QString& type, QQuickItem& root);

    [[nodiscard]] QList<QQuickItem*> itemsOf(const QString& type) const { return itemsOf(type, *window.contentItem()); }

    /// The item that shows exactly this text; it has to exist.
    [[nodiscard]] QQuickItem& showing(const QString& text) const;
    /// Whether this text is to be seen: shown by an item that is visible and not faded away.
    [[nodiscard]] bool shows(const QString& text) const;

    /// What the piece has noted since the last call.
    QStringList takeLog();

    /// A property of the theme.
    void setTheme(const char* property, const QVariant& value);
    [[nodiscard]] QVariant theme(const char* property) const;

    [[nodiscard]] QColor themeColor(const char* name) const { return theme(name).value<QColor>(); }

    void moveTo(QPointF point);
    void hover(const QQuickItem& target);
    void leave();
    void press(const QQuickItem& target);
    void release(const QQuickItem& target);
    void click(const QQuickItem& target);
    void clickAt(QPointF point);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString& text);

    /// Presses, toggles or whatever the action is called, as an assistive tool does.
    static void act(QQuickItem& target, const QString& action);

    /// The window as it is to be seen now, in device pixels.
    [[nodiscard]] QImage grab();
    /// The colour at a point of the window.
    [[nodiscard]] QColor pixel(QPointF point);
    /// The frame of `target` in points of the window.
    [[nodiscard]] static QRectF frame(const QQuickItem& target);

    fakes::RecordingPlatform platform;
    QQmlEngine engine;
    QQuickWindow window;
    QQuickItem* root = nullptr;

private:
    QObject* theme_ = nullptr;
};

} // namespace velloran::test
