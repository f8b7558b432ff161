#pragma once

#include "donation/DonationManager.h"
#include "donation/view/DonationModel.h"
#include "engine/AutoClickerStore.h"
#include "fakes/RecordingPlatform.h"
#include "fakes/makeStore.h"
#include "harness/EventMarker.h"
#include "harness/Screen.h"
#include "hotkeys/view/HotkeyConsentModel.h"
#include "hotkeys/view/KeyEventMonitor.h"
#include "platform/FallbackFileChooser.h"
#include "platform/portal/PortalFileChooser.h"
#include "platform/portal/PortalSettings.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/WidgetFileChooser.h"
#include "platform/x11/X11Server.h"
#include "presets/view/ConfigFiles.h"
#include "presets/view/PresetsModel.h"
#include "ui/cards/ConfigModel.h"
#include "ui/cards/RunModel.h"
#include "ui/theme/DesktopAppearance.h"
#include "ui/window/DesktopWindowButtons.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// Shows a text in the message of a failed test.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

namespace velloran::tests {

/// The fixture of all tests here: a real window of the program on the private screen, used by a user with a real
/// keyboard and mouse. What lies behind the window only writes down what it is asked to do.
class WindowTest : public testing::Test {
protected:
    /// X key codes of a customary keyboard.
    enum Key : std::uint8_t {
        escapeKey = 9,
        digit1Key = 10,
        tabKey = 23,
        qKey = 24,
        equalKey = 21,
        returnKey = 36,
        controlKey = 37,
        aKey = 38,
        sKey = 39,
        bracketKey = 34,
        shiftKey = 50,
        zKey = 52,
        cKey = 54,
        commaKey = 59,
        altKey = 64,
        spaceKey = 65,
        f8Key = 74,
        keypad5Key = 84,
        altGrKey = 108,
        upKey = 111,
        downKey = 116,
        rightKey = 114,
        superKey = 133,
    };

    WindowTest();
    ~WindowTest() override;

    /// Opens the window that `qml` describes and waits until it is in use. The models are its properties `config`,
    /// `run`, `presets`, `donations` and `hotkeyConsent`, if it has such.
    void open(const QByteArray& qml);

    /// The program's own window.
    void openMainWindow();

    /// Runs the program until the condition holds; false when it does not within ten seconds.
    template<typename Condition>
    bool until(Condition condition) {
        return QTest::qWaitFor(
            [this, &condition] {
                platform.loop.runDue();
                return condition();
            },
            10000);
    }

    /// Has the program take in everything that the user has done so far.
    void settle();

    void tap(Key key, const std::vector<std::uint8_t>& held = {});
    void hold(Key key, bool isDown);
    void click(const QQuickItem& target, int buttonNumber = 1);
    void clickAt(QPointF point, int buttonNumber = 1);
    void doubleClickAt(QPointF point);
    /// Presses at `from`, goes to `to` in steps, and lets go there.
    void drag(QPointF from, QPointF to);
    void moveTo(QPointF point);
    /// Types small letters, digits and spaces.
    void type(const std::string& text);

    /// The item that shows, or is called, exactly this, is visible and lies in the window; null when there is none.
    /// Text in front comes first.
    [[nodiscard]] QQuickItem* find(const QString& text) const;
    /// Waits for it.
    QQuickItem& get(const QString& text);

    /// Waits for the button of that label.
    QQuickItem& button(const QString& label);

    [[nodiscard]] bool shows(const QString& text) const { return find(text) != nullptr; }

    /// The entries of the open menus, by their place and each by its text; lines as "-", headings in brackets.
    [[nodiscard]] QStringList menuEntries() const;
    [[nodiscard]] QQuickItem* itemNamed(const QString& objectName) const;
    /// The label of the control with the focus.
    [[nodiscard]] QString focused() const;

    [[nodiscard]] QVariant property(const char* name) const { return window->property(name); }

    static QRectF frame(const QQuickItem& item);
    /// Keeps a picture of the window as it is to be seen now, for a person to look at when the environment names a
    /// folder.
    void keepPicture(const QString& name);

    EventMarker marker{Screen::current().other()};
    platform::qt::QtEventLoop loop;
    std::shared_ptr<platform::x11::X11Server> x11;
    fakes::RecordingPlatform platform;
    std::unique_ptr<KeyEventMonitor> monitor;
    std::shared_ptr<AutoClickerStore> store;
    std::unique_ptr<DonationManager> donations;
    std::unique_ptr<ConfigModel> configModel;
    std::unique_ptr<RunModel> runModel;
    std::unique_ptr<PresetsModel> presetsModel;
    std::unique_ptr<DonationModel> donationModel;
    HotkeyConsentModel hotkeyConsent{platform.preferences};
    platform::bus::SessionBus bus{platform::bus::findSessionBus()};
    platform::portal::Portal desktopPortal{bus};
    platform::portal::PortalSettings settings{desktopPortal};
    platform::portal::PortalFileChooser portalChooser{desktopPortal};
    platform::qt::WidgetFileChooser widgetChooser;
    platform::FallbackFileChooser chooser{portalChooser, widgetChooser};
    std::unique_ptr<ConfigFiles> files;
    std::unique_ptr<DesktopAppearance> appearance;
    /// What the desktop does with windows.
    Published<platform::WindowAbilities> abilities{platform::WindowAbilities{}};
    std::unique_ptr<DesktopWindowButtons> windowButtons;
    int quits = 0;
    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<QObject> root;
    QQuickWindow* window = nullptr;

private:
    [[nodiscard]] QList<QQuickItem*> visibleItems() const;
};

} // namespace velloran::tests
