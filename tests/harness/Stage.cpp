#include "harness/Stage.h"

#include "base/fatal.h"
#include "ui/theme/Providers.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QTest>

namespace velloran::test {
namespace {

/// Calls `visit` for `item` and everything below, until one of the calls answers true.
bool walk(QQuickItem& item, const std::function<bool(QQuickItem&)>& visit) {
    if (visit(item)) {
        return true;
    }
    const QList<QQuickItem*> children = item.childItems();
    return std::any_of(children.begin(), children.end(), [&](QQuickItem* child) { return walk(*child, visit); });
}

bool isOfType(const QObject& object, const QString& type) {
    // Types of our own may have a namespace, and what QML has added to.
    const QString name = QString(object.metaObject()->className()).section("::", -1);
    return name == type || name.startsWith(type + "_QML") || name == "QQuick" + type;
}

bool isSeen(const QQuickItem& item) {
    if (!item.isVisible()) {
        return false;
    }
    for (const QQuickItem* step = &item; step != nullptr; step = step->parentItem()) {
        if (step->opacity() == 0) {
            return false;
        }
    }
    return true;
}

} // namespace

Stage::Stage(const QByteArray& qml, QSize size) {
    registerProviders(engine);
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport QtQuick.Layouts\nimport Velloran\n"
                      "Item {\n"
                      "    id: stage\n"
                      "    property var log: []\n"
                      "    readonly property QtObject theme: Theme\n"
                      "    function note(text) { log.push(text) }\n" +
                          qml + "\n}\n",
                      QUrl("qrc:/stage.qml"));
    root = qobject_cast<QQuickItem*>(component.create());
    if (root == nullptr) {
        fatalError(component.errorString().toStdString());
    }
    theme_ = root->property("theme").value<QObject*>();
    setTheme("reducedMotion", true);
    window.resize(size);
    root->setParent(&window);
    root->setParentItem(window.contentItem());
    root->setSize(size);
    root->setFocus(true);
    window.setColor(themeColor("cardFill"));
    window.show();
    window.requestActivate();
    if (!QTest::qWaitForWindowActive(&window)) {
        fatalError("The window does not become active");
    }
    // As in a session with a screen reader: the toolkit's controls keep their states up to date only then.
    QAccessible::setActive(true);
    leave();
}

Stage::~Stage() {
    delete root;
}

QObject& Stage::object(const QString& name) const {
    if (root->objectName() == name) {
        return *root;
    }
    if (auto* found = root->findChild<QObject*>(name)) {
        return *found;
    }
    fatalError("There is no object called " + name.toStdString());
}

QQuickItem& Stage::item(const QString& name) const {
    QQuickItem* found = nullptr;
    walk(*window.contentItem(), [&](QQuickItem& item) {
        found = &item;
        return item.objectName() == name || isOfType(item, name);
    });
    if (found == nullptr || (found->objectName() != name && !isOfType(*found, name))) {
        fatalError("There is no item called " + name.toStdString());
    }
    return *found;
}

QList<QQuickItem*> Stage::itemsOf(const QString& type, QQuickItem& root) {
    QList<QQuickItem*> found;
    walk(root, [&](QQuickItem& item) {
        if (isOfType(item, type)) {
            found.append(&item);
        }
        return false;
    });
    return found;
}

QQuickItem& Stage::showing(const QString& text) const {
    for (QQuickItem* item : itemsOf("BodyText")) {
        if (item->property("text") == text && isSeen(*item)) {
            return *item;
        }
    }
    fatalError("Nothing shows the text " + text.toStdString());
}

bool Stage::shows(const QString& text) const {
    const QList<QQuickItem*> texts = itemsOf("BodyText");
    return std::any_of(texts.begin(), texts.end(),
                       [&](const QQuickItem* item) { return item->property("text") == text && isSeen(*item); });
}

QStringList Stage::takeLog() {
    QStringList log = root->property("log").value<QJSValue>().toVariant().toStringList();
    root->setProperty("log", QVariant::fromValue(engine.newArray()));
    return log;
}

void Stage::setTheme(const char* property, const QVariant& value) {
    if (!theme_->setProperty(property, value)) {
        fatalError(std::string("The theme has no property ") + property);
    }
}

QVariant Stage::theme(const char* property) const {
    return theme_->property(property);
}

void Stage::moveTo(QPointF point) {
    QTest::mouseMove(&window, point.toPoint());
    QCoreApplication::processEvents();
}

void Stage::hover(const QQuickItem& target) {
    moveTo(frame(target).center());
}

void Stage::leave() {
    // The lower right corner, where no test puts anything.
    moveTo(QPointF(window.width() - 1, window.height() - 1));
}

void Stage::press(const QQuickItem& target) {
    hover(target);
    QTest::mousePress(&window, Qt::LeftButton, {}, frame(target).center().toPoint());
    QCoreApplication::processEvents();
}

void Stage::release(const QQuickItem& target) {
    QTest::mouseRelease(&window, Qt::LeftButton, {}, frame(target).center().toPoint());
    QCoreApplication::processEvents();
}

void Stage::click(const QQuickItem& target) {
    clickAt(frame(target).center());
}

void Stage::clickAt(QPointF point) {
    moveTo(point);
    QTest::mouseClick(&window, Qt::LeftButton, {}, point.toPoint());
    QCoreApplication::processEvents();
}

void Stage::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&window, key, modifiers);
    QCoreApplication::processEvents();
}

void Stage::type(const QString& text) {
    for (const QChar character : text) {
        QTest::keyClick(&window, character.toLatin1());
    }
    QCoreApplication::processEvents();
}

void Stage::act(QQuickItem& target, const QString& action) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&target);
    if (accessible == nullptr || accessible->actionInterface() == nullptr ||
        !accessible->actionInterface()->actionNames().contains(action)) {
        fatalError("The item offers no action " + action.toStdString());
    }
    accessible->actionInterface()->doAction(action);
    QCoreApplication::processEvents();
}

QImage Stage::grab() {
    QCoreApplication::processEvents();
    QImage picture = window.grabWindow();
    picture.setDevicePixelRatio(window.effectiveDevicePixelRatio());
    return picture;
}

QColor Stage::pixel(QPointF point) {
    const double scale = window.effectiveDevicePixelRatio();
    return grab().pixelColor((point * scale).toPoint());
}

QRectF Stage::frame(const QQuickItem& target) {
    return target.mapRectToScene(QRectF(0, 0, target.width(), target.height()));
}

} // namespace velloran::test
