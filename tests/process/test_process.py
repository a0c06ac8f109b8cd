"""How a process ends, and how it loads and unloads the library, with connections open.

usage: test_process.py EXIT-GUEST LOAD-GUEST LIBRARY [EMULATOR...]
"""

import os
import random
import re
import socket
import subprocess
import sys
import threading
import unittest

EXIT_GUEST, LOAD_GUEST, LIBRARY, *EMULATOR = sys.argv[1:]
del sys.argv[1:]
PORT = 8913
EXIT_CODE = 42
HANG_SECONDS = 120  # only catches a hang
CONNECTIONS = 3  # of the guest that ends


class Server:
    """Answers with ok, but never says its name nor confirms a write. The video standard it tells when
    it has been asked for its name on all connections."""

    def __init__(self):
        self.listener = self._listen()
        self.address = int.from_bytes(socket.inet_aton(self.listener.getsockname()[0]), "big")
        self.all_asked = threading.Event()
        self.asked = 0
        self.links = []
        self.changed = threading.Condition()
        threading.Thread(target=self._accept, daemon=True).start()

    @staticmethod
    def _listen():
        while True:
            listener = socket.socket()
            listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            parts = [random.randint(1, 250) for _ in range(3)]
            try:
                listener.bind((".".join(map(str, [127, *parts])), PORT))
            except OSError:  # somebody else has it
                listener.close()
                continue
            listener.listen()
            return listener

    def _accept(self):
        while True:
            try:
                link, _ = self.listener.accept()
            except OSError:
                return
            with self.changed:
                self.links.append(link)
                self.changed.notify_all()
            threading.Thread(target=self._serve, args=(link,), daemon=True).start()

    def _serve(self, link):
        unread = b""
        try:
            while block := link.recv(4096):
                unread += block
                *commands, unread = unread.split(b"</cmd>")
                for command in commands:
                    self._answer(link, command)
        except OSError:
            pass  # the guest has gone

    def _answer(self, link, command):
        xid = re.search(rb"<xid>(\w*)</xid>", command).group(1)
        name = re.search(rb"</xid>\s*<(\w+)", command).group(1).decode()
        content = "<ok />"
        if name == "get_computer_name":
            with self.changed:
                self.asked += 1
                if self.asked == CONNECTIONS:
                    self.all_asked.set()
            return
        if name == "metadata_set":
            return
        if name == "get_video_standard":
            self.all_asked.wait(HANG_SECONDS)
            content = (
                "<video_standard><VideoStandard>1080_50i</VideoStandard><VideoRate>50</VideoRate>"
                "<VideoResolution>1080i</VideoResolution></video_standard>"
            )
        link.sendall(b"<reply><xid>" + xid + b"</xid>" + content.encode() + b"</reply>")

    def wait_for_links(self, count):
        with self.changed:
            if not self.changed.wait_for(lambda: len(self.links) >= count, HANG_SECONDS):
                raise RuntimeError(f"{len(self.links)} links have come, not {count}")

    def close(self):
        self.listener.close()
        for link in self.links:
            link.close()


class Process(unittest.TestCase):
    def setUp(self):
        self.server = Server()
        self.addCleanup(self.server.close)

    def start(self, *command):
#The search for leaks breaks down on threads in a library that was loaded late.
        environment = dict(os.environ)
        if command[0] == LOAD_GUEST:
            environment["ASAN_OPTIONS"] = environment.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
        guest = subprocess.Popen(
            [*EMULATOR, *command],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=environment,
            text=True,
        )
        self.addCleanup(guest.kill)
        return guest

    def finish(self, guest, given=None):
        output, errors = guest.communicate(given, timeout=HANG_SECONDS)
        self.assertEqual(guest.returncode, EXIT_CODE, output + errors)
        return output.splitlines()

    def expect_end(self, way, late_calls):
        guest = self.start(EXIT_GUEST, str(self.server.address), way)
        self.assertEqual(self.finish(guest), ["ready", *late_calls])

    LATE = ["atexit: good", "static destructor: good"]

    def test_return_from_main(self):
        self.expect_end("return", self.LATE)

    def test_exit(self):
        self.expect_end("exit", self.LATE)

    def test_exit_of_a_thread(self):
        self.expect_end("exit_of_a_thread", self.LATE)

    def test_quick_exit(self):
        self.expect_end("quick_exit", [])

    def test_end_without_a_word(self):
        self.expect_end("_Exit", [])

    def test_loaded_a_hundred_times_without_a_connection(self):
        self.finish(self.start(LOAD_GUEST, LIBRARY, "0", "idle"))

    def test_loaded_a_hundred_times_with_a_connection_that_is_closed(self):
        self.finish(self.start(LOAD_GUEST, LIBRARY, "0", "closed"))

    def test_unloaded_with_a_connection_that_is_open(self):
        guest = self.start(LOAD_GUEST, LIBRARY, str(self.server.address), "open")
        self.assertEqual(guest.stdout.readline().strip(), "unloaded")
        self.server.wait_for_links(1)
        self.server.links[0].sendall(b"<report><clip_created><ClipID>a</ClipID></clip_created></report>")
        self.server.links[0].shutdown(socket.SHUT_RDWR)
        self.server.wait_for_links(2)
        self.assertEqual(self.finish(guest, "go on\n"), ["loaded again"])

    def test_handlers_that_stand_before_and_behind_the_loading(self):
        guest = self.start(LOAD_GUEST, LIBRARY, str(self.server.address), "late")
        self.assertEqual(self.finish(guest), ["late call", "late call"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
