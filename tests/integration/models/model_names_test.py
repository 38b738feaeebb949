"""The file of model names as the configuration reads it, and the constants that it becomes.

The environment names the compiler, VELMORA_CXX.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
REPOSITORY = HERE.parents[2]
sys.path.insert(0, str(REPOSITORY / "tests/abi"))
import mutable_data  # noqa: E402

COUNT = 39
PRINT_ALL = """
#include <cstdio>
#include "network/model_names.h"
int main() {
%s
}
"""


def names():
    return [f"kModel{number}" for number in range(COUNT)]


def lines(changed=None):
    """A good file's lines; `changed` are lines by their number, counted from 1."""
    all_lines = [f"{name} = Model {number}".encode() for number, name in enumerate(names())]
    for number, line in (changed or {}).items():
        all_lines[number - 1] = line
    return all_lines


class Case(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="model names ")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.file = self.folder / "names.txt"
        self.output = self.folder / "generated"

    def generate(self, content=None):
        """Status and error output of reading a file with these lines or this content."""
        if content is not None:
            self.file.write_bytes(content if isinstance(content, bytes) else b"\n".join(content) + b"\n")
        done = subprocess.run(
            ["cmake", f"-DFILE={self.file}", f"-DFOLDER={self.output}", "-P", HERE / "generate.cmake"],
            capture_output=True, text=True, timeout=120, check=False)
        return done.returncode, " ".join(done.stderr.split())

    def assert_refused(self, content, line, message):
        status, errors = self.generate(content)
        self.assertNotEqual(status, 0)
        self.assertIn(f"{self.file}:{line}: {message}", errors)
        self.assertFalse(self.output.exists(), "nothing is made of a bad file")

    def texts(self, content):
        """The constants' texts as a program reads them."""
        self.assertEqual(self.generate(content), (0, ""))
        source = self.output / "network/model_names.cpp"
        program = self.folder / "program.cpp"
        program.write_text(PRINT_ALL % "\n".join(f"  std::puts(velmora::models::{name});" for name in self.declared()))
        subprocess.run(
            [os.environ["VELMORA_CXX"], "-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Werror",
             f"-I{self.output}", "-o", self.folder / "program", source, program], check=True)
        return subprocess.run([self.folder / "program"], capture_output=True, check=True).stdout.splitlines()

    def declared(self):
        return re.findall(r"^extern const char (\w+)\[\];$", (self.output / "network/model_names.h").read_text(),
                          re.MULTILINE)


class GoodFile(Case):
    def test_gives_every_name_its_text(self):
        self.assertEqual(self.texts(lines()), [f"Model {number}".encode() for number in range(COUNT)])
        self.assertEqual(self.declared(), names())

    def test_may_have_comments_and_empty_lines_and_windows_line_ends_and_the_mark(self):
        content = b"\xef\xbb\xbf# the models\r\n\r\n  \t\r\n   # more\r\n" + b"\r\n".join(lines()) + b"\r\n\r\n"
        self.assertEqual(self.texts(content)[0], b"Model 0")
        self.assertEqual(self.texts(content)[-1], b"Model 38")

    def test_need_not_end_its_last_line(self):
        self.assertEqual(self.texts(b"\n".join(lines()))[-1], b"Model 38")

    def test_has_texts_byte_by_byte(self):
        odd = {
            1: b"kModel0=a;b [c] ${d} @e@",
            2: b"kModel1 \t=\t \"quoted\\n\" 'x' ??/",
            3: b"kModel2 = a = b # c",
            4: "kModel3 = Pr\xe4zision \u5fae".encode(),
            5: b"kModel4 = \xb1\xca\xbc\xc7\xb1\xbe",
            6: b"kModel5 = 12",
            7: b"kModel6 = " + b"x" * 29,
            8: b"kModel7 = A9\\x41F",
        }
        expected = [line.split(b"=", 1)[1].strip() for line in odd.values()]
        self.assertEqual(self.texts(lines(odd))[: len(odd)], expected)

    def test_may_have_one_text_under_two_names(self):
        self.assertEqual(self.texts(lines({2: b"kModel1 = Model 0"}))[:2], [b"Model 0", b"Model 0"])

    def test_becomes_constant_data_that_nothing_has_to_make(self):
        self.generate(lines())
        made = self.folder / "names.o"
        subprocess.run([os.environ["VELMORA_CXX"], "-std=c++20", "-fPIC", f"-I{self.output}", "-c", "-o", made,
                        self.output / "network/model_names.cpp"], check=True)
        self.assertEqual(list(mutable_data.find([str(made)])), [])
        sections = subprocess.run(["objdump", "-h", made], capture_output=True, text=True, check=True).stdout
        self.assertIn(".rodata", sections)
        self.assertNotIn(".init_array", sections)
        self.assertNotIn(".rela", sections.replace(".rela.eh_frame", ""), "nothing is relocated when loaded")

    def test_is_not_written_anew_when_nothing_has_changed(self):
        self.generate(lines())
        before = [(file, file.stat().st_mtime_ns) for file in sorted(self.output.rglob("model_names.*"))]
        self.assertEqual(len(before), 2)
        self.generate([b"# a comment more", *lines()])
        self.assertEqual([(file, file.stat().st_mtime_ns) for file, _ in before], before)
        self.generate(lines({5: b"kModel4 = Another"}))
        self.assertIn(b"Another", self.texts(lines({5: b"kModel4 = Another"})))


class BadFile(Case):
    def test_that_does_not_exist_is_named(self):
        status, errors = self.generate()
        self.assertNotEqual(status, 0)
        self.assertIn(f"{self.file}: VELMORA_MODEL_NAMES names no file that can be read", errors)

    def test_with_too_few_names_is_refused(self):
        self.assert_refused(lines()[:-1], 39, "the file has 38 names instead of 39")
        self.assert_refused(b"", 0, "the file has 0 names instead of 39")

    def test_with_too_many_names_is_refused_at_the_first_that_is_too_many(self):
        self.assert_refused([*lines(), b"kMore = More", b"kEvenMore = More"], 40,
                            "kMore is one more than the 39 names that there are")

    def test_with_a_line_that_is_no_assignment_is_refused(self):
        self.assert_refused(lines({3: b"kModel2 Model 2"}), 3, 'a line is "kName = text", and this one has no "="')

    def test_with_a_bad_name_is_refused(self):
        for bad in (b"Model2", b"kmodel2", b"k2Model", b"k", b"kModel_2", b"kModel 2", b"", b"k\xc3\xa4", b"kA;B",
                    b"int", b"kModel-2"):
            with self.subTest(bad):
                self.assert_refused(lines({3: bad + b" = Model 2"}), 3, '"')

    def test_shows_the_bad_name(self):
        self.assert_refused(lines({3: b"kModel\x01_2; = Model 2"}), 3,
                            '"kModel?_2?" is no name of a constant: k, a capital letter, then letters and digits')

    def test_with_a_name_given_twice_is_refused(self):
        self.assert_refused(lines({7: b"kModel2 = Another"}), 7, "kModel2 is given twice, first in line 3")

    def test_with_a_text_of_another_length_is_refused(self):
        for text, length in ((b"", 0), (b"x", 1), (b"x" * 30, 30), (b"\xc3\xa4" * 15, 30)):
            with self.subTest(text):
                self.assert_refused(lines({4: b"kModel3 = " + text}), 4,
                                    f"the text of kModel3 has {length} bytes; 2 to 29 are allowed")

    def test_with_a_control_character_in_a_text_is_refused(self):
        for text in (b"a\tb", b"a\rb", b"a\x00b", b"a\x1fb", b"a\x7fb"):
            with self.subTest(text):
                self.assert_refused(lines({4: b"kModel3 = " + text}), 4,
                                    "the text of kModel3 has a control character in it")

    def test_counts_lines_with_comments_and_empty_ones(self):
        self.assert_refused([b"# one", b"", *lines({1: b"oops"})], 3, "a line is")


class Configuration(Case):
    """The whole project, configured with the option."""

    def configure(self, *options):
        done = subprocess.run(
            ["cmake", "-S", REPOSITORY, "-B", self.folder / "build", "-G", "Ninja", "-DVELMORA_TESTS=OFF",
             f"-DCMAKE_CXX_COMPILER={os.environ['VELMORA_CXX']}", *options],
            capture_output=True, text=True, timeout=300, check=False)
        return done.returncode, " ".join(done.stderr.split())

    def test_fails_on_a_bad_file(self):
        self.file.write_bytes(b"\n".join(lines({2: b"oops"})))
        status, errors = self.configure(f"-DVELMORA_MODEL_NAMES={self.file}")
        self.assertNotEqual(status, 0)
        self.assertIn(f'{self.file}:2: a line is "kName = text"', errors)

    def test_takes_the_names_into_the_library_and_leaves_them_out_again(self):
        self.file.write_bytes(b"\n".join(lines()))
        self.assertEqual(self.configure(f"-DVELMORA_MODEL_NAMES={self.file}"), (0, ""))
        source = "generated/network/model_names.cpp"
        build_file = self.folder / "build/build.ninja"
        self.assertIn(source, build_file.read_text())
        self.assertIn("names.txt", build_file.read_text(), "a change of the file configures anew")
        self.assertEqual(self.configure("-DVELMORA_MODEL_NAMES="), (0, ""))
        self.assertNotIn(source, build_file.read_text())


if __name__ == "__main__":
    unittest.main()
