#include "harness/WindowTest.h"

#include "base/fatal.h"
#include "hotkeys/HotkeyManager.h"
#include "ui/theme/Providers.h"

#include <QDir>
#include <QQmlComponent>

#include <algorithm>
#include <functional>
#include <map>

namespace velloran::tests {

namespace {

/// Key codes of what the tests type.
const std::map<char, std::uint8_t> keysOfText{
    {' ', 65}, {'a', 38}, {'b', 56}, {'c', 54}, {'d', 40}, {'e', 26}, {'f', 41}, {'g', 42}, {'h', 43}, {'i', 31},
    {'j', 44}, {'k', 45}, {'l', 46}, {'m', 58}, {'n', 57}, {'o', 32}, {'p', 33}, {'q', 24}, {'r', 27}, {'s', 39},
    {'t', 28}, {'u', 30}, {'v', 55}, {'w', 25}, {'x', 53}, {'y', 29}, {'z', 52}, {'1', 10}, {'2', 11}, {'3', 12},
};

QString textOf(const QQuickItem& item) {
    for (const char* name : {"label", "text", "title"}) {
        const QVariant value = item.property(name);
        if (value.typeId() == QMetaType::QString && !value.toString().isEmpty()) {
            return value.toString();
        }
    }
    return {};
}

bool isCalled(const QObject& object, const char* type) {
    return QByteArray(object.metaObject()->className()).startsWith(type);
}

/// From the lowest to the topmost, as they are painted.
void collect(QQuickItem& item, QList<QQuickItem*>& into) {
    if (!item.isVisible() || item.opacity() == 0) {
        return;
    }
    into.append(&item);
    QList<QQuickItem*> children = item.childItems();
    std::stable_sort(children.begin(), children.end(),
                     [](const QQuickItem* a, const QQuickItem* b) { return a->z() < b->z(); });
    for (QQuickItem* child : children) {
        collect(*child, into);
    }
}

observer::Place onScreen(QQuickWindow& window, QPointF point) {
    const QPoint place = window.mapToGlobal(point.toPoint());
    return {place.x(), place.y()};
}

} // namespace

WindowTest::WindowTest() {
    auto connected = platform::x11::X11Server::connect(loop, [] { fatalError("The X server is gone"); });
    if (!connected) {
        fatalError("The X server takes no platform");
    }
    x11 = std::move(connected).value();
    platform.desktop.modify([this](platform::Desktop& desktop) { desktop.keyCharacters.part = x11->keyCharacters(); });
    monitor = std::make_unique<KeyEventMonitor>(platform.desktop);
    store = fakes::makeStore(platform);
    donations = std::make_unique<DonationManager>(platform.loop, platform.preferences, platform.urlOpener());
    configModel = std::make_unique<ConfigModel>(*store);
    runModel = std::make_unique<RunModel>(*store, platform.loop);
    presetsModel = std::make_unique<PresetsModel>(*store);
    donationModel = std::make_unique<DonationModel>(*donations);
    files = std::make_unique<ConfigFiles>(*store, chooser);
    engine = std::make_unique<QQmlEngine>();
    registerProviders(*engine);
    QObject::connect(engine.get(), &QQmlEngine::quit, [this] { ++quits; });
    Screen::current().user().movePointer({1023, 767});
}

WindowTest::~WindowTest() {
    root.reset();
    engine.reset();
    files.reset();
    donationModel.reset();
    presetsModel.reset();
    runModel.reset();
    configModel.reset();
    donations.reset();
    store->stop();
    platform.loop.runDue();
    store.reset();
    HotkeyManager::endShared();
}

void WindowTest::open(const QByteArray& qml) {
    appearance = std::make_unique<DesktopAppearance>(settings.wishes());
    windowButtons = std::make_unique<DesktopWindowButtons>(settings.wishes(), abilities);
    QQmlComponent component(engine.get());
    component.setData("import QtQuick\nimport Velloran\n" + qml, QUrl("qrc:/test.qml"));
    if (!component.isReady()) {
        fatalError(component.errorString().toStdString());
    }
    root.reset(component.createWithInitialProperties({
        {"config", QVariant::fromValue(configModel.get())},
        {"run", QVariant::fromValue(runModel.get())},
        {"presets", QVariant::fromValue(presetsModel.get())},
        {"files", QVariant::fromValue(files.get())},
        {"donations", QVariant::fromValue(donationModel.get())},
        {"hotkeyConsent", QVariant::fromValue(&hotkeyConsent)},
        {"appearance", QVariant::fromValue(appearance.get())},
        {"windowButtons", QVariant::fromValue(windowButtons.get())},
    }));
    window = qobject_cast<QQuickWindow*>(root.get());
    if (window == nullptr) {
        fatalError(component.errorString().toStdString());
    }
    // What the desktop wishes for has been taken in by now; here, nothing is to take its time.
    QQmlComponent theme(engine.get());
    theme.setData("import QtQml\nimport Velloran\nQtObject { Component.onCompleted: Theme.reducedMotion = true }",
                  QUrl("qrc:/theme.qml"));
    const std::unique_ptr<QObject> setter(theme.create());
    ASSERT_TRUE(QTest::qWaitForWindowActive(window, 10000));
    settle();
}

void WindowTest::openMainWindow() {
    open("MainWindow {}");
}

void WindowTest::settle() {
    ASSERT_TRUE(marker.pass(*window));
    platform.loop.runDue();
    QCoreApplication::processEvents();
    // A user sees a frame before doing anything else; places are right from then on.
    bool isDrawn = false;
    const auto drawn = QObject::connect(window, &QQuickWindow::frameSwapped, [&isDrawn] { isDrawn = true; });
    window->update();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isDrawn || !window->isExposed(); }, 10000));
    QObject::disconnect(drawn);
}

void WindowTest::tap(Key key, const std::vector<std::uint8_t>& held) {
    Screen::current().user().tap(key, held);
    settle();
}

void WindowTest::hold(Key key, bool isDown) {
    Screen::current().user().key(key, isDown);
    settle();
}

void WindowTest::moveTo(QPointF point) {
    Screen::current().user().movePointer(onScreen(*window, point));
    settle();
}

void WindowTest::click(const QQuickItem& target, int buttonNumber) {
    clickAt(frame(target).center(), buttonNumber);
}

void WindowTest::clickAt(QPointF point, int buttonNumber) {
    moveTo(point);
    Screen::current().user().button(static_cast<std::uint8_t>(buttonNumber), true);
    Screen::current().user().button(static_cast<std::uint8_t>(buttonNumber), false);
    settle();
}

void WindowTest::doubleClickAt(QPointF point) {
    moveTo(point);
    for (const bool isPress : {true, false, true, false}) {
        Screen::current().user().button(1, isPress);
    }
    settle();
}

void WindowTest::drag(QPointF from, QPointF to) {
    const observer::Place begin = onScreen(*window, from);
    const observer::Place end = onScreen(*window, to);
    const auto& user = Screen::current().user();
    user.movePointer(begin);
    settle();
    user.button(1, true);
    settle();
    constexpr int steps = 10;
    for (int step = 1; step <= steps; ++step) {
        user.movePointer({begin.x + (end.x - begin.x) * step / steps, begin.y + (end.y - begin.y) * step / steps});
        settle();
    }
    user.button(1, false);
    settle();
}

void WindowTest::type(const std::string& text) {
    for (const char character : text) {
        Screen::current().user().tap(keysOfText.at(character));
    }
    settle();
}

QList<QQuickItem*> WindowTest::visibleItems() const {
    QList<QQuickItem*> items;
    collect(*window->contentItem(), items);
    return items;
}

QQuickItem* WindowTest::find(const QString& text) const {
    const QList<QQuickItem*> items = visibleItems();
    const QRectF area(0, 0, window->width(), window->height());
    for (auto item = items.rbegin(); item != items.rend(); ++item) {
        if (textOf(**item) == text && (*item)->width() > 0 && area.contains(frame(**item).center())) {
            return *item;
        }
    }
    return nullptr;
}

QQuickItem& WindowTest::get(const QString& text) {
    QQuickItem* found = nullptr;
    until([&] {
        found = find(text);
        return found != nullptr;
    });
    if (found == nullptr) {
        fatalError("The window does not show \"" + text.toStdString() + "\"");
    }
    return *found;
}

QQuickItem& WindowTest::button(const QString& label) {
    // The same words may stand elsewhere as well.
    QQuickItem* found = nullptr;
    until([&] {
        for (QQuickItem* item : visibleItems()) {
            if (item->inherits("QQuickAbstractButton") && textOf(*item) == label && item->width() > 0) {
                found = item;
            }
        }
        return found != nullptr;
    });
    if (found == nullptr) {
        fatalError("No button is called \"" + label.toStdString() + "\"");
    }
    return *found;
}

QStringList WindowTest::menuEntries() const {
    std::map<std::pair<qreal, qreal>, QString> byPlace;
    for (const QQuickItem* item : visibleItems()) {
        const QPointF place = frame(*item).topLeft();
        if (isCalled(*item, "MenuSection_")) {
            byPlace.emplace(std::pair(place.x(), place.y()), "[" + textOf(*item) + "]");
        } else if (isCalled(*item, "MenuDivider_")) {
            byPlace.emplace(std::pair(place.x(), place.y()), "-");
        } else if (isCalled(*item, "PopupMenuItem_")) {
            byPlace.emplace(std::pair(place.x(), place.y()), textOf(*item));
        }
    }
    QStringList entries;
    for (const auto& [place, entry] : byPlace) {
        entries.append(entry);
    }
    return entries;
}

QQuickItem* WindowTest::itemNamed(const QString& objectName) const {
    for (QQuickItem* item : visibleItems()) {
        if (item->objectName() == objectName) {
            return item;
        }
    }
    return nullptr;
}

QString WindowTest::focused() const {
    const QQuickItem* item = window->activeFocusItem();
    return item != nullptr ? textOf(*item) : QString();
}

QRectF WindowTest::frame(const QQuickItem& item) {
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
}

void WindowTest::keepPicture(const QString& name) {
    const QString folder = qEnvironmentVariable("VELLORAN_PICTURES");
    if (!folder.isEmpty()) {
        window->grabWindow().save(QDir(folder).filePath(name + ".png"));
    }
}

} // namespace velloran::tests
