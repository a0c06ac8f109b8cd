"""Gives the tests the tools and a copy of the description that they may change."""

import shutil
import sys
import tempfile
from pathlib import Path

SOURCE_TREE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE_TREE / "tools" / "interface"))


class Tree:
    """A scratch source tree with the present description in it."""

    def __init__(self, test):
        self.root = Path(tempfile.mkdtemp())
        test.addCleanup(shutil.rmtree, self.root)
        shutil.copytree(SOURCE_TREE / "interface", self.root / "interface")

    def file(self, name):
        return self.root / name

    def add(self, name, text):
        self.file(f"interface/{name}").write_text(text, encoding="utf-8")

    def replace(self, name, old, new):
        path = self.file(name)
        text = path.read_text(encoding="utf-8")
        assert old in text, f"{name} has no {old!r}"
        path.write_text(text.replace(old, new, 1), encoding="utf-8")
