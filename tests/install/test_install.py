"""Installs and packs what has been built, and builds a stranger's programs against it.

usage: test_install.py BUILD-DIR C-COMPILER CXX-COMPILER [--toolchain FILE] [--run COMMAND...]
"""

import argparse
import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

STRANGER = Path(__file__).parent / "stranger"
EXPECTED = "2 Failing all outstanding commands"

options = None


def run(*command, **keywords):
    result = subprocess.run(
        [str(part) for part in command],
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        timeout=300,
        **keywords,
    )
    if result.returncode != 0:
        raise AssertionError(f"{command} ended with {result.returncode}:\n{result.stdout}")
    return result.stdout


class Installed(unittest.TestCase):
    """Tests in a scratch directory of their own."""

    def setUp(self):
        self.scratch = Path(tempfile.mkdtemp(prefix="velto-install-"))
        self.addCleanup(shutil.rmtree, self.scratch)

    def install(self):
        prefix = self.scratch / "prefix"
        run("cmake", "--install", options.build, "--prefix", prefix)
        return prefix

    def pack(self, generator):
        """The packages that CPack makes of this build."""
        directory = self.scratch / "packages"
        config = Path(options.build) / "CPackConfig.cmake"
        run("cpack", "-G", generator, "--config", config, "-B", directory, cwd=self.scratch)
        return sorted(path for path in directory.iterdir() if path.is_file())

    def expect_runs(self, program, libraries):
        """The program finds the library where it was installed to, and nowhere else."""
        environment = os.environ | {"LD_LIBRARY_PATH": str(libraries)}
        output = run(*options.run, program, env=environment)
        self.assertEqual(output.split("\n")[0].strip(), EXPECTED)

    def library_directory(self, prefix):
        return next(prefix.rglob("pkgconfig")).parent

    def build_by_hand(self, flags):
        program = self.scratch / ("by_hand" + options.suffix)
        source = STRANGER / "stranger.c"
        run(options.cc, "-std=c11", "-Wall", "-Werror", source, "-o", program, *flags)
        return program

    def pkg_config(self, libraries):
        environment = os.environ | {
            "PKG_CONFIG_LIBDIR": str(libraries / "pkgconfig"),
            "PKG_CONFIG_ALLOW_SYSTEM_CFLAGS": "1",
        }
        return shlex.split(run("pkg-config", "--cflags", "--libs", "VeltoAPI64", env=environment))


class EverySystem(Installed):
    def test_a_cmake_project_finds_the_package(self):
        prefix = self.install()
        tree = self.scratch / "tree"
        arguments = [f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_FIND_ROOT_PATH={prefix}"]
        if options.toolchain:
            arguments.append(f"-DCMAKE_TOOLCHAIN_FILE={options.toolchain}")
        else:
            arguments += [
                f"-DCMAKE_C_COMPILER={options.cc}",
                f"-DCMAKE_CXX_COMPILER={options.cxx}",
            ]
        run("cmake", "-G", "Ninja", "-S", STRANGER, "-B", tree, *arguments)
        run("cmake", "--build", tree)
        for library in prefix.rglob("*.dll"):
            shutil.copy(library, tree)
        for name in ("stranger_c", "stranger_cpp"):
            self.expect_runs(tree / (name + options.suffix), self.library_directory(prefix))

    def test_pkg_config_knows_it(self):
        prefix = self.install()
        libraries = self.library_directory(prefix)
        program = self.build_by_hand(self.pkg_config(libraries))
        for library in prefix.rglob("*.dll"):
            shutil.copy(library, self.scratch)
        self.expect_runs(program, libraries)


class DebianPackage(Installed):
    def test_three_packages_hold_what_their_names_say(self):
        packages = {path.name.split("_")[0]: path for path in self.pack("DEB")}
        self.assertEqual(set(packages), {"libveltoapi64-1", "libveltoapi64-dev", "veltosim"})
        depends = run("dpkg-deb", "--field", packages["libveltoapi64-dev"], "Depends")
        self.assertIn("libveltoapi64-1", depends)

        root = self.scratch / "root"
        for name in ("libveltoapi64-1", "libveltoapi64-dev"):
            run("dpkg-deb", "--extract", packages[name], root)
        libraries = self.library_directory(root / "usr")
        self.expect_runs(self.build_by_hand(self.pkg_config(libraries)), libraries)

        run("dpkg-deb", "--extract", packages["veltosim"], root)
        self.assertIn("Usage", run(root / "usr/bin/veltosim", "--help"))
        self.assertTrue((root / "usr/share/man/man1/veltosim.1").is_file())


class WindowsZip(Installed):
    def test_all_that_a_compiler_and_a_program_need_is_in_it(self):
        (package,) = self.pack("ZIP")
        with zipfile.ZipFile(package) as archive:
            archive.extractall(self.scratch)
        root = self.scratch / package.stem
        self.assertTrue((root / "bin/VeltoAPI64.dll").is_file())
        self.assertIn("velto_connect", (root / "lib/VeltoAPI64.def").read_text())
        program = self.build_by_hand([f"-I{root}/include", f"-L{root}/lib", "-lVeltoAPI64"])
        shutil.copy(root / "bin/VeltoAPI64.dll", self.scratch)
        self.expect_runs(program, root / "lib")


def main():
    global options
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=Path)
    parser.add_argument("cc")
    parser.add_argument("cxx")
    parser.add_argument("--toolchain", default="")
    parser.add_argument("--run", nargs="*", default=[])
    options = parser.parse_args()
    options.suffix = ".exe" if options.toolchain else ""
    wanted = [EverySystem, WindowsZip if options.toolchain else DebianPackage]
    suite = unittest.TestSuite(
        unittest.defaultTestLoader.loadTestsFromTestCase(case) for case in wanted
    )
    result = unittest.TextTestRunner().run(suite)
    sys.exit(not result.wasSuccessful())


main()
