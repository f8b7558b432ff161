#include <QApplication>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>

#include "applicationLooks.h"
#include "chooseDesktop.h"
#include "donation/DonationManager.h"
#include "donation/view/DonationModel.h"
#include "engine/AutoClickerStore.h"
#include "followServices.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/view/HotkeyConsentModel.h"
#include "hotkeys/view/KeyEventMonitor.h"
#include "platform/FallbackFileChooser.h"
#include "platform/Platform.h"
#include "platform/bus/SessionBus.h"
#include "platform/bus/SingleInstance.h"
#include "platform/portal/PortalFileChooser.h"
#include "platform/portal/PortalSettings.h"
#include "platform/posix/ModuleSounds.h"
#include "platform/posix/SyslogLog.h"
#include "platform/posix/TerminationSignals.h"
#include "platform/posix/descriptorLimit.h"
#include "platform/posix/fileSizeLimit.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtPreferences.h"
#include "platform/qt/QtUrlOpener.h"
#include "platform/qt/WidgetFileChooser.h"
#include "platform/wayland/AbilitiesQuestion.h"
#include "platform/waylandwindow/CompositorMenu.h"
#include "platform/waylandwindow/ShortcutsInhibitor.h"
#include "platform/waylandwindow/leastSize.h"
#include "platform/waylandwindow/mouse.h"
#include "platform/windowmanager/WindowRaiser.h"
#include "platform/windowmanager/buttonEvents.h"
#include "platform/windowmanager/windowManagerMenu.h"
#include "presets/view/ConfigFiles.h"
#include "presets/view/PresetsModel.h"
#include "realBackends.h"
#include "suddenEnd.h"
#include "ui/cards/ConfigModel.h"
#include "ui/cards/RunModel.h"
#include "ui/theme/DesktopAppearance.h"
#include "ui/theme/Providers.h"
#include "ui/theme/firstFonts.h"
#include "ui/window/DesktopLimits.h"
#include "ui/window/DesktopWindowButtons.h"
#include "ui/window/WindowManagerMenu.h"
#include "ui/window/WorkArea.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

Q_IMPORT_QML_PLUGIN(VelloranPlugin)

namespace {

using namespace velloran;

/// Whether the toolkit has a window system to talk to.
bool hasDisplay() {
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && std::strlen(value) > 0) {
            return true;
        }
    }
    return false;
}

/// Takes the registered hotkey away again, before the backend that holds it goes.
struct SharedHotkeys {
    SharedHotkeys() = default;
    SharedHotkeys(const SharedHotkeys&) = delete;
    SharedHotkeys& operator=(const SharedHotkeys&) = delete;

    ~SharedHotkeys() { HotkeyManager::endShared(); }
};

/// The compositor that has the window; nothing on other window systems.
std::optional<std::string> compositorOfWindow() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"))
               ? setValue(processEnvironment, "WAYLAND_DISPLAY")
               : std::nullopt;
}

/// The views' engine. It begins to read their types on a thread of its own, while everything else is made.
class Views {
public:
    Views() : mainWindow_(&engine_) {
        registerProviders(engine_);
        mainWindow_.loadUrl(QUrl(QStringLiteral("qrc:/qt-project.org/imports/Velloran/MainWindow.qml")),
                            QQmlComponent::Asynchronous);
    }

    [[nodiscard]] QQmlApplicationEngine& engine() { return engine_; }

private:
    QQmlApplicationEngine engine_;
    QQmlComponent mainWindow_;
};

int run(platform::bus::SessionBus& bus, const std::string& busAddress, platform::bus::SingleInstance& instance,
        std::unique_ptr<Views> reading) {
    platform::qt::QtEventLoop loop;
    const platform::posix::TerminationSignals termination(loop, [] { QCoreApplication::quit(); });
    platform::posix::SyslogLog log;
    platform::qt::QtPreferences preferences(platform::qt::QtPreferences::defaultPath());
    const OpenPreferences whileOpen(preferences);
    platform::qt::QtUrlOpener urlOpener;
    platform::posix::ModuleSounds sounds(platform::posix::ModuleSounds::pathOf("velloran-sound"), VELLORAN_VERSION);
    platform::wayland::AbilitiesQuestion abilities(loop, compositorOfWindow());
    HotkeyConsentModel hotkeyConsent(preferences);
    std::weak_ptr<AutoClickerStore> clicker;
    const auto isActiveNow = [&clicker] {
        const auto asked = clicker.lock();
        return asked && isActive(asked->runtime().get().status);
    };
    const Backends backends = realBackends(
        loop, [] { endWithoutServer(); }, busAddress, &hotkeyConsent, isActiveNow);
    Published<platform::Desktop> desktop(chooseDesktop(processEnvironment, backends));
    const Subscription serviceParts = followServices(processEnvironment, backends, desktop);
    std::set<QString> told;
    Subscription telling;
    // On an X server there is nothing to choose from, and a program has nothing to say.
    if (isWayland(processEnvironment)) {
        telling = desktop.stream().subscribe([&log, &told](const platform::Desktop& now) {
            for (const QString& sentence : DesktopLimits::of(now).sentences) {
                if (told.insert(sentence).second) {
                    log.write("This desktop: " + sentence.toStdString());
                }
            }
        });
    }
    const platform::PlatformInstallation installation({loop, desktop, log});
    const SharedHotkeys sharedHotkeys;

    const auto store = AutoClickerStore::create(loop, desktop, sounds, std::make_unique<PresetStore>(preferences));
    clicker = store;
    // The sound library is of no use to anybody who hears no ticks.
    const Subscription soundWanted = store->config.stream().subscribe([&sounds](const AutoClickerConfig& config) {
        if (config.playClickSound) {
            sounds.prepare();
        }
    });
    DonationManager donations(loop, preferences, urlOpener);
    platform::waylandwindow::ShortcutsInhibitor shortcuts;
    KeyEventMonitor keyMonitor(desktop, [&shortcuts] { return shortcuts.inhibit(); });
    ConfigModel configModel(*store);
    RunModel runModel(*store, loop);
    PresetsModel presetsModel(*store);
    DonationModel donationModel(donations);

    platform::portal::Portal portal(bus);
    platform::portal::PortalSettings settings(portal);
    platform::portal::PortalFileChooser portalChooser(portal);
    platform::qt::WidgetFileChooser widgetChooser;
    platform::FallbackFileChooser chooser(portalChooser, widgetChooser);
    ConfigFiles files(*store, chooser);
    DesktopAppearance appearance(settings.wishes());
    // Asked for above, they are there by now; buttons that are of no use are not to be seen first.
    abilities.waitForAnswer(std::chrono::milliseconds(100));
    DesktopWindowButtons windowButtons(settings.wishes(), abilities.answer());
    platform::waylandwindow::CompositorMenu compositorMenu;
    WindowManagerMenu managerMenu(
        [&compositorMenu, &abilities](QWindow& window, QPoint place, auto missing) {
            return platform::windowmanager::showWindowManagerMenu(window) ||
                   (abilities.answer().get().opensMenu && compositorMenu.show(window, place, std::move(missing)));
        },
        [&compositorMenu] { compositorMenu.prepare(); });

    // What it shows goes before what it is shown of.
    const auto views = std::move(reading);
    QQmlApplicationEngine& engine = views->engine();
    engine.setInitialProperties({
        {"config", QVariant::fromValue(&configModel)},
        {"run", QVariant::fromValue(&runModel)},
        {"presets", QVariant::fromValue(&presetsModel)},
        {"files", QVariant::fromValue(&files)},
        {"donations", QVariant::fromValue(&donationModel)},
        {"hotkeyConsent", QVariant::fromValue(&hotkeyConsent)},
        {"appearance", QVariant::fromValue(&appearance)},
        {"windowButtons", QVariant::fromValue(&windowButtons)},
        {"managerMenu", QVariant::fromValue(&managerMenu)},
        {"isKeptByDesktop", compositorOfWindow().has_value()},
    });
    // By name and not by address: only an import makes the module's own types known.
    engine.loadData(QByteArrayLiteral("import Velloran\nMainWindow {}\n"));
    if (engine.rootObjects().isEmpty()) {
        return EXIT_FAILURE;
    }
    auto* const window = qobject_cast<QWindow*>(engine.rootObjects().first());
    const auto keepLeastSize = [window] {
        platform::waylandwindow::keepLeastSize(*window, window->property("least").toSizeF().toSize());
    };
    keepLeastSize();
    WorkArea workArea;
    workArea.setWindow(window);
    // Later: the view has one of its own, and what it makes of it has to be known by then.
    QObject::connect(&workArea, &WorkArea::sizeChanged, window, keepLeastSize, Qt::QueuedConnection);
    const auto showLimits = [window, &desktop] {
        const auto limits = DesktopLimits::of(desktop.get(), HotkeyManager::shared().answer());
        window->setProperty("desktopLimits", QVariant::fromValue(limits));
    };
    const Subscription desktopShown = desktop.stream().subscribe([&](const auto&) { showLimits(); });
    const Subscription hotkeyShown = HotkeyManager::shared().answers().subscribe([&](const auto&) { showLimits(); });
    instance.serve({
        .activate = [window](const auto& token) { platform::windowmanager::raiseWindow(*window, token); },
        .toggle = [&store] { store->toggleStartStop(); },
        .quit = [] { QCoreApplication::quit(); },
    });
    const int status = QApplication::exec();
    instance.serve({});
    store->stop();
    // A running loop holds the store until it has noticed; that takes one turn.
    QCoreApplication::sendPostedEvents(&loop);
    return status;
}

} // namespace

int main(int argc, char* argv[]) {
    if (!hasDisplay()) {
        endWithoutDisplay();
    }
    if (!platform::posix::allowEnoughDescriptors()) {
        std::fputs("Velloran: it may not open as many files as it needs.\n", stderr);
        return EXIT_FAILURE;
    }
    platform::posix::TerminationSignals::hold();
    platform::posix::outliveFileSizeLimit();
    // A reader of the log that goes away is no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
    qInstallMessageHandler(handleToolkitMessage);
    const auto token = platform::bus::ActivationToken::fromEnvironment();
    const auto busPlace = platform::bus::findSessionBus();
    if (busPlace.state == platform::bus::BusState::silent) {
        std::fputs("Velloran: the session bus does not answer. The program goes on without it.\n", stderr);
    }
    // Lighter than the graphics card's way by half a processor and 80 MB, and it leaves the card to the game.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // There are no options, and the toolkit is not to find its own among the arguments.
    int argumentCount = std::min(argc, 1);
    const QApplication application(argumentCount, argv);
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        // Only there the toolkit uses it up. It is meant for this start, and not for the browser's.
        qunsetenv("XDG_ACTIVATION_TOKEN");
    }
    platform::windowmanager::leaveOutButtonsOfOthers();
    platform::waylandwindow::ensureMouse();
    QApplication::setApplicationName(QStringLiteral("velloran"));
    QApplication::setApplicationDisplayName(QStringLiteral("Velloran"));
    QApplication::setApplicationVersion(QStringLiteral(VELLORAN_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("app.velloran.Velloran"));
    auto views = std::make_unique<Views>();
    platform::bus::SessionBus bus(busPlace);
    platform::bus::SingleInstance instance(bus);
    switch (instance.claim(token)) {
    case platform::bus::SingleInstance::Claim::handedOver:
        return EXIT_SUCCESS;
    case platform::bus::SingleInstance::Claim::unanswered:
        std::fputs("Velloran: it is running already, but does not answer.\n", stderr);
        return EXIT_FAILURE;
    case platform::bus::SingleInstance::Claim::first:
        break;
    }
    QApplication::setWindowIcon(windowIcon());
    chooseTypeface();
    // Meanwhile the types of the views are still being read.
    openFirstFonts();
    return run(bus, busPlace.address.toStdString(), instance, std::move(views));
}
