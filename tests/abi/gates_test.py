#!/usr/bin/python3
"""The gates themselves: each lets through what is right and finds what is wrong."""
import importlib.machinery
import importlib.util
import subprocess
import tempfile
import unittest
from pathlib import Path

import exported_symbols
import include_rules
import link_flags
import mutable_data
import pe_programs

COUNT_TESTS = str(Path(__file__).resolve().parents[2] / "scripts/count-tests")


class Compiled(unittest.TestCase):
    """Gives a test a folder and the compilers."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def compile(self, compiler, source, output, *options):
        (self.folder / "source.cpp").write_text(source)
        result = self.folder / output
        subprocess.run([compiler, "-std=c++20", "-fPIC", *options, "-o", result, self.folder / "source.cpp"],
                       check=True)
        return str(result)

    def linux(self, source, output="source.o", *options):
        return self.compile("g++", source, output, *(options or ["-c"]))

    def windows(self, source, output="source.obj", *options):
        return self.compile("x86_64-w64-mingw32-g++-posix", source, output, *(options or ["-c"]))


CONSTANT = """
#include <stdexcept>
struct Base { virtual int Get() const { return 1; } };
extern const Base kObject; const Base kObject{};
extern const char* const kTexts[]; const char* const kTexts[] = {"a", "b"};
int Guarded(int (*function)()) { try { return function(); } catch (const std::runtime_error&) { return 0; } }
"""
LOCATIONS = """
#include <source_location>
const char* File(const std::source_location& where = std::source_location::current());
const char* FileOfThis() { return File(); }
"""
MUTABLE = {
    "a variable": "int counter = 1;",
    "a zeroed variable": "int counter;",
    "a static variable of a function": "int Next() { static int counter = 5; return ++counter; }",
    "a thread's variable": "thread_local int counter = 1; int Next() { return ++counter; }",
    "a guarded static": "int Make(); int Get() { static const int value = Make(); return value; }",
    "a constant that is made at run time": "int Make(); extern const int kValue; const int kValue = Make();",
    "an inline variable of a header": "inline int counter = 1; int Next() { return ++counter; }",
    "a pointer that can be changed": "const char* text = \"a\";",
    "a variable beside what the compiler writes": LOCATIONS + "const char* last = FileOfThis();",
    "a function's text beside it": LOCATIONS + "const char* Last() { static const char* last = \"\"; return last = File(); }",
    "an initialiser that runs": "#include <iostream>\n",
}


class MutableData(Compiled):
    def test_constants_and_exception_tables_pass(self):
        self.assertEqual(list(mutable_data.find([self.linux(CONSTANT)])), [])
        self.assertEqual(list(mutable_data.find([self.windows("int Add(int a, int b) { return a + b; }")])), [])

    def test_what_the_compiler_writes_for_locations_passes(self):
        self.assertEqual(list(mutable_data.find([self.linux(LOCATIONS)])), [])
        self.assertEqual(list(mutable_data.find([self.windows(LOCATIONS)])), [])

    def test_every_kind_of_mutable_data_is_found_on_both_systems(self):
        for what, source in MUTABLE.items():
            with self.subTest(what):
                self.assertTrue(list(mutable_data.find([self.linux(source)])), "linux")
                self.assertTrue(list(mutable_data.find([self.windows(source)])), "windows")

    def test_nothing_to_look_at_is_no_success(self):
        self.assertEqual(mutable_data.main([]), 1)


class ExportedSymbols(Compiled):
    def test_exports_are_read_with_their_parameters(self):
        source = "__attribute__((visibility(\"default\"))) int Shown(const char*, long) { return 1; }\nint Hidden() { return 1; }"
        library = self.linux(source, "lib.so", "-shared", "-fvisibility=hidden")
        self.assertEqual(exported_symbols.exported("linux", library), ["Shown(char const*, long)"])

    def test_windows_exports_are_read_with_their_parameters(self):
        source = "__declspec(dllexport) int Shown(const char*, long) { return 1; }\nint Hidden() { return 1; }"
        library = self.windows(source, "lib.dll", "-shared")
        self.assertEqual(exported_symbols.exported("windows", library), ["Shown(char const*, long)"])

    def test_a_changed_list_is_told_name_by_name(self):
        self.assertEqual(list(exported_symbols.differences(["A()", "B()"], ["A()", "B()"])), [])
        self.assertEqual(len(list(exported_symbols.differences(["A()"], ["A()", "B()"]))), 1)
        self.assertEqual(len(list(exported_symbols.differences(["A()", "B()"], ["A()"]))), 1)
        self.assertEqual(len(list(exported_symbols.differences(["A()", "A()"], ["A()"]))), 1)


class LinkFlags(unittest.TestCase):
    LINKED = ("build lib/libvelmora.so.0.1.0: CXX_SHARED_LIBRARY_LINKER__velmora_Release a.o\n"
              "  LINK_FLAGS = {}\n")

    def test_a_library_with_the_flag_passes(self):
        ninja = self.LINKED.format("-Wl,-z,defs -Wl,--version-script=x")
        self.assertEqual(link_flags.without_flag(ninja, ["lib/libvelmora.so.0.1.0"]), [])

    def test_a_library_without_the_flag_is_found(self):
        ninja = self.LINKED.format("-Wl,--version-script=x")
        self.assertEqual(link_flags.without_flag(ninja, ["lib/libvelmora.so.0.1.0"]),
                         ["lib/libvelmora.so.0.1.0"])

    def test_a_library_that_is_not_linked_is_found(self):
        self.assertEqual(link_flags.without_flag(self.LINKED.format("-Wl,-z,defs"), ["lib/libother.so.0.1.0"]),
                         ["lib/libother.so.0.1.0"])

    def test_a_library_that_is_loaded_too_early_is_found(self):
        needed = " 0x0000000000000001 (NEEDED)             Shared library: [{}]\n"
        listing = needed.format("libstdc++.so.6") + "{}" + needed.format("libc.so.6")
        self.assertEqual(link_flags.loaded_at_start(listing.format(needed.format("libm.so.6"))), [])
        for late in ("libsystemd.so.0", "liblog4cxx.so.15"):
            self.assertEqual(link_flags.loaded_at_start(listing.format(needed.format(late))), [late])


class PePrograms(Compiled):
    SOURCE = "#include <string>\nint main(int argc, char** argv) { return std::stoi(argv[argc - 1]); }"

    def problems(self, beside, *options):
        program = Path(self.windows(self.SOURCE, "program.exe", "-Wall", *options))
        return list(pe_programs.problems(program, pe_programs.headers(program), beside))

    def test_a_usual_program_with_its_runtime_beside_it_passes(self):
        self.assertEqual(self.problems({"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"}), [])

    def test_a_program_without_its_runtime_beside_it_is_found(self):
        self.assertRegex("\n".join(self.problems(set())), r"imports libstdc\+\+-6\.dll")

    def test_a_program_without_the_flags_is_found(self):
        for option, flag in (("--disable-dynamicbase", "DYNAMIC_BASE"), ("--disable-nxcompat", "NX_COMPAT"),
                             ("--disable-high-entropy-va", "HIGH_ENTROPY_VA")):
            with self.subTest(flag):
                found = "\n".join(self.problems(set(), f"-Wl,{option}"))
                self.assertIn(f"lacks {flag}", found)


class IncludeRules(unittest.TestCase):
    def found(self, path, *includes):
        return list(include_rules.problems(path, "".join(f"#include {include}\n" for include in includes)))

    def test_what_may_be_included_passes(self):
        for path, include in [
                ("include/velmora/cpu.h", '"velmora/export.h"'), ("src/power/battery.cpp", '"velmora/battery.h"'),
                ("src/power/battery.cpp", '"platform/os/text.h"'), ("src/platform/windows/text.cpp", "<windows.h>"),
                ("src/platform/linux/bus.cpp", "<systemd/sd-bus.h>"), ("ostrine/linux/dmi.cpp", '"ostrine/linux/dmi.h"'),
                ("ostrine/linux/bluez.h", '"platform/linux/systemd_message.h"'),
                ("simulator/hal.cpp", '"platform/ostrine/hal.h"'), ("logging/log_writer.cpp", "<log4cxx/logger.h>"),
                ("src/network/address.cpp", "<filesystem>")]:
            with self.subTest(f"{path} {include}"):
                self.assertEqual(self.found(path, include, "<string>", "<cstdint>"), [])

    def test_what_must_not_be_included_is_found(self):
        for path, include in [
                ("include/velmora/cpu.h", "<windows.h>"), ("include/velmora/cpu.h", '"platform/unicode.h"'),
                ("src/power/battery.cpp", "<windows.h>"), ("src/power/battery.cpp", "<unistd.h>"),
                ("src/power/battery.h", "<sys/stat.h>"), ("src/power/battery.cpp", "<systemd/sd-bus.h>"),
                ("src/power/battery.cpp", '"platform/linux/bus.h"'), ("src/power/battery.cpp", "<iostream>"),
                ("src/platform/logging.cpp", "<log4cxx/logger.h>"),
                ("src/platform/logging.h", '"logging/log_writer.h"'), ("src/power/battery.cpp", '"ostrine/common/wql.h"'),
                ("src/power/battery.cpp", '"simulator/run.h"'), ("src/platform/halquery.cpp", "<windows.h>"),
                ("src/platform/halquery.cpp", "<linux/rtnetlink.h>"), ("src/platform/os/text.h", "<windows.h>"),
                ("src/platform/os/text.h", '"platform/unicode.h"'), ("src/platform/ostrine/hal.h", "<dirent.h>"),
                ("src/platform/windows/text.cpp", '"platform/linux/bus.h"'),
                ("src/platform/linux/text.cpp", '"ostrine/linux/dmi.h"'),
                ("ostrine/common/wql.cpp", "<windows.h>"), ("ostrine/common/wql.cpp", '"ostrine/linux/dmi.h"'),
                ("ostrine/linux/dmi.cpp", '"ostrine/windows/firmware.h"'),
                ("ostrine/windows/firmware.cpp", '"platform/os/text.h"'),
                ("ostrine/linux/dmi.cpp", '"platform/linux/bus.h"'), ("simulator/hal.cpp", "<windows.h>"),
                ("simulator/hal.cpp", '"platform/linux/bus.h"'), ("simulator/hal.cpp", '"ostrine/linux/dmi.h"'),
                ("tools/velmora-report/report.cpp", '"simulator/machine.h"'),
                ("tools/velmora-report/report.cpp", "VELMORA_HEADER")]:
            with self.subTest(f"{path} {include}"):
                self.assertEqual(len(self.found(path, "<string>", include)), 1)

    def test_spaces_do_not_hide_an_include(self):
        self.assertEqual(len(list(include_rules.problems("src/power/a.cpp", "  #  include<windows.h>\n"))), 1)

    def test_a_file_without_a_rule_is_found(self):
        self.assertEqual(len(self.found("src/new_folder/a.cpp")), 1)
        self.assertEqual(len(self.found("src/platform/macos/a.cpp")), 1)


class CountTests(unittest.TestCase):
    CASE = '<testcase classname="Text" name="IsCut" status="{}" result="{}">{}</testcase>'

    def setUp(self):
        loader = importlib.machinery.SourceFileLoader("count_tests", COUNT_TESTS)
        self.module = importlib.util.module_from_spec(importlib.util.spec_from_loader("count_tests", loader))
        loader.exec_module(self.module)

    def results(self, *cases):
        with tempfile.NamedTemporaryFile("w", suffix=".xml") as file:
            file.write(f"<testsuites>{''.join(cases)}</testsuites>")
            file.flush()
            return self.module.single_results(file.name)

    def test_a_test_that_ran_to_its_end_without_failure_has_passed(self):
        self.assertEqual(self.results(self.CASE.format("run", "completed", "")), [("Text.IsCut", True)])

    def test_failed_and_skipped_and_disabled_tests_have_not(self):
        for how in (("run", "completed", "<failure/>"), ("run", "skipped", "<skipped/>"), ("notrun", "suppressed", "")):
            with self.subTest(how):
                self.assertEqual(self.results(self.CASE.format(*how)), [("Text.IsCut", False)])

    def test_missing_and_broken_results_are_none(self):
        self.assertIsNone(self.module.single_results("/nonexistent"))
        self.assertIsNone(self.results("<"))

    def test_a_program_that_fails_though_its_tests_pass_counts_as_one_failure_more(self):
        judged = self.module.judge("tests", False, [("Text.IsCut", True)])
        self.assertEqual([success for _, success in judged], [True, False])

    def test_a_program_without_tests_has_failed(self):
        self.assertEqual([success for _, success in self.module.judge("tests", True, [])], [False])


if __name__ == "__main__":
    unittest.main()
