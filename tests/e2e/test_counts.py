"""Counts that no run would take: they are shown, kept and edited to their last digit."""

from harness.case import DesktopCase
from harness.waiting import until

LARGEST, SMALLEST = 2 ** 63 - 1, -2 ** 63
# The first whole number that a real one cannot hold.
UNEVEN = 2 ** 53 + 1


class ExtremeCounts(DesktopCase):
    def start_with_count(self, count, **config):
        program = self.start_with(maxClicks=count, **config)
        field = program.find("text", "Stop after")
        self.assertEqual(field.text, str(count))
        return program, field

    def retype(self, program, field, text):
        program.click(field)
        self.observer.press("a", "control")
        self.observer.type(text)
        program.find("push button", "Update")
        self.observer.press("Return")

    def test_counts_of_a_settings_file_are_shown_and_kept(self):
        for count in (LARGEST, SMALLEST, UNEVEN):
            program, field = self.start_with_count(count)
            program.wait_for_text(f"Stop After: {count} clicks")
            self.assertFalse(program.shows("push button", "Update"))
            program.find("push button", "Increase Click Interval").do()
            program.wait_for_stored(clickIntervalSeconds=7.05, maxClicks=count)
            self.assertEqual(field.text, str(count))
            # No run takes it.
            program.click_on("push button", "Start")
            program.settle()
            self.assertEqual(program.headline, "Ready")
            self.assertEqual((program.end(), program.log), (0, ""))

    def test_without_counting_a_count_only_rests(self):
        program, field = self.start_with_count(LARGEST, stopMode="manual", clickIntervalSeconds=0.05)
        program.click_on("push button", "Start")
        program.wait_for_headline("Running")
        until(lambda: program.message not in ("0 clicks completed", "1 click completed"), lambda: program.message)
        program.click_on("push button", "Stop")
        program.wait_for_headline("Ready")
        self.assertEqual(field.text, str(LARGEST))
        program.click(program.find(None, "Stop After"))
        program.wait_for_stored(stopMode="after_clicks", maxClicks=LARGEST)

    def test_they_are_edited(self):
        program, field = self.start_with_count(LARGEST)
        self.retype(program, field, "123")
        program.wait_for_stored(maxClicks=123)
        program.wait_for_text("Stop After: 123 clicks")
        # What is typed may be as long; it is stored as the nearest bound.
        self.retype(program, field, str(LARGEST))
        program.wait_for_stored(maxClicks=10_000_000)
        self.retype(program, field, str(SMALLEST))
        program.wait_for_stored(maxClicks=1)
        # That is no whole number of 64 bits any more.
        self.retype(program, field, str(LARGEST + 1))
        until(lambda: field.text == "1", lambda: field.text)

    def test_they_are_stepped_to_the_nearest_bound(self):
        for count, step, bound in ((LARGEST, "Increase", 10_000_000), (SMALLEST, "Decrease", 1), (UNEVEN, "Decrease", 10_000_000)):
            program, field = self.start_with_count(count)
            program.click_on("push button", f"{step} Stop after")
            program.wait_for_stored(maxClicks=bound)
            self.assertEqual(field.text, str(bound))
            self.assertEqual(program.end(), 0)
