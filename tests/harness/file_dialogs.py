"""The toolkit's own file dialogs, as somebody uses them who sits there."""

from .waiting import until


def open_dialog(program, name):
    program.click_on("push button", name)
    return wait_until_open(program, name)


def wait_until_open(program, name):
    dialog = until(lambda: program.frames.get(name), lambda: f"the dialog {name} does not open; there is {program.frames}")
    until(lambda: "active" in dialog.states, "the dialog does not become active")
    return dialog


def name_field(dialog):
    return until(lambda: next(iter(dialog.find_all("text")), None), "the dialog has no field for the name")


def wait_until_closed(program):
    until(lambda: len(program.frames) == 1, lambda: f"still open: {program.frames}")
    until(lambda: "active" in program.window.states, "the window does not become active again")


def choose_file(program, name, path):
    dialog = open_dialog(program, name)
    field = name_field(dialog)
    program.observer.press("a", "control")
    program.observer.type(path)
    until(lambda: field.text == path, lambda: field.text)
    program.observer.press("Return")
    wait_until_closed(program)
