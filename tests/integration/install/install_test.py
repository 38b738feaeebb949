#!/usr/bin/python3
"""Installs a build, moves the installed tree elsewhere, and builds and runs a host program against it.

The environment names the build folder, VELMORA_BUILD, its compiler, VELMORA_CXX, and for Windows the toolchain file,
VELMORA_TOOLCHAIN.
"""
import json
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
REPOSITORY = HERE.parents[2]
MACHINE = REPOSITORY / "machines" / "laptop-healthy.json"
BUILD = Path(os.environ["VELMORA_BUILD"])
COMPILER = os.environ["VELMORA_CXX"]
TOOLCHAIN = os.environ.get("VELMORA_TOOLCHAIN", "")
IS_WINDOWS = bool(TOOLCHAIN)


def run(*command, **environment):
    """Output of a command that must succeed; what it wrote is shown when it does not."""
    done = subprocess.run([str(word) for word in command], env=os.environ | environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))}: status {done.returncode}\n{done.stdout}")
    return done.stdout


class Case(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        run("cmake", "--install", BUILD, "--prefix", cls.folder / "installed")
        cls.prefix = cls.folder / "moved"
        (cls.folder / "installed").rename(cls.prefix)

    def library_folder(self):
        return next(self.prefix.glob("lib/**/pkgconfig/velmora.pc")).parents[1]

    def cmake_hosts(self):
        """The folder of the hosts, built once in the way of CMake projects."""
        build = self.folder / "hosts"
        if build.exists():
            return build
        package = next(self.prefix.glob("lib/**/VelmoraConfig.cmake")).parent
        # A cross build looks for packages nowhere but in its sysroot, so it is told.
        where = f"-DVelmora_DIR={package}" if IS_WINDOWS else f"-DCMAKE_PREFIX_PATH={self.prefix}"
        how = f"-DCMAKE_TOOLCHAIN_FILE={TOOLCHAIN}" if IS_WINDOWS else f"-DCMAKE_CXX_COMPILER={COMPILER}"
        run("cmake", "-G", "Ninja", "-S", HERE / "host", "-B", build, where, how)
        run("cmake", "--build", build)
        return build

    def assert_is_report(self, output):
        """A machine's firmware may tell its product or not; the host prints one line."""
        self.assertRegex(output, r"\A[^\n]+\n\Z")

    def assert_is_log(self, output):
        self.assertRegex(output.strip(), r"\ADEBUG CBattery::GetBatteryPercent: dwPercent=\d+\Z")

    def expected_product(self):
        return json.loads(MACHINE.read_text(encoding="utf-8"))["baseboard"]["product"]


class OnEverySystem(Case):
    def test_every_public_header_is_installed_and_compiles_alone(self):
        installed = sorted(path.name for path in (self.prefix / "include/velmora").iterdir())
        self.assertEqual(installed, sorted(path.name for path in (REPOSITORY / "include/velmora").iterdir()))
        source = self.folder / "header.cpp"
        for header in installed:
            with self.subTest(header):
                source.write_text(f"#include <velmora/{header}>\n")
                run(COMPILER, "-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", "-I",
                    self.prefix / "include", source)

    def test_installed_files_name_no_folder_of_the_build(self):
        for path in self.prefix.rglob("*"):
            if path.suffix in (".cmake", ".pc", ".h"):
                text = path.read_text(encoding="utf-8")
                self.assertNotIn(str(REPOSITORY), text, path)
                self.assertNotIn(str(self.folder), text, path)


class OnLinux(Case):
    def test_a_cmake_host_runs_on_this_machine_as_it_was_built(self):
        self.assert_is_report(run(self.cmake_hosts() / "host"))

    def test_a_host_without_a_logger_does_not_load_the_logging_library(self):
        self.assertNotIn("liblog4cxx.so", run("ldd", self.cmake_hosts() / "host"))
        self.assertIn("liblog4cxx.so", run("ldd", self.cmake_hosts() / "logging_host"))

    def test_a_host_with_a_logger_gets_the_librarys_lines(self):
        self.assert_is_log(run(self.cmake_hosts() / "logging_host"))

    def test_a_host_with_a_logger_runs_on_silently_when_the_writer_is_missing(self):
        program = self.cmake_hosts() / "logging_host"
        for writer in self.library_folder().glob("libvelmora-log-writer.so*"):
            writer.rename(writer.with_name("aside-" + writer.name))
            self.addCleanup(writer.with_name("aside-" + writer.name).rename, writer)
        self.assertEqual(run(program), "")

    def pkg_config_host(self):
        flags = run("pkg-config", "--cflags", "--libs", "velmora",
                    PKG_CONFIG_PATH=str(self.library_folder() / "pkgconfig")).split()
        program = self.folder / "pkg_config_host"
        run(COMPILER, "-std=c++20", "-o", program, HERE / "host/main.cpp", *flags)
        return program

    def test_a_pkg_config_host_runs_on_this_machine(self):
        self.assert_is_report(run(self.pkg_config_host(), LD_LIBRARY_PATH=str(self.library_folder())))

    def test_the_simulated_library_takes_the_place_of_the_real_one(self):
        simulated = self.prefix / "lib/velmora-simulated"
        output = run(self.pkg_config_host(), LD_LIBRARY_PATH=str(simulated), VELMORA_MACHINE=str(MACHINE))
        self.assertEqual(output, self.expected_product() + "\n")


class OnWindows(Case):
    def run_host(self, libraries, name="host", **environment):
        """Runs a host under Wine in a folder of its own with copies of the libraries."""
        program = Path(tempfile.mkdtemp(dir=self.folder)) / f"{name}.exe"
        shutil.copy(self.cmake_hosts() / program.name, program)
        for library in libraries:
            shutil.copy(library, program.parent)
        output = run(REPOSITORY / "scripts/wine-run", program, **environment)
        return output.replace("\r\n", "\n")

    def test_a_host_runs_with_the_libraries_beside_it(self):
        self.assert_is_report(self.run_host((self.prefix / "bin").glob("*.dll")))

    def test_a_host_with_a_logger_gets_the_librarys_lines(self):
        self.assert_is_log(self.run_host((self.prefix / "bin").glob("*.dll"), "logging_host"))

    def test_the_simulated_library_takes_the_place_of_the_real_one(self):
        simulated = (self.prefix / "lib/velmora-simulated").glob("*.dll")
        output = self.run_host(simulated, VELMORA_MACHINE=f"Z:{MACHINE}")
        self.assertEqual(output, self.expected_product() + "\n")


if __name__ == "__main__":
    unittest.main(defaultTest=["OnEverySystem", "OnWindows" if IS_WINDOWS else "OnLinux"])
