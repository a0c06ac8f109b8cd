#!/usr/bin/env python3
"""Plays a clip and follows it, then lists what the server holds, by ctypes alone.

usage: play.py [ADDRESS]; VELTO_LIBRARY names the library if the system does not find it.
"""

import ctypes
import ipaddress
import os
import sys

WINDOWS = sys.platform == "win32"
LIBRARY = os.environ.get("VELTO_LIBRARY", "VeltoAPI64.dll" if WINDOWS else "libVeltoAPI64.so.1")

OK, FAILED = 0, 2
CHANNEL_A = 0
NOTICE_POSITION = 3


class TextBuffer(ctypes.Structure):
    """Where a text is to be written; passed by value."""

    _fields_ = [("text", ctypes.POINTER(ctypes.c_uint16)), ("size", ctypes.c_uint32)]


class VeltoError(Exception):
    """A call has failed; the text tells why."""


def units(text):
    """A text as the library takes it: UTF-16 with a 0 unit at the end."""
    data = (text + "\0").encode("utf-16-le")
    return (ctypes.c_uint16 * (len(data) // 2)).from_buffer_copy(data)


def text_from(call, size=4096):
    """The text that `call` writes to a buffer."""
    buffer = (ctypes.c_uint16 * size)()
    call(TextBuffer(ctypes.cast(buffer, ctypes.POINTER(ctypes.c_uint16)), size))
    return bytes(buffer).decode("utf-16-le").split("\0")[0]


class Velto:
    """The functions by their names without `velto_`; a failure becomes an exception."""

    PLAIN = {"connect", "close", "connected", "wait_until_connected", "close_clip_list"}

    def __init__(self, path):
        self.library = ctypes.CDLL(path)

    def __getattr__(self, name):
        function = getattr(self.library, "velto_" + name)
        if name in self.PLAIN:
            return function

        def checked(*arguments):
            if function(*arguments) != OK:
                raise VeltoError(f"velto_{name}: " + text_from(self.library.velto_get_last_error))

        return checked


def names(velto, open_list, server):
    """The names of a list; the empty one ends it."""
    names_list = ctypes.c_uint32()
    open_list(server, ctypes.byref(names_list))
    while name := text_from(lambda buffer: velto.get_clip_name(names_list, buffer)):
        yield name
    velto.close_clip_list(names_list)


def main():
    velto = Velto(LIBRARY)
    address = sys.argv[1] if len(sys.argv) > 1 else "127.0.0.1"
    server = velto.connect(int(ipaddress.IPv4Address(address)))
    velto.wait_until_connected(server)
    print(text_from(lambda buffer: velto.server_name(server, buffer)))

    velto.cmd_loadclip1(server, CHANNEL_A, units("countdown"))
    velto.cmd_play2(server, CHANNEL_A, ctypes.c_double(2.0))
    position, kind, channel = ctypes.c_uint32(), ctypes.c_uint32(), ctypes.c_uint32()
    velto.channel_position(server, CHANNEL_A, ctypes.byref(position))
    for _ in range(5):
        velto.get_notification(server, 5000, ctypes.byref(kind), ctypes.byref(channel))
        if kind.value == NOTICE_POSITION and channel.value == CHANNEL_A:
            velto.channel_position(server, CHANNEL_A, ctypes.byref(position))
            print("A is at field", position.value)

    try:
        velto.cmd_loadclip1(server, CHANNEL_A, units("no_such_clip"))
    except VeltoError as error:
        print("refused:", error)

    print("clips:", *names(velto, velto.open_clip_list, server))
    velto.close(server)


if __name__ == "__main__":
    main()
