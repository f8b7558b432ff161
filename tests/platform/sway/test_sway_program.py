"""The whole program on sway, as another window sees it."""

import os
import signal
import sys
import time

from PIL import Image

from harness import picture
from harness.bus import Bus
from harness.compositor_case import HELD, LEFT, MIDDLE, RIGHT, S, CompositorCase
from harness.waiting import pause, stays, until


def median_and_most(seconds):
    ordered = sorted(1000 * number for number in seconds)
    return f"{ordered[len(ordered) // 2]:.1f} ms in the median, {ordered[-1]:.1f} ms at most"


class SwayClicks(CompositorCase):
    def test_three_buttons_are_exact(self):
        for name, button in (("left", LEFT), ("right", RIGHT), ("middle", MIDDLE)):
            with self.subTest(name):
                program = self.start_with(mouseButton=name, clickIntervalSeconds=0.02, maxClicks=50)
                self.press_hotkey()
                program.wait_for_headline("Completed")
                self.assertEqual(program.message, "Completed — reached 50 clicks")
                self.assert_clicks(self.witness.report(), 50, button)
                program.close()

    def test_a_thousand_at_ten_milliseconds_are_a_thousand(self):
        program = self.start_with(clickIntervalSeconds=0.01, maxClicks=1000)
        self.press_hotkey()
        program.wait_for_headline("Completed")
        seen = self.witness.timed_report()
        self.assert_clicks([event[:2] for event in seen], 1000)
        downs = [moment for kind, _, moment in seen if kind == "down"]
        off = sorted(1000 * abs(after - before - 0.01) for before, after in zip(downs, downs[1:]))
        print(f"asked for 1000 clicks, seen {len(downs)}; 10 ms between two, but for {off[len(off) // 2]:.2f} ms in the median and "
              f"{off[len(off) * 99 // 100]:.2f} ms in the worst of a hundred", file=sys.stderr)
        stays(lambda: not self.witness.report(), "clicks come after the last", 0.3)


class SwayKills(CompositorCase):
    def test_no_button_stays_down(self):
        # sway keeps what a killed program has bound; a reload lets go of it.
        self.assert_kills_leave_no_button_down(self.press_hotkey, lambda: self.desktop.command("reload"))


class SwayHotkey(CompositorCase):
    def test_it_starts_and_stops_while_another_window_has_the_focus_and_is_swallowed(self):
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press_hotkey()
        program.wait_for_headline("Running")
        keys = self.witness.keys()
        self.assertTrue(self.desktop.view("witness")["focused"])
        self.witness.tap(S, HELD)
        program.wait_for_headline("Ready")
        self.assertEqual(self.witness.keys(), keys)
        seen = self.witness.report()
        self.assert_clicks(seen, len(seen) // 2)
        self.assertGreater(len(seen), 0)
        self.assert_ended("clicks come after the stop")

    def test_the_first_click_follows_at_once_and_one_at_most_comes_behind_the_end(self):
        interval = 0.01
        program = self.start_with(clickIntervalSeconds=interval, stopMode="manual")
        self.press_hotkey()
        program.wait_for_headline("Running")
        self.witness.tap(S, HELD)
        program.wait_for_headline("Ready")
        self.witness.report()
        to_first, to_last, behind, after_end = [], [], [], []
        for _ in range(20):
            started = time.monotonic()
            self.witness.tap(S, HELD)
            self.witness.wait_for_releases(self.witness.releases() + 5)
            stopped = time.monotonic()
            self.witness.tap(S, HELD)
            program.wait_for_headline("Ready")
            ended = self.witness.releases()
            self.assert_ended("clicks come after the end", 3 * interval)
            after_end.append(self.witness.releases() - ended)
            seen = self.witness.timed_report()
            self.assert_clicks([event[:2] for event in seen], len(seen) // 2)
            downs = [moment for kind, _, moment in seen if kind == "down"]
            to_first.append(downs[0] - started)
            to_last.append(max(0, downs[-1] - stopped))
            behind.append(sum(moment > stopped for moment in downs))
        print(f"from the hotkey to the first click: {median_and_most(to_first)}; from the hotkey to the last one: "
              f"{median_and_most(to_last)}; clicks after the key that stops: {sorted(behind)[len(behind) // 2]}, at most {max(behind)}; "
              f"after the status says that it is over: at most {max(after_end)}", file=sys.stderr)

    def test_a_held_key_fires_once(self):
        self.desktop.command("input * repeat_delay 50")
        self.desktop.command("input * repeat_rate 50")
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press_hotkey()
        program.wait_for_headline("Running")
        self.witness.press(S, HELD)
        program.wait_for_headline("Ready")
        stays(lambda: program.headline == "Ready", "the repetition starts it", 0.7)
        self.witness.release(S, HELD)
        self.witness.tap(S, HELD)
        program.wait_for_headline("Running")

    def test_a_reload_is_outlived(self):
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press_hotkey()
        program.wait_for_headline("Running")
        self.desktop.command("reload")
        self.press_hotkey()
        program.wait_for_headline("Ready")

    def test_it_is_given_back_at_the_end(self):
        program = self.start_with()
        self.press_hotkey()
        self.assertEqual(program.end(), 0)
        before = self.witness.keys()
        self.witness.tap(S, HELD)
        self.assertEqual(self.witness.keys(), before + 1)


class SwayTakenHotkey(CompositorCase):
    CONFIGURATION = "set $both Control+Mod1\nbindsym $both+s nop the user's\n"

    def test_it_is_refused_with_the_log_line(self):
        program = self.start_with()
        until(lambda: "RegisterEventHotKey" in program.log, lambda: program.log)
        self.assertIn("HotkeyManager: RegisterEventHotKey failed with status -9878\n", program.log)
        self.witness.tap(S, HELD)
        stays(lambda: program.headline == "Ready", "it fires all the same", 0.3)


class SwayEnd(CompositorCase):
    def test_the_program_ends_with_it(self):
        program = self.start_with(clickIntervalSeconds=0.02, stopMode="manual")
        self.press_hotkey()
        program.wait_for_headline("Running")
        self.desktop.end_server()
        self.assertEqual(program.wait_for_end(), 1)
        self.assertIn("Velloran: the connection to the display was lost.\n", program.log)

    def test_a_held_compositor_is_waited_for(self):
        program = self.start_with(clickIntervalSeconds=0.02, maxClicks=100)
        self.press_hotkey()
        self.witness.wait_for_releases(10)
        self.desktop.server.send_signal(signal.SIGSTOP)
        self.addCleanup(self.desktop.server.send_signal, signal.SIGCONT)
        pause(0.5)
        self.desktop.server.send_signal(signal.SIGCONT)
        program.wait_for_headline("Completed")
        self.assert_clicks(self.witness.report(), 100)

    def test_two_clicks_at_most_come_of_a_run_that_was_stopped_while_it_was_held(self):
        """One that it has not read, and one that it may have read and not handed on when it was held."""
        bus = Bus(self.desktop)
        self.addCleanup(bus.close)
        self.addCleanup(self.desktop.server.send_signal, signal.SIGCONT)
        program = self.start_with(clickIntervalSeconds=0.01, stopMode="manual")
        counts = []
        for _ in range(5):
            bus.act("toggle")
            self.witness.wait_for_releases(self.witness.releases() + 10)
            # From here on the witness cannot be asked: it would wait for the compositor.
            self.desktop.server.send_signal(signal.SIGSTOP)
            pause(0.5)
            bus.act("toggle")
            program.wait_for_headline("Ready")
            going_on = time.monotonic()
            self.desktop.server.send_signal(signal.SIGCONT)
            seen = []

            def late():
                seen.extend(self.witness.timed_report())
                return sum(kind == "down" and moment > going_on for kind, _, moment in seen)
            stays(lambda: late() <= 2, lambda: f"{late()} clicks come after the stop", 0.3)
            counts.append(late())
            self.assert_clicks([event[:2] for event in seen], len(seen) // 2)
        print(f"clicks after a run that was stopped while sway was held: {counts}", file=sys.stderr)


class SwayWindow(CompositorCase):
    CONFIGURATION = 'default_border normal\nfor_window [title="^Velloran$"] floating enable\n'

    def assert_is_bare(self):
        """Nothing of the compositor's is around the floating window: neither a title nor a border. A tiled one has what its
        user configured."""
        view = self.desktop.view("Velloran")
        self.assertEqual((view["border"], view["deco_rect"]["height"]), ("csd", 0), view)

    def look(self, scale):
        self.desktop.command(f"output * scale {scale}")
        program = self.start_with()
        self.desktop.focus("Velloran")
        path = os.path.join(self.desktop.folder, "screen.png")
        view = self.desktop.view("Velloran")

        def is_drawn():
            self.desktop.picture(path)
            with Image.open(path) as screen:
                shown = screen.convert("RGB")
            place = view["rect"]
            middle = shown.crop(tuple(scale * number for number in (place["x"], place["y"], place["x"] + place["width"],
                                                                    place["y"] + place["height"])))
            return shown if len(middle.getcolors(1 << 24) or []) > 500 else None
        screen = until(is_drawn, "the window stays empty")
        picture.keep(screen, f"sway at {scale}")
        return program, view, screen

    def test_it_is_of_the_program_itself_at_scale_1_and_2(self):
        for scale in (1, 2):
            with self.subTest(scale):
                program, view, screen = self.look(scale)
                self.assertEqual(view["app_id"], "app.velloran.Velloran")
                self.assertEqual(view["shell"], "xdg_shell")
                self.assertEqual(screen.size, (1600, 1000))
                self.assert_is_bare()
                program.close()
