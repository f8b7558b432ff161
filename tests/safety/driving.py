"""A user who is never idle: everything that the window offers, except for starting and stopping."""

from gi.repository import GLib

from harness.waiting import until

SAVE = "Save current as preset…"
BUILT_INS = ("Steady — 1 click/sec, 100 clicks", "Rapid — 0.10s, 500 clicks", "AFK — every 30s, manual stop")
STEPPED = ("Click Interval", "Stop after", "Start clicking after", "Click only if mouse is stationary")


class Driver:
    """Does what is asked through accessibility, so that the mouse stays where the clicks are seen. The functions are what the desktop
    has for it: `resize` takes width and height, `switch_layout` the name of a keyboard layout, and `type_text` a text; without that
    nothing is typed."""

    LAYOUTS = ("us", "de", "fr", "ru")

    def __init__(self, program, chance, resize, switch_layout, type_text=None):
        self._program = program
        self._chance = chance
        self._resize = resize
        self._switch_layout = switch_layout
        self._type = type_text
        self._known = {}
        self.tried = 0
        self.done = 0
        self._looks = [self.read_about, self.open_the_preset_hotkeys, self.open_the_menu, self.change_the_size, self.change_the_layout]
        self._deeds = [self.step, self.step, self.toggle_a_condition, self.choose_a_button, self.apply_a_built_in,
                       self.toggle_an_option, *self._looks]
        if type_text:
            self._deeds += [self.keep_a_preset, self.type_a_number]

    def do_everything_once(self):
        for deed in self._deeds:
            self._do(deed)

    def do_something(self):
        self._do(self._chance.choice(self._deeds))

    def look_around(self):
        """Something that leaves the settings as they are."""
        self._do(self._chance.choice(self._looks))

    def _do(self, deed):
        self.tried += 1
        deed()
        self.done += 1

    def _control(self, role, name):
        """What is on a card, and so is always there."""
        key = (role, name)
        if key not in self._known:
            self._known[key] = self._program.find(role, name)
        return self._known[key]

    def _find(self, role, name):
        """What has opened is looked for first: it comes behind the cards."""
        def look():
            for part in reversed(self._program.window.children):
                found = part.find_all(role, name)
                if found:
                    return found[0]
            return None
        return until(look, f"there is no {role} {name!r}")

    def _press(self, role, name):
        item = self._find(role, name)
        item.do()
        return item

    @staticmethod
    def _wait_until_gone(item):
        def is_gone():
            try:
                return item.extents[2] == 0 or "showing" not in item.states
            except GLib.Error:
                return True
        until(is_gone, "what was closed is still there")

    def step(self):
        direction = self._chance.choice(("Increase ", "Decrease "))
        self._control("push button", direction + self._chance.choice(STEPPED)).do()

    def toggle_a_condition(self):
        name = self._chance.choice(("Start clicking after", "Click only if mouse is stationary"))
        self._control("check box", name).do("toggle")

    def choose_a_button(self):
        name = self._chance.choice(("Left Click", "Right Click", "Middle Click"))
        current = until(lambda: next((item for item in self._program.shown("push button") if item.name.endswith(" Click")), None),
                        "no mouse button is chosen")
        current.do()
        self._wait_until_gone(self._press("menu item", name))

    def _open_menu(self, entry):
        self._control("push button", "Menu").do()
        self._press("menu item", entry)

    def open_the_menu(self):
        self._control("push button", "Menu").do()
        item = self._find("menu item", "Quit")
        # Pressed again, its button closes it.
        self._control("push button", "Menu").do()
        self._wait_until_gone(item)

    def _open_options(self):
        self._open_menu("Presets and Options…")
        return self._find("dialog", "Presets and Options")

    def _close_options(self, sheet):
        self._press("push button", "Done")
        self._wait_until_gone(sheet)

    def _open_presets(self):
        self._press("push button", "Presets")
        return self._find("menu item", SAVE)

    def apply(self, preset):
        """Applies a preset by its name."""
        sheet = self._open_options()
        self._open_presets()
        self._wait_until_gone(self._press("menu item", preset))
        self._close_options(sheet)

    def apply_a_built_in(self):
        self.apply(self._chance.choice(BUILT_INS))

    def keep_a_preset(self):
        """Saves one and deletes it."""
        before = len(self._program.stored_presets())
        sheet = self._open_options()
        self._open_presets().do()
        field = self._find("text", "Preset name")
        until(lambda: "focused" in field.states, "the name does not have the keyboard")
        # Whatever that is in the layout of the moment.
        self._type("kept")
        until(lambda: len(field.text) == 4, "the name is not typed")
        self._press("push button", "Save")
        self._wait_until_gone(field)
        until(lambda: len(self._program.stored_presets()) == before + 1, "the preset is not stored")
        name = self._program.stored_presets()[-1]["name"]
        self._open_presets()
        self._press("menu item", "Delete Preset")
        self._press("menu item", f'Delete "{name}"')
        until(lambda: len(self._program.stored_presets()) == before, "the preset is not deleted")
        self._close_options(sheet)

    def type_a_number(self):
        """Or what else these keys are in the layout of the moment. Leaving the field takes it over, or brings back what was there."""
        self._control("text", self._chance.choice(STEPPED)).focus()
        self._type(str(self._chance.randint(1, 60)) + "\t")

    def toggle_an_option(self):
        sheet = self._open_options()
        for _ in range(2):
            self._press("check box", "Play click sound")
        self._press("check box", "Minimize to menu bar")
        self._close_options(sheet)

    def read_about(self):
        self._open_menu("About Velloran")
        sheet = self._find("dialog", "About Velloran")
        self._program.find("push button", "Close", within=sheet).do()
        self._wait_until_gone(sheet)

    def open_the_preset_hotkeys(self):
        button = self._control("push button", "Choose a preset hotkey")
        button.do()
        item = self._find("menu item", None)
        button.do()
        self._wait_until_gone(item)

    def change_the_size(self):
        self._resize(self._chance.randint(700, 980), self._chance.randint(420, 960))

    def change_the_layout(self):
        self._switch_layout(self._chance.choice(self.LAYOUTS))
