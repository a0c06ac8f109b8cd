"""A simulator of one's own, and the library by ctypes, for tests of both together."""

import ctypes
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "examples" / "python"))

import play  # the wrapper that users are shown

OK, FAILED = 0, 2
HANG_SECONDS = 60  # only catches a hang

units = play.units
text_from = play.text_from


class Simulator:
    """Runs for as long as the `with` block; `control` makes something go wrong."""

    def __init__(self, program, address, *options):
        self.address = address
        self.process = subprocess.Popen(
            [program, "--address", address, *options],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        first = self.process.stdout.readline()
        if not first.startswith("listening on"):
            raise RuntimeError(f"the simulator said '{first.strip()}'")

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self.process.terminate()
        self.process.communicate(timeout=HANG_SECONDS)

    def control(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline()
        if not answer.startswith("ok:"):
            raise RuntimeError(f"'{line}' was answered with '{answer.strip()}'")


class Client:
    """One connection; the functions by their names without `velto_` and the handle."""

    def __init__(self, velto, address):
        self.velto = velto
        self.handle = velto.connect(
            int.from_bytes(bytes(int(part) for part in address.split(".")), "big")
        )
        velto.wait_until_connected(self.handle)

    def call(self, name, *arguments):
        """Texts become units; gives the result."""
        converted = [units(a) if isinstance(a, str) else a for a in arguments]
        return getattr(self.velto.library, "velto_" + name)(self.handle, *converted)

    def must(self, name, *arguments):
        if self.call(name, *arguments) != OK:
            why = text_from(self.velto.library.velto_get_last_error)
            raise AssertionError(f"{name}{arguments}: {why}")

    def settle(self):
        """When it returns, the server has what was sent on this link at its start, and the library
        has all that the server sent before: two questions in a row, each answered on one link."""
        answers = 0
        end = time.monotonic() + HANG_SECONDS
        while answers < 2:
            if time.monotonic() > end:
                raise AssertionError("the link does not come back")
            exists = ctypes.c_uint32()
            result = self.call("clip_exists", "nothing", ctypes.byref(exists))
            answers = answers + 1 if result == OK else 0

    def take_all(self, change):
        """The names of one change set."""
        names = []
        while name := text_from(lambda buffer: self.must("track_change_" + change, buffer)):
            names.append(name)
        return names
