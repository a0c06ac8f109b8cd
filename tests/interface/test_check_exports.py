"""The comparison of a built library with the list, on what nm and objdump print."""

import unittest

import support  # puts the tools on the path
import check_exports

NAMES = {"velto_close", "velto_connect"}

NM = """\
0000000000000000 A VELTOAPI64_1
0000000000001100 T velto_close@@VELTOAPI64_1
0000000000001200 T velto_connect@@VELTOAPI64_1
"""

OBJDUMP = """\
The Import Tables (interpreted .idata section contents)
 vma:            Hint    Time      Forward  DLL       First
	DLL Name: KERNEL32.dll
	vma:  Hint/Ord Member-Name Bound-To
	82a4	  285  DeleteCriticalSection
	DLL Name: WS2_32.dll

The Export Tables (interpreted .edata section contents)

Export Address Table -- Ordinal Base 1
	[   0] +base[   1] 1370 Export RVA
	[   1] +base[   2] 1380 Export RVA

[Ordinal/Name Pointer] Table
	[   0] velto_close
	[   1] velto_connect

The Function Table (interpreted .pdata section contents)
"""


class SharedLibraryTest(unittest.TestCase):
    def problems(self, output):
        return check_exports.so_problems(NAMES, output)

    def test_the_listed_names_alone_are_right(self):
        self.assertEqual(self.problems(NM), [])

    def test_a_missing_function(self):
        output = "".join(line for line in NM.splitlines(True) if "connect" not in line)
        self.assertEqual(self.problems(output), ["not exported: velto_connect"])

    def test_a_name_that_leaks_out(self):
        output = NM + "0000000000001300 T _ZdlPv@@VELTOAPI64_1\n"
        self.assertEqual(self.problems(output), ["exported, but not listed: _ZdlPv"])

    def test_a_name_outside_the_version_node(self):
        output = NM.replace("velto_close@@VELTOAPI64_1", "velto_close")
        self.assertEqual(len(self.problems(output)), 1)
        self.assertIn("velto_close", self.problems(output)[0])

    def test_a_weak_symbol(self):
        self.assertIn("kind W", self.problems(NM.replace("T velto_close", "W velto_close"))[0])

    def test_a_library_without_the_version_node(self):
        output = NM.replace("0000000000000000 A VELTOAPI64_1\n", "")
        self.assertIn("version nodes", self.problems(output)[0])


class DllTest(unittest.TestCase):
    def problems(self, output):
        return check_exports.dll_problems(NAMES, output)

    def test_the_listed_names_and_system_dlls_are_right(self):
        self.assertEqual(self.problems(OBJDUMP), [])

    def test_rows_with_the_ordinal_between(self):
        output = OBJDUMP.replace("[   0] velto_close", "[   0] +base[   1]  0000 velto_close")
        self.assertEqual(self.problems(output), [])

    def test_a_missing_function(self):
        output = OBJDUMP.replace("\t[   1] velto_connect\n", "")
        self.assertEqual(self.problems(output), ["not exported: velto_connect"])

    def test_a_name_that_leaks_out(self):
        output = OBJDUMP.replace("velto_connect", "velto_connect\n\t[   2] other")
        self.assertEqual(self.problems(output), ["exported, but not listed: other"])

    def test_a_library_that_exports_nothing(self):
        output = OBJDUMP.partition("The Export Tables")[0]
        self.assertEqual(len(self.problems(output)), len(NAMES))

    def test_the_compilers_runtime_as_an_import(self):
        output = OBJDUMP.replace("WS2_32.dll", "libstdc++-6.dll")
        self.assertEqual(self.problems(output), ["imports libstdc++-6.dll, no system DLL"])


if __name__ == "__main__":
    unittest.main()
