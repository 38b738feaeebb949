"""The host of the README builds as it stands there, and runs on the simulated library.

The environment names the compiler, VELMORA_COMPILER, and the folder of the built libraries, VELMORA_LIBRARIES.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

REPOSITORY = pathlib.Path(__file__).resolve().parents[3]
LIBRARIES = pathlib.Path(os.environ["VELMORA_LIBRARIES"])


class Readme(unittest.TestCase):
    def test_its_host_builds_and_runs(self):
        (source,) = re.findall(r"```cpp\n(.*?)```", (REPOSITORY / "README.md").read_text(), re.DOTALL)
        with tempfile.TemporaryDirectory() as folder:
            host = pathlib.Path(folder) / "host"
            (pathlib.Path(folder) / "host.cpp").write_text(source)
            subprocess.run(
                [os.environ["VELMORA_COMPILER"], "-std=c++20", "-Wall", "-Wextra", "-Werror"]
                + [f"-I{REPOSITORY / 'include'}", f"{host}.cpp", "-o", host, f"-L{LIBRARIES}", "-lvelmora"]
                + [f"-Wl,-rpath-link,{LIBRARIES}"],
                check=True,
            )
            environment = {
                **os.environ,
                "LD_LIBRARY_PATH": f"{LIBRARIES / 'velmora-simulated'}:{LIBRARIES}",
                "VELMORA_MACHINE": str(REPOSITORY / "machines/laptop-healthy.json"),
            }
            done = subprocess.run([host], env=environment, capture_output=True, text=True, check=True)
        self.assertEqual(done.stdout, "20XW004AGE, BIOS N32ET75W (1.51 )\n")

    def test_its_report_is_the_beginning_of_the_programs(self):
        text = (REPOSITORY / "README.md").read_text()
        (shown,) = re.findall(r"    \$ scripts/report --machine machines/(.*)\.json\n((?:    .*\n)+)", text)
        expected = (REPOSITORY / "tests/integration/report/expected" / shown[0]).with_suffix(".txt").read_text()
        beginning = re.sub(r"^    ", "", shown[1], flags=re.MULTILINE)
        self.assertEqual(beginning, expected[: len(beginning)])


if __name__ == "__main__":
    unittest.main(verbosity=0)
