"""What goes over the wire while a client uses all that the simulator can do."""

import ctypes
import re
import subprocess
import sys
import threading
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "examples" / "python"))

import play  # the wrapper that users are shown

ADDRESS = "127.83.0.1"
ADDRESS_NUMBER = 0x7F530001
A, B, C, D = range(4)
BOTH = 1 << A | 1 << B

# Beside the calls that bring data: name without `velto_`, arguments behind the handle.
COMMANDS = [
    ("cmd_loadclip1", A, "news_open"), ("cmd_loadclip7", B, "weather", 1, 0, 500, 1000),
    ("cmd_play2", A, 1.5), ("cmd_stop2", A, 1), ("goto1", A, 250), ("jog1", A, 25),
    ("set_out1", A, 1000), ("clear_out", A), ("set_repeat", A, 1), ("angle1", A, 0),
    ("edit1", A, 1), ("edit_all_off", A), ("ee1", A, 1, 1), ("gang_edit1", BOTH, 1),
    ("gang_edit_all_off", BOTH), ("gang_ee1", BOTH, 1, 0), ("gang_goto1", BOTH, 0),
    ("cmd_gang_play1", BOTH), ("gang_jog1", BOTH, 5), ("cmd_gang_stop1", BOTH),
    ("precue1", A, "weather", 0), ("precue_activate1", A), ("precue_clear1", A),
    ("precue1", A, "news_open", 0), ("precue1", B, "news_open", 0),
    ("gang_precue_activate1", BOTH), ("go_live1", C), ("take1", A, 0, 0),
    ("cmd_loadlist1", D, "idents"), ("cmd_playlist_play_now", D, 0),
    ("cmd_playlist_play_next", D, 1), ("unload_channel", D),
    ("track_clip_changes",), ("track_directory_changes",), ("create_directory", "capture"),
    ("create_clip2", "capture/take", 7, 1500), ("create_child_clip1", "capture/angle", "capture/take"),
    ("rename_clip", "capture/angle", "capture/second"), ("delete_clip", "capture/second"),
    ("delete_clip", "capture/take"), ("delete_clip", "no_such_clip"),
    ("vclip_create", "edit", 600), ("vclip_modification_start", "edit"),
    ("vclip_cfg_tracks", "edit", "news_open", 5),
    ("vclip_add_segment2", "edit", "news_open", 100, 5, 0, 300, 1.0),
    ("vclip_clear_segment", "edit", 4, 100, 100), ("vclip_ripple", "edit", 5, 200, 50),
    ("vclip_track_enable", "edit", 5), ("vclip_modification_end", "edit"), ("vclip_free", "edit"),
]  # fmt: skip


def converted(argument):
    if isinstance(argument, str):
        return play.units(argument)
    return ctypes.c_double(argument) if isinstance(argument, float) else argument


class Client:
    def __init__(self, library):
        self.library = ctypes.CDLL(str(library))
        self.handle = self.library.velto_connect(ADDRESS_NUMBER)
        self.library.velto_wait_until_connected(self.handle)

    def call(self, name, *arguments, handle=None):
        """Failures are captures too."""
        function = getattr(self.library, "velto_" + name)
        return function(self.handle if handle is None else handle, *map(converted, arguments))

    def ask_all(self):
        number, other, wide = ctypes.c_uint32(), ctypes.c_uint32(), ctypes.c_uint64()
        speed = ctypes.c_double()
        play.text_from(lambda buffer: self.call("server_name", buffer))
        self.call("video_standard", ctypes.byref(number))
        self.call("disk_usage1", ctypes.byref(wide), ctypes.byref(wide), ctypes.byref(number))
        for kind in ("status", "position", "clip_length"):
            self.call("channel_" + kind, A, ctypes.byref(number))
        self.call("channel_speed", A, ctypes.byref(speed))
        play.text_from(lambda buffer: self.call("channel_clip", A, buffer))
        self.call("clip_exists", "weather", ctypes.byref(other))
        for kind in ("clip", "directory", "playlist"):
            self.call(f"open_{kind}_list", ctypes.byref(other))
        self.call("open_clip_metadata", "sport/iso/goal_left", ctypes.byref(other))
        self.call("open_clip_metadata", "weather", ctypes.byref(other))
        self.call("set_clip_title", "Weather, late edition", handle=other)
        self.call("clip_set_meta", "editor", "night desk", handle=other)

    def share_keys(self):
        store = ctypes.c_uint32()
        self.call("open_kvstore", "rundown", "", 2, ctypes.byref(store))
        self.library.velto_kvstore_wait_scan(store, 10000)
        self.library.velto_kvstore_set(store, play.units("next"), play.units("weather"))
        self.library.velto_kvstore_flush(store, 10000)
        self.library.velto_kvstore_erase(store, play.units("next"))
        self.library.velto_kvstore_flush(store, 10000)
        self.library.velto_close_key_value_store(store)

    def watch_list(self):
        """The reports come; the getter fails all the same, after its 5 seconds."""
        self.call("playlist_count", D, ctypes.byref(ctypes.c_uint32()))


def use_all(library):
    client = Client(library)
    client.ask_all()
    watching = threading.Thread(target=client.watch_list)
    watching.start()
    for name, *arguments in COMMANDS:
        client.call(name, *arguments)
    client.share_keys()
    watching.join()


MESSAGE = re.compile(r"(?:->|<-) (<(cmd|reply|report)>.*)$")
NAME = re.compile(r"<(?:cmd|reply|report)>(?:\.\.)?(?:<xid>[^<]*</xid>)?(?:\.\.)?<(\w+)")


def first_of_each(trace):
    """(kind of message, its name) -> the first that went by, line by line."""
    captures = {}
    for line in trace.splitlines():
        if found := MESSAGE.search(line):
            content, kind = found.groups()
            name = NAME.match(content).group(1)
            captures.setdefault((kind, name), content.replace(">..<", ">\n<"))
    return captures


def capture(simulator, library):
    with subprocess.Popen(
        [simulator, "--address", ADDRESS, "--trace"],
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    ) as server:
        trace = []
        reader = threading.Thread(target=lambda: trace.append(server.stderr.read()))
        reader.start()
        server.stdout.readline()
        use_all(library)
        server.terminate()
        reader.join()
    return first_of_each(trace[0])
