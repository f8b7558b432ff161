"""Every text of the window, letter for letter, in each of its states. Nothing else is shown."""

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import until

FRAME = {"Velloran", "Menu", "Minimize", "Maximize", "Close"}
FIELDS = {step + " " + name for step in ("Increase", "Decrease")
          for name in ("Click Interval", "Stop after", "Start clicking after", "Click only if mouse is stationary")}
CARDS = {
    "Click Configuration", "Mouse Button", "Click Interval", "seconds", "Time between each click",
    "Stop Conditions", "Run Until Stopped", "Stop After", "Run until manually stopped", "Stop after", "clicks",
    "Start / Stop Options", "Start / Stop Hotkey", "Choose a preset hotkey", "Start clicking after",
    "Wait before auto clicking starts", "Click only if mouse is stationary", "for at least",
    "Only click when the cursor has not moved for the chosen duration", "Status", "Start", "Stop", "Summary", "Hotkey", "Delay",
    "Stationary Check",
    "Velloran will automatically click based on your settings. Use responsibly and respect other applications.",
}
COUNTED = {"Total number of clicks before automatically stopping."}
UNTIL_STOPPED = {"Clicking continues until you press Stop or the hotkey."}
NO_HOTKEY = {"Click to record shortcut", "Press keys to record shortcut"}
HOTKEY = {"Clear hotkey", "Press your hotkey anywhere to start/stop"}
PERMISSION = ("Accessibility permission is required for automated clicking. "
              "Please allow Velloran in System Settings → Privacy & Security → Accessibility.")
LIMITS = {"Input cannot be posted: the desktop's portal has not answered.",
          "Start / Stop Hotkey. The global hotkey does not work here. "
          "A key of the desktop's own can be bound to this command: gapplication action app.velloran.Velloran toggle",
          "The pointer's position is not known here, so the still-mouse rule never lets a click through."}


def summary(button="Left Click", interval="7.00 seconds", stop="100 clicks", hotkey="Not set", delay="0 seconds", still="Off"):
    values = {"Mouse Button": button, "Click Interval": interval, "Stop After": stop, "Hotkey": hotkey, "Delay": delay,
              "Stationary Check": still}
    return set(values.values()) | {f"{title}: {value}" for title, value in values.items()}


class Texts(DesktopCase):
    def assert_texts(self, program, *groups):
        wanted = set().union(FRAME, FIELDS, CARDS, *groups)
        until(lambda: set(program.texts()) == wanted,
              lambda: f"missing: {wanted - set(program.texts())}, surplus: {set(program.texts()) - wanted}", 10)

    def assert_in_sheet(self, program, title, wanted):
        def found():
            sheet = program.find("dialog", title)
            return {text for item in sheet.walk() for text in (item.name, item.description) if text}
        until(lambda: found() == wanted | {title}, lambda: f"missing: {wanted - found()}, surplus: {found() - wanted}", 10)

    def open_options(self, program):
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")

    def test_at_rest(self):
        program = self.start_with()
        self.assert_texts(program, COUNTED, NO_HOTKEY, summary(), {"Ready", "Clicking is stopped"})

    def test_with_everything_set(self):
        program = self.start_with(mouseButton="middle", clickIntervalSeconds=0.126, stopMode="manual", startDelaySeconds=2.25,
                                  requireStationaryMouse=True, stationarySeconds=0.5, hotkey=preferences.CONTROL_OPTION_S)
        self.assert_texts(program, UNTIL_STOPPED, HOTKEY, summary("Middle Click", "0.13 seconds", "Run until stopped", "⌃⌥S",
                                                                  "2.25 seconds", "0.5 seconds"), {"Ready", "Clicking is stopped"})

    def test_start_delay(self):
        program = self.start_with(startDelaySeconds=3000.0)
        program.find("push button", "Start").do()
        program.wait_for_headline("Delayed Start")
        self.assertRegex(program.message, r"^Starting in (3000|29\d\d) seconds$")

    def test_a_counted_run(self):
        program = self.start_with(clickIntervalSeconds=1000.0)
        self.observer.move(1450, 150)
        program.find("push button", "Start").do()
        self.assert_texts(program, COUNTED, NO_HOTKEY, summary(interval="1000.00 seconds"),
                          {"Running", "1 / 100 clicks completed", "Progress", "1 %"})

    def test_a_run_until_stopped(self):
        program = self.start_with(clickIntervalSeconds=1000.0, stopMode="manual")
        self.observer.move(1450, 150)
        program.find("push button", "Start").do()
        self.assert_texts(program, UNTIL_STOPPED, NO_HOTKEY, summary(interval="1000.00 seconds", stop="Run until stopped"),
                          {"Running", "1 click completed"})

    def test_a_completed_run(self):
        program = self.start_with(clickIntervalSeconds=0.02, maxClicks=2)
        self.observer.move(1450, 150)
        program.find("push button", "Start").do()
        self.assert_texts(program, COUNTED, NO_HOTKEY, summary(interval="0.02 seconds", stop="2 clicks"),
                          {"Completed", "Completed — reached 2 clicks"})

    def test_a_missing_permission(self):
        program = self.start({"velloran.config": preferences.as_bytes(preferences.config())},
                             environment={"XDG_SESSION_TYPE": "wayland", "QT_QPA_PLATFORM": "xcb"})
        self.assert_texts(program, COUNTED, NO_HOTKEY, summary(), LIMITS,
                          {"Ready", "Clicking is stopped", "Grant Accessibility Permission"})
        program.find("push button", "Start").do()
        self.assert_texts(program, COUNTED, NO_HOTKEY, summary(), LIMITS,
                          {"Error", PERMISSION, "Grant Accessibility Permission"})

    def test_recording(self):
        program = self.start_with(hotkey=preferences.CONTROL_OPTION_S)
        program.click_on("push button", "⌃⌥S")
        self.observer.move(1450, 150)
        self.assert_texts(program, COUNTED, HOTKEY, summary(hotkey="⌃⌥S"),
                          {"Press keys to record…", "Ready", "Clicking is stopped"})

    def test_a_pending_and_a_stored_number(self):
        program = self.start_with()
        program.click_on("text", "Click Interval")
        self.observer.type("1")
        self.observer.move(1450, 150)
        self.assert_texts(program, COUNTED, NO_HOTKEY, summary(), {"Ready", "Clicking is stopped", "Update"})
        self.observer.press("a", "control")
        self.observer.type("5")
        self.observer.press("Return")
        program.wait_for_text("Updated")

    def test_the_options(self):
        program = self.start_with()
        self.open_options(program)
        self.assert_in_sheet(program, "Presets and Options", {"Additional Options", "Play click sound", "Minimize to menu bar",
                                                              "Presets", "Import", "Export", "Reset", "Done"})

    def test_naming_a_preset(self):
        program = self.start_with()
        self.open_options(program)
        program.click_on("push button", "Presets")
        program.click_on("menu item", "Save current as preset…")
        self.assert_in_sheet(program, "Save preset", {"Capture your current settings as a reusable preset.", "Preset name", "Cancel",
                                                      "Save"})

    def test_the_donation_prompt(self):
        self.desktop.add_tool("xdg-open", "#!/bin/sh\n")
        program = self.start({"donation.nextReminderAt": preferences.date(preferences.now() - 1.0)})
        always = {"This app is built and maintained by one developer. If it's saving you time, a small donation keeps it going."}
        self.assert_in_sheet(program, "Support Velloran", always | {"Donate via Stripe", "I've already donated", "Maybe later"})
        program.click_on("push button", "Donate via Stripe")
        self.assert_in_sheet(program, "Support Velloran", always | {
            "Stripe opened in your browser. Once your donation is complete, click below.", "I completed my donation",
            "Open link again", "Cancel"})
