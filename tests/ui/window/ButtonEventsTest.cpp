#include "harness/WindowTest.h"
#include "platform/windowmanager/buttonEvents.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <qguiapplication_platform.h>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>

namespace velloran::tests {

namespace {

/// Counts what the server tells the toolkit of the state of the keyboard.
class StateEvents final : public QAbstractNativeEventFilter {
public:
    StateEvents() {
        auto* const connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        constexpr char name[] = "XKEYBOARD";
        const auto request = xcb_query_extension(connection, sizeof name - 1, name);
        if (auto* const reply = xcb_query_extension_reply(connection, request, nullptr)) {
            firstEvent_ = reply->first_event;
            free(reply);
        }
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    StateEvents(const StateEvents&) = delete;
    StateEvents& operator=(const StateEvents&) = delete;

    ~StateEvents() override { QCoreApplication::instance()->removeNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) override {
        constexpr std::uint8_t stateNotify = 2;
        const auto* const event = static_cast<const xcb_generic_event_t*>(message);
        if (eventType == "xcb_generic_event_t" && (event->response_type & 0x7F) == firstEvent_ &&
            event->pad0 == stateNotify) {
            ++count;
        }
        return false;
    }

    int count = 0;

private:
    int firstEvent_ = -1;
};

class ButtonEventsTest : public WindowTest {
protected:
    /// Clicks where no window is.
    int eventsOfClicksElsewhere() {
        StateEvents events;
        Screen::current().user().movePointer({1023, 767});
        for (int i = 0; i < 3; ++i) {
            Screen::current().user().button(2, true);
            Screen::current().user().button(2, false);
        }
        settle();
        return events.count;
    }

    int eventsOfAModifier() {
        StateEvents events;
        tap(shiftKey);
        return events.count;
    }
};

} // namespace

TEST_F(ButtonEventsTest, ButtonsThatGoDownElsewhereWakeNobody) {
    open("ShellWindow {}");
    ASSERT_GT(eventsOfClicksElsewhere(), 0) << "nothing to be left out";
    platform::windowmanager::leaveOutButtonsOfOthers();
    EXPECT_EQ(eventsOfClicksElsewhere(), 0);
    EXPECT_GT(eventsOfAModifier(), 0);
}

} // namespace velloran::tests
