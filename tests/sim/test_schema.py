"""What the simulator takes as a scenario, and what its JSON schema says of it, agree.

usage: test_schema.py SIMULATOR
"""

import copy
import json
import subprocess
import sys
import tempfile
import unittest

import jsonschema

SIMULATOR = sys.argv.pop(1)
BAD_SCENARIO = 5


def printed(option):
    return json.loads(subprocess.check_output([SIMULATOR, option]))


SCHEMA = printed("--print-schema")
DEFAULT = printed("--print-scenario")

CLIP = {"name": "a", "length": 100}
VCLIP = {"name": "v", "length": 100}


def with_clip(**fields):
    return {"clips": [CLIP | fields]}


REFUSED = {
    "an unknown member": {"clip": []},
    "an unknown field of a clip": with_clip(colour="red"),
    "a clip without a length": {"clips": [{"name": "a"}]},
    "a length of 0": with_clip(length=0),
    "a length that is a text": with_clip(length="100"),
    "a number that is too large": with_clip(loop_in=1 << 32),
    "an unknown word": with_clip(loop="sometimes"),
    "a flag that is a number": with_clip(read_only=1),
    "an unknown track": with_clip(tracks=["smell"]),
    "an unknown field of a track": with_clip(tracks=[{"type": "video", "gain": 1}]),
    "metadata that is no text": with_clip(metadata={"key": 1}),
    "an unknown field of a segment": {
        "clips": [CLIP],
        "vclips": [VCLIP | {"tracks": [{"segments": [{"clip": "a", "length": 1, "from": 0}]}]}],
    },
    "a playlist without elements": {"playlists": [{"name": "p"}]},
    "an element that names a clip and a virtual clip": {
        "clips": [CLIP],
        "vclips": [VCLIP],
        "playlists": [{"name": "p", "elements": [{"clip": "a", "vclip": "v"}]}],
    },
    "an unknown channel": {"clips": [CLIP], "channels": [{"channel": "M", "clip": "a"}]},
    "a channel that holds nothing": {"channels": [{"channel": "A"}]},
    "a disk of texts": {"disk": {"total": "much"}},
    "databases that are a list": {"metadata": []},
}

TAKEN = {
    "nothing": {},
    "the built-in one": DEFAULT,
    "the least clip": with_clip(),
    "a signed field number": with_clip(frame0_timecode={"field": -1}),
    "a playlist on a channel": {
        "clips": [CLIP],
        "playlists": [{"name": "p", "elements": [{"clip": "a", "at_end": "loop"}]}],
        "channels": [{"channel": "A", "playlist": "p", "play": True, "speed": -0.5}],
    },
}


def is_taken(scenario):
    """Whether the simulator starts with it; on an address of another machine it then cannot listen."""
    with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
        json.dump(scenario, file)
        file.flush()
        result = subprocess.run(
            [SIMULATOR, "--scenario", file.name, "--address", "192.0.2.1"],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            timeout=60,
        )
    return result.returncode != BAD_SCENARIO


class Schema(unittest.TestCase):
    validator = jsonschema.Draft202012Validator(SCHEMA)

    def test_it_is_a_schema(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_both_refuse(self):
        for what, scenario in REFUSED.items():
            with self.subTest(what):
                self.assertFalse(self.validator.is_valid(scenario))
                self.assertFalse(is_taken(scenario))

    def test_both_take(self):
        for what, scenario in TAKEN.items():
            with self.subTest(what):
                self.validator.validate(scenario)
                self.assertTrue(is_taken(scenario))

    def test_each_field_of_a_clip_that_the_built_in_scenario_uses_is_known(self):
        properties = SCHEMA["properties"]["clips"]["items"]["properties"]
        used = {key for clip in DEFAULT["clips"] for key in clip}
        self.assertLessEqual(used, set(properties))
        without = copy.deepcopy(SCHEMA)
        del without["properties"]["clips"]["items"]["properties"]["title"]
        self.assertFalse(jsonschema.Draft202012Validator(without).is_valid(DEFAULT))


if __name__ == "__main__":
    unittest.main()
