"""Two clients of one simulator: what one changes, the other sees, whatever the names, and though the
link of either is cut now and then.

usage: test_two_clients.py SIMULATOR LIBRARY
"""

import random
import sys
import threading
import unittest

from simulator import FAILED, Client, Simulator, play

SIMULATOR, LIBRARY = sys.argv[1:3]
ADDRESS = "127.82.0.1"
SETS = ("added_clip", "changed_clip", "deleted_clip")
ROUNDS = 12
STEPS = 15
LETTERS = "abc XYZ019_-.&<>'\"\u00e9\u00df\u0416\u4e2d\U0001f3ac"


def random_name(chance, prefix):
    return prefix + "".join(chance.choice(LETTERS) for _ in range(chance.randint(1, 30))) + "."


class Picture:
    """What the change sets of a client hold, by the rules that they follow."""

    def __init__(self):
        self.sets = {name: set() for name in SETS}

    def _put(self, name, into):
        for other in self.sets.values():
            other.discard(name)
        self.sets[into].add(name)

    def created(self, name):
        self._put(name, "added_clip")

    def deleted(self, name):
        self._put(name, "deleted_clip")

    def changed(self, name):
        if name not in self.sets["added_clip"]:
            self._put(name, "changed_clip")


class Editor:
    """Changes clips of its own at random, and tells the pictures what everybody must see."""

    def __init__(self, client, prefix, seed):
        self.client = client
        self.prefix = prefix
        self.chance = random.Random(seed)
        self.clips = set()
        self.events = []

    def step(self):
        kind = self.chance.choice(("create", "create", "edit", "edit", "rename", "delete"))
        if kind == "create" or not self.clips:
            name = self.new_name()
            self.client.must("create_clip2", name, 7, self.chance.randint(1, 1000) * 2)
            self.clips.add(name)
            self.events.append(("created", name))
            return
        name = self.chance.choice(sorted(self.clips))
        if kind == "edit":
            self.client.must_edit(name, random_name(self.chance, ""))
            self.events.append(("changed", name))
        elif kind == "rename":
            other = self.new_name()
            self.client.must("rename_clip", name, other)
            self.clips.remove(name)
            self.clips.add(other)
            self.events += [("deleted", name), ("created", other)]
        else:
            self.client.must("delete_clip", name)
            self.clips.remove(name)
            self.events.append(("deleted", name))

    def new_name(self):
        while (name := random_name(self.chance, self.prefix)) in self.clips:
            pass
        return name

    def run(self):
        try:
            for _ in range(STEPS):
                self.step()
        except BaseException as failure:  # told to the thread that waits
            self.failure = failure

    failure = None


class EditingClient(Client):
    def must_edit(self, clip, title):
        record = play.ctypes.c_uint32()
        self.must("open_clip_metadata", clip, play.ctypes.byref(record))
        self.velto.set_clip_title(record, play.units(title))
        self.velto.close_clip_metadata(record)


class TwoClients(unittest.TestCase):
    def test_each_sees_what_the_other_changes(self):
        for seed in (1, 2):
            with self.subTest(seed=seed), Simulator(SIMULATOR, ADDRESS) as simulator:
                self.run_with(seed, simulator)

    def run_with(self, seed, simulator):
        chance = random.Random(seed)
        velto = play.Velto(LIBRARY)
        clients = [EditingClient(velto, ADDRESS) for _ in range(2)]
        pictures = [Picture() for _ in clients]
        editors = [
            Editor(client, prefix, seed * 10 + number)
            for number, (client, prefix) in enumerate(zip(clients, ("left/", "right/")))
        ]
        for client in clients:
            client.must("track_clip_changes")
        for _ in range(ROUNDS):
            self.edit_at_once(editors)
            for editor in editors:
                for picture in pictures:
                    for event, name in editor.events:
                        getattr(picture, event)(name)
                editor.events = []
            for client in clients:
                client.settle()
            self.take_some(chance, clients, pictures)
            if chance.random() < 0.5:
                self.cut(simulator, chance.choice(clients))
        self.take_some(random.Random(), clients, pictures, everything=True)
        for client in clients:
            simulator.control("drop now")  # so that closing does not wait for input
            velto.close(client.handle)

    @staticmethod
    def edit_at_once(editors):
        threads = [threading.Thread(target=editor.run) for editor in editors]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        for editor in editors:
            if editor.failure:
                raise editor.failure

    def take_some(self, chance, clients, pictures, everything=False):
        """Sets that are not taken go on into the next round."""
        for client, picture in zip(clients, pictures):
            for name in SETS:
                if everything or chance.random() < 0.6:
                    self.assertEqual(client.take_all(name), sorted(picture.sets[name]), name)
                    picture.sets[name].clear()

    def cut(self, simulator, client):
        """The link goes between a command and its reply, while nobody changes anything."""
        simulator.control("drop before-reply get_disk_usage")
        outputs = [play.ctypes.c_uint32() for _ in range(2)]
        result = client.call("disk_usage2", *map(play.ctypes.byref, outputs))
        self.assertEqual(result, FAILED)
        client.settle()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
