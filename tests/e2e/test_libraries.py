"""What only some users ever need is not in everybody's memory."""

from harness import processes
from harness.case import DesktopCase
from harness.waiting import until

SOUND_LIBRARY = "libpulse.so"


class Libraries(DesktopCase):
    def has_sound_library(self, program):
        return any(name.startswith(SOUND_LIBRARY) for name in processes.mapped_files(program.pid))

    def test_the_sound_library_comes_when_the_tick_is_switched_on(self):
        program = self.start_with(playClickSound=False)
        program.give_focus()
        self.observer.press(",", "control")
        program.find("dialog", "Presets and Options")
        self.assertFalse(self.has_sound_library(program))
        program.click_on("check box", "Play click sound")
        until(lambda: self.has_sound_library(program), "the sound library was not loaded")

    def test_the_sound_library_is_there_from_the_start_where_the_tick_is_on(self):
        program = self.start_with(playClickSound=True)
        until(lambda: self.has_sound_library(program), "the sound library was not loaded")

    def test_no_library_is_loaded_for_pictures_that_the_program_has_none_of(self):
        program = self.start_with()
        foreign = {name for name in processes.mapped_files(program.pid) if name.startswith(("libqgif", "libqico", "libqjpeg"))}
        self.assertEqual(foreign, set())
