"""The size that the window starts with."""

from harness import preferences
from harness.case import DesktopCase
from harness.waiting import stays, until


class StartSize(DesktopCase):
    PLACE = None

    def banner_end(self, program):
        """The end of the last thing in the window."""
        banner = program.find("label", lambda text: text.startswith("Velloran will automatically click")).extents
        return banner[1] + banner[3] + 12

    def test_everything_is_in_sight_where_the_screen_has_the_room(self):
        program = self.start_with()
        _, _, width, height = program.window.extents
        self.assertEqual(width, 920)
        self.assertGreater(height, 1000)
        # The window manager may be about to place it.
        until(lambda: self.banner_end(program) + 20 == program.window.extents[1] + height,
              lambda: f"what it holds ends at {self.banner_end(program)}, the window is at {program.window.extents}")

    def test_elsewhere_the_window_is_as_tall_as_the_work_area(self):
        program = self.start_with_environment({"QT_SCALE_FACTOR": "1.25"})
        self.assertEqual(tuple(program.window.extents[2:]), (920, 880))

    def start_with_environment(self, environment):
        return self.start({"velloran.config": preferences.as_bytes(preferences.config())}, environment=environment)

    def test_what_grows_later_leaves_the_window_as_it_is(self):
        program = self.start_with(clickIntervalSeconds=1000.0)
        before = program.window.extents
        end = self.banner_end(program)
        program.find("push button", "Start").do()
        program.wait_for_text("Progress")
        until(lambda: self.banner_end(program) > end, "the cards do not grow")
        stays(lambda: program.window.extents == before, lambda: f"{before} became {program.window.extents}", 0.3)
