"""Another client of the same X server: it sees clicks and plays the user."""

import contextlib
import itertools
import json
import os
import subprocess
import threading

from . import keys, processes
from .waiting import LONGEST_WAIT, until

PROGRAM = os.environ["VELLORAN_OBSERVER"]


class Observer:
    """By default it opens a window beside the program's and watches the buttons of the whole server."""

    def __init__(self, environment, window=(1310, 40, 260, 200), *options):
        arguments = [PROGRAM, "--title", "Another program", *options]
        if window:
            arguments += ["--window", ",".join(str(number) for number in window)]
        self._process = processes.start(arguments, environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, text=True, bufsize=1)
        self._lines = []
        self._answers = []
        self._is_gone = False
        self._changed = threading.Condition()
        self._asking = threading.Lock()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        until(lambda: "ready" in self.lines(), "the observer did not start")

    def _read(self):
        for line in self._process.stdout:
            line = line.rstrip("\n")
            with self._changed:
                (self._answers if line.split(" ", 1)[0] in ("ok", "error", "error:", "report") else self._lines).append(line)
                self._changed.notify_all()
        with self._changed:
            self._is_gone = True
            self._changed.notify_all()

    def close(self):
        self._process.stdin.close()
        try:
            self._process.wait(5)
        except subprocess.TimeoutExpired:
            processes.end(self._process)
        self._reader.join()
        self._process.stdout.close()

    def lines(self):
        """Everything seen so far, but not the answers."""
        with self._changed:
            return list(self._lines)

    def ask(self, command):
        """Has a command carried out and returns what is answered behind "ok"; the server has done it by then."""
        answer = self.try_to(command)
        if answer.startswith("error"):
            raise AssertionError(f"{command}: {answer}")
        return answer.split(" ", 1)[1] if " " in answer else ""

    def try_to(self, command):
        """The same, but an error is an answer as well."""
        with self._asking, self._changed:
            before = len(self._answers)
            self._process.stdin.write(command + "\n")
            self._changed.wait_for(lambda: self._is_gone or len(self._answers) > before, LONGEST_WAIT)
            if len(self._answers) == before:
                raise AssertionError(f"the observer does not answer: {command}")
            return self._answers[before]

    def press(self, name, *modifiers):
        """Presses and releases a key, by name or by its character, while the modifiers are held."""
        self.ask(" ".join(["key tap", str(keys.code(name)), *modifiers]))

    def type(self, text):
        for code, modifiers in keys.strokes(text):
            self.ask(" ".join(["key tap", str(code), *modifiers]))

    def move(self, x, y):
        self.ask(f"move {round(x)} {round(y)}")

    @contextlib.contextmanager
    def moving(self, x, y, steps=range(40)):
        """Keeps the pointer moving around there: to one after the other of these places to the right of it."""
        over = threading.Event()
        places = itertools.cycle(steps)

        def move_on():
            while not over.wait(0.02):
                self.move(x + next(places), y)

        mover = threading.Thread(target=move_on)
        self.move(x, y)
        mover.start()
        try:
            yield
        finally:
            over.set()
            mover.join()

    def click(self, x, y, button=1):
        self.move(x, y)
        self.ask(f"button click {button}")

    def position(self):
        return tuple(int(number) for number in self.ask("position").split())

    def buttons_down(self):
        return int(self.ask("buttons"))

    def report(self):
        return json.loads(self.ask("report"))

    def forget(self):
        self.ask("reset")

    def has_hotkey_free(self, name, *modifiers):
        """Whether nobody holds that combination."""
        words = " ".join([str(keys.code(name)), *modifiers])
        if self.try_to("grab " + words).startswith("error"):
            return False
        self.ask("ungrab " + words)
        return True
