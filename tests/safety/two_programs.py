"""Two programs that know nothing of each other, on the same settings."""

from harness import preferences
from harness.waiting import pause, until

from .stored import SAVE_DELAY, STORED, settings_in
from .surrounded import Surrounded

TURNS = 3


def two_programs_at_once(chance):
    """Without a bus the second does not hear of the first, and both have the same settings. The first deletes presets and the second changes
    the configuration, by turns and in the same moment: all of it is saved, and nothing else is lost."""
    with Surrounded() as place:
        folder = place.make_profile()
        path = settings_in(folder)
        presets = [{"id": f"00000000-0000-4000-8000-00000000000{number}", "name": f"Kept {number}", "config": preferences.config(),
                    "createdAt": 8e8} for number in range(TURNS + 1)]
        preferences.write(path, {**preferences.quiet_donation(), "velloran.config": preferences.as_bytes(STORED),
                                 "velloran.presets": preferences.as_bytes(presets)})
        others = {key: value for key, value in preferences.read(path).items() if key.startswith("donation.")}
        first = place.start(folder=folder)
        first.wait_for_window()
        first.place(20, 20, 920, 736)
        step = first.find("push button", "Increase Click Interval").centre
        alone = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nowhere/bus", "XDG_RUNTIME_DIR": None}
        second = place.start(folder=folder, environment=alone, is_waited_for=False)
        windows = until(lambda: len(found := place.desktop.windows_of("velloran")) == 2 and found, "there are no two windows")
        window = next(window for window in windows if window != first.window_id)
        # Assistive tools need a bus. Of the same size it shows the same at the same places.
        place.desktop.run_tool("xdotool", "windowsize", window, "920", "736", "windowmove", window, "20", "340")
        place.start_run()
        place.stop_run()
        interval = STORED["clickIntervalSeconds"]

        def saved():
            stored = preferences.read(path)
            config = preferences.stored_json(stored["velloran.config"])
            config["clickIntervalSeconds"] = round(config["clickIntervalSeconds"], 6)
            return config, preferences.stored_json(stored["velloran.presets"])

        def expect_saved():
            expected = ({**STORED, "clickIntervalSeconds": interval}, presets)
            until(lambda: saved() == expected, lambda: f"{expected} are not saved, but {saved()}")
            assert {key: value for key, value in preferences.read(path).items() if not key.startswith("velloran.")} == others

        for turn in range(TURNS):
            item = find_deletion(first, presets.pop(0)["name"])
            place.observer.click(step[0], step[1] + 320)
            interval = round(interval + 0.05, 6)
            # Around the moment in which the other one saves.
            pause(chance.uniform(SAVE_DELAY - 0.02, SAVE_DELAY + 0.02) if turn % 2 == 0 else 2 * SAVE_DELAY)
            item.do()
            first.find("push button", "Done").do()
            expect_saved()
        for program in (second, first):
            program.process.terminate()
            assert program.wait_for_end() == 0, program.log
        expect_saved()
        place.expect_works(place.start(folder=folder))


def find_deletion(program, name):
    """Opens what deletes the preset, so that it need only be chosen."""
    program.find("push button", "Menu").do()
    program.find("menu item", "Presets and Options…").do()
    program.find("push button", "Presets").do()
    program.find("menu item", "Delete Preset").do()
    return program.find("menu item", f'Delete "{name}"')
