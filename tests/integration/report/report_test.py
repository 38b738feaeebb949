"""The report program as people run it: on this machine, on machines of made-up firmware, on machine files.

The environment names the program, VELMORA_REPORT, and, for the Windows program, what runs it, VELMORA_RUNNER.
"""

import json
import os
import pathlib
import random as random_module
import subprocess
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
REPOSITORY = HERE.parents[2]
MACHINES = REPOSITORY / "machines"
MADE_UP_FIRMWARE = REPOSITORY / "tests/integration/windows/fake-dmi"

PROGRAM = pathlib.Path(os.environ["VELMORA_REPORT"]).resolve()
RUNNER = os.environ.get("VELMORA_RUNNER", "").split()

# Which file of the kernel's folder /sys/class/dmi/id holds which value.
KERNEL_NAMES = {
    "product": "board_name",
    "manufacturer": "board_vendor",
    "version": "board_version",
    "serial_number": "board_serial",
    "bios_version": "bios_version",
    "bios_manufacturer": "bios_vendor",
    "bios_release_date": "bios_date",
}
LABELS = [
    "Board product",
    "Board maker",
    "Board version",
    "Board serial number",
    "BIOS version",
    "BIOS maker",
    "BIOS date",
]


def run(*arguments, before=(), program=PROGRAM, folder=None):
    """Runs the program and returns its status, output, which must be UTF-8, and error output."""
    command = [*before, *RUNNER, str(program), *map(str, arguments)]
    done = subprocess.run(command, cwd=folder, capture_output=True, timeout=120)
    return done.returncode, done.stdout.decode(), done.stderr.decode(errors="replace").replace("\r\n", "\n")


def without_firmware(*mounted_folders):
    """What to put before a command so that it sees empty folders in place of these."""
    mounts = "".join(f"if [ -d {folder} ]; then mount -t tmpfs none {folder}; fi; " for folder in mounted_folders)
    as_root = [] if os.geteuid() == 0 else ["--map-root-user"]
    return ["unshare", "--mount", *as_root, "sh", "-ec", mounts + 'exec "$@"', "sh"]


def steady(report):
    """The lines of a report that two runs have in common: what is measured anew is left out."""
    live = ("Clock now", "Load", "In use", "Free")
    lines = [line for line in report.splitlines() if not line.lstrip().startswith(live)]
    return [line for line in lines if not line.lstrip().split("  ")[0].endswith(" now")]


class Case(unittest.TestCase):
    maxDiff = None

    def report(self, *arguments, **how):
        status, output, errors = run(*arguments, **how)
        self.assertEqual((status, errors), (0, ""))
        return output

    def json_report(self, *arguments, **how):
        return json.loads(self.report("--json", *arguments, **how))

    def assert_refused(self, arguments, message, **how):
        status, output, errors = run(*arguments, **how)
        self.assertEqual((status, output), (2, ""))
        self.assertEqual(errors.count("\n"), 1, errors)
        self.assertIn(message, errors)


class ThisMachine(Case):
    def test_text_names_every_value(self):
        lines = self.report().splitlines()
        self.assertEqual(lines[0], "Board and BIOS")
        rows = [line[2:].split("  ", 1) for line in lines[1:8]]
        self.assertEqual([label for label, _ in rows], LABELS)
        for label, value in rows:
            self.assertTrue(value.strip(), label)

    def test_json_has_texts_and_nulls(self):
        board = self.json_report()["baseboard"]
        self.assertEqual(list(board), list(KERNEL_NAMES))
        for key, value in board.items():
            self.assertTrue(value is None or isinstance(value, str) and value, key)

    def test_text_and_json_tell_the_same(self):
        board = self.json_report()["baseboard"]
        lines = self.report().splitlines()
        for line, value in zip(lines[1:], board.values()):
            self.assertTrue(line.endswith("  " + ("not reported" if value is None else value)), line)


class MadeUpFirmware(Case):
    def expected(self):
        return {key: (MADE_UP_FIRMWARE / name).read_text().rstrip("\n") for key, name in KERNEL_NAMES.items()}

    def before(self):
        hide_tables = without_firmware("/sys/firmware")
        return [*hide_tables, str(REPOSITORY / "scripts/with-fake-dmi"), str(MADE_UP_FIRMWARE)]

    def test_its_seven_texts_are_reported(self):
        self.assertEqual(self.json_report(before=self.before())["baseboard"], self.expected())

    def test_its_seven_texts_are_printed(self):
        lines = self.report(before=self.before()).splitlines()[1:8]
        self.assertEqual([line.split("  ")[-1].strip() for line in lines], list(self.expected().values()))


class MachineFile(Case):
    def test_every_one_gives_the_expected_values(self):
        files = sorted(MACHINES.glob("*.json"))
        self.assertTrue(files)
        for file in files:
            with self.subTest(file.name):
                expected = json.loads((HERE / "expected" / file.name).read_text())
                self.assertEqual(self.json_report("--machine", file), expected)

    def test_every_one_gives_the_expected_text(self):
        for file in sorted(MACHINES.glob("*.json")):
            with self.subTest(file.name):
                expected = (HERE / "expected" / file.name).with_suffix(".txt").read_text()
                self.assertEqual(self.report("--machine", file), expected)


class WrittenMachineFile(Case):
    """Machine files that the tests write, in a folder whose name is no plain word."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="velmora machine \u00e9\u0436-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, text, name="machine.json"):
        file = self.folder / name
        file.write_bytes(text if isinstance(text, bytes) else text.encode())
        return file

    def test_nothing_but_an_object_is_a_machine_that_has_nothing(self):
        board = self.json_report("--machine", self.write("{}"))["baseboard"]
        self.assertEqual(board, dict.fromkeys(KERNEL_NAMES))

    def test_texts_of_every_alphabet_come_through(self):
        product = "caf\u00e9 \u0436 \u4e2d \U0001f5a5 \"quoted\" \\"
        file = self.write(json.dumps({"baseboard": {"product": product}}))
        self.assertEqual(self.json_report("--machine", file)["baseboard"]["product"], product)
        self.assertIn("  Board product        " + product + "\n", self.report("--machine", file))

    def test_control_characters_reach_no_terminal(self):
        product = "\x1b[2J\x07\u009b"
        file = self.write(json.dumps({"baseboard": {"product": product}}))
        self.assertIn("  \\u001B[2J\\u0007\\u009B\n", self.report("--machine", file))
        self.assertEqual(self.json_report("--machine", file)["baseboard"]["product"], product)

    def test_an_empty_text_and_null_are_not_reported(self):
        file = self.write('{"baseboard": {"product": "", "version": null, "manufacturer": "ACME"}}')
        board = self.json_report("--machine", file)["baseboard"]
        self.assertEqual((board["product"], board["version"], board["manufacturer"]), (None, None, "ACME"))

    def test_a_long_text_is_cut_as_the_library_cuts_it(self):
        file = self.write(json.dumps({"baseboard": {"product": "x" * 300}}))
        self.assertEqual(self.json_report("--machine", file)["baseboard"]["product"], "x" * 259)

    def test_a_relative_name_is_found_from_the_callers_folder(self):
        self.write('{"baseboard": {"product": "near"}}', "near.json")
        board = self.json_report("--machine", "near.json", folder=self.folder)["baseboard"]
        self.assertEqual(board["product"], "near")

    def test_a_file_that_is_not_json_is_refused_with_its_line(self):
        file = self.write('{\n  "baseboard": {\n    "product" "x"\n  }\n}\n')
        self.assert_refused(["--machine", file], f"{file}:3: /: is not JSON: ")

    def test_an_unknown_field_is_refused_with_its_line_and_path(self):
        file = self.write('{\n  "baseboard": {\n    "product": "x",\n    "prodct": "y"\n  }\n}\n')
        self.assert_refused(["--machine", file, "--json"], f"{file}:4: /baseboard/prodct: there is no such field")

    def test_a_value_of_the_wrong_kind_is_refused_with_its_line_and_path(self):
        file = self.write('{\n  "name": "n",\n  "baseboard": {\n    "version": 7\n  }\n}\n')
        self.assert_refused(["--machine", file], f"{file}:4: /baseboard/version: must be a text")
        file = self.write("[]")
        self.assert_refused(["--machine", file], f"{file}:1: /: must be an object")

    def test_a_file_of_broken_text_is_refused(self):
        file = self.write(b'{"name": "\xff"}')
        self.assert_refused(["--machine", file], f"{file}:1: /: is not JSON: ")
        self.assert_refused(["--machine", self.write(b"")], ":1: /: is not JSON: ")

    def test_a_missing_file_is_refused(self):
        missing = self.folder / "missing.json"
        self.assert_refused(["--machine", missing], f"{missing}:1: /: cannot be read")


class NamedServicesAndProcesses(Case):
    MACHINE = MACHINES / "laptop-healthy.json"

    def test_are_told_of_when_they_are_asked_for(self):
        report = self.json_report("--machine", self.MACHINE, "--service", "Spooler", "--process", "explorer.exe",
                                  "--service", "fax", "--service", "nosuch", "--process", "it's")
        services = report["services"]
        self.assertEqual(services["services"], [
            {"name": "Spooler", "exists": True, "state": "Running", "running": True},
            {"name": "fax", "exists": False, "state": "Stopped", "running": False},
            {"name": "nosuch", "exists": False, "state": None, "running": False}])
        self.assertEqual(services["verdict"], "1 of 3 services run; not running: fax, nosuch.")
        self.assertEqual(services["push_notification_service"], "WpnUserService_3f2a1")
        self.assertEqual(report["processes"]["processes"], [{"name": "explorer.exe", "running": True},
                                                            {"name": "it's", "running": False}])
        self.assertTrue(report["processes"]["wmi_sink_running"])

    def test_are_left_out_otherwise(self):
        report = self.json_report("--machine", self.MACHINE)
        self.assertNotIn("services", report)
        self.assertNotIn("processes", report)

    def test_are_printed_for_people(self):
        text = self.report("--machine", self.MACHINE, "--service", "Spooler")
        self.assertIn("\nServices\n  1 of 1 services run.\n", text)

    def test_need_names(self):
        self.assert_refused(["--service"], "--service needs a name")
        self.assert_refused(["--process", ""], "--process needs a name")


class NamedNetworks(Case):
    MACHINE = MACHINES / "laptop-healthy.json"

    def test_have_their_access_points_told(self):
        report = self.json_report("--machine", self.MACHINE, "--network", "Office", "--network", "nosuch")
        points = report["access_points"]
        self.assertEqual(points["verdict"], "The access points of 1 of 2 networks are known.")
        self.assertEqual(points["access_points"], [
            {"name": "Office", "mac_head": "001A2B", "mac_last": "3C4D5E", "manufacturer": "ACME", "model": "AP1"},
            {"name": "nosuch", "mac_head": None, "mac_last": None, "manufacturer": None, "model": None}])

    def test_are_left_out_otherwise(self):
        self.assertNotIn("access_points", self.json_report("--machine", self.MACHINE))


class Commands(Case):
    HEALTHY = MACHINES / "laptop-healthy.json"
    FAILING = MACHINES / "laptop-failing-devices.json"

    def outcome(self, *arguments, status=0, before=()):
        found, output, errors = run("--json", *arguments, before=before)
        self.assertEqual((found, errors), (status, ""), output)
        (section,) = json.loads(output).values()
        return section

    def test_services_are_started_and_stopped(self):
        started = self.outcome("--machine", self.HEALTHY, "service", "start", "Fax")
        self.assertEqual((started["state_before"], started["state_after"], started["done"]), ("Stopped", "Running", True))
        stopped = self.outcome("--machine", self.HEALTHY, "service", "stop", "Spooler")
        self.assertEqual((stopped["state_before"], stopped["state_after"], stopped["done"]), ("Running", "Stopped", True))

    def test_services_that_do_not_obey_are_told(self):
        for arguments, verdict in ((("start", "bthserv"), "could not be started"), (("start", "nosuch"), "could not be"),
                                   (("stop", "nosuch"), "There is no such service")):
            outcome = self.outcome("--machine", self.FAILING, "service", *arguments, status=1)
            self.assertFalse(outcome["done"])
            self.assertIn(verdict, outcome["verdict"])
        with tempfile.TemporaryDirectory() as folder:
            machine = pathlib.Path(folder) / "machine.json"
            machine.write_text(json.dumps({"services": [{"name": "held", "state": 4, "stop_error": 1051}]}))
            outcome = self.outcome("--machine", machine, "service", "stop", "held", status=1)
        self.assertEqual((outcome["state_after"], outcome["verdict"]), ("Running", "The service has not stopped."))

    def test_a_process_is_ended(self):
        outcome = self.outcome("--machine", self.HEALTHY, "process", "end", "explorer.exe")
        self.assertEqual((outcome["running_before"], outcome["running_after"], outcome["done"]), (True, False, True))
        outcome = self.outcome("--machine", self.HEALTHY, "process", "end", "System", status=1)
        self.assertEqual((outcome["running_before"], outcome["running_after"], outcome["done"]), (True, True, False))
        outcome = self.outcome("--machine", self.HEALTHY, "process", "end", "zz' OR Name LIKE '%", status=1)
        self.assertEqual(outcome["verdict"], "There is no such process.")

    def test_files_are_listed_by_their_extension(self):
        outcome = self.outcome("--machine", self.HEALTHY, "files", "list", "C:\\dump", "--extension", ".dmp")
        self.assertEqual(outcome["count"], 3)
        self.assertIn({"path": "C:\\dump\\old\\audio-0.dmp"}, outcome["files"])
        outcome = self.outcome("files", "list", MACHINES, "--extension", ".json")
        self.assertEqual(outcome["count"], len(list(MACHINES.glob("*.json"))))

    def test_people_are_told_in_words(self):
        text = self.report("--machine", self.HEALTHY, "service", "start", "Fax")
        self.assertTrue(text.startswith("Service\n  The service runs.\n"), text)

    def test_words_that_make_no_command_are_refused(self):
        for arguments, message in ((("service",), "service needs to know what: service start, service stop"),
                                   (("service", "kill", "x"), 'there is no command "service kill"'),
                                   (("service", "stop"), "service stop needs a name"),
                                   (("service", "stop", "a", "b"), 'unknown option "b"'),
                                   (("process", "end", ""), "process end needs a name"),
                                   (("files", "prune", "x"), "--keep is needed"),
                                   (("files", "prune", "--keep", "1"), "a folder is needed"),
                                   (("files", "prune", "x", "--keep", "-1"), "--keep needs a whole number"),
                                   (("files", "prune", "x", "--keep", "1x"), "--keep needs a whole number"),
                                   (("files", "list", "x"), "--extension is needed")):
            self.assert_refused(arguments, message)

    def test_a_machine_file_is_not_pruned(self):
        self.assert_refused(["--machine", self.HEALTHY, "files", "prune", "C:\\dump", "--keep", "1"],
                            "is for this machine only")


class Pruning(Case):
    """Files of a folder of the test's own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="velmora-prune-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, age, size=10):
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(b"x" * size)
        os.utime(file, ns=(10**18, 10**18 - age * 10**9))

    def left(self):
        return {str(file.relative_to(self.folder)) for file in self.folder.rglob("*") if not file.is_dir()}

    def prune(self, *arguments):
        return self.json_report("files", "prune", self.folder, *arguments)["files"]

    def test_it_is_told_first_and_done_when_it_is_confirmed(self):
        for age in range(5):
            self.write(f"{'sub/' if age % 2 else ''}{age}.dmp", age, size=10 + age)
        told = self.prune("--keep", "3")
        self.assertEqual(len(self.left()), 5)
        self.assertEqual((told["would_delete_count"], told["would_delete_bytes"], told["done"]), (2, 14 + 13, False))
        self.assertEqual([pathlib.PurePosixPath(file["path"].replace("\\", "/")).name for file in told["files"]],
                         ["4.dmp", "3.dmp"])
        done = self.prune("--keep", "3", "--yes")
        self.assertEqual((done["deleted_count"], done["deleted_bytes"], done["done"]), (2, 27, True))
        self.assertEqual(self.left(), {"0.dmp", "sub/1.dmp", "2.dmp"})
        self.assertEqual(self.prune("--keep", "3")["verdict"], "There is nothing to delete.")

    def test_what_is_told_is_what_goes(self):
        random = random_module.Random(5)
        for _ in range(6):
            for i in range(random.randrange(1, 60)):
                folder = "/".join(random.choice("ab") for _ in range(random.randrange(4)))
                self.write(f"{folder}/{i}" if folder else str(i), random.randrange(20))
            before = self.left()
            keep = str(random.randrange(len(before)))
            told = self.prune("--keep", keep)
            done = self.prune("--keep", keep, "--yes")
            self.assertEqual(told["files"], done["files"])
            self.assertEqual(len(before) - len(self.left()), told["would_delete_count"])

    def test_a_thousand_go_at_a_time(self):
        for i in range(1010):
            self.write(str(i), i, size=1)
        self.assertEqual(self.prune("--keep", "0")["would_delete_count"], 1000)
        self.assertEqual(self.prune("--keep", "0", "--yes")["deleted_bytes"], 1000)
        self.assertEqual(self.left(), {str(i) for i in range(10)})
class Devices(Case):
    """The list of devices."""

    MACHINE = MACHINES / "laptop-broken-drivers.json"

    def test_those_of_a_machine_file_stand_by_their_class_with_all_that_is_asked_for(self):
        devices = self.json_report("--devices", "--machine", self.MACHINE)["devices"]
        self.assertEqual(devices["device_count"], 7)
        self.assertEqual([device["hardware_id"] for device in devices["net"]],
                         ["PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00", "PCI\\VEN_10EC&DEV_8168&SUBSYS_22E617AA&REV_15"])
        self.assertEqual(devices["display"][0]["description"], "Iris(R) Xe Graphics")
        self.assertEqual(devices["display"][0]["driver_version"], "31.0.101.3222")
        self.assertEqual(devices["media"][0]["problem_code"], 31)
        self.assertEqual(devices["bluetooth"], [])

    def test_those_of_a_machine_file_are_printed(self):
        text = self.report("--devices", "--machine", self.MACHINE)
        self.assertTrue(text.startswith("Devices\n  7 devices, 4 of which have a problem.\n"), text)
        self.assertIn("    Problem code          31\n", text)

    def test_those_of_this_machine_are_its_own(self):
        devices = self.json_report("--devices")["devices"]
        listed = [device for group in devices.values() if isinstance(group, list) for device in group]
        self.assertEqual(devices["device_count"], sum(device["count"] for device in listed))
        for device in listed:
            self.assertIsInstance(device["problem_code"], int)


class Repair(Case):
    """Repairs, on machine files only."""

    MACHINE = MACHINES / "laptop-broken-drivers.json"
    WIRELESS = "PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00"
    AUDIO = "HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22E6&REV_1000"
    DISPLAY = "PCI\\VEN_8086&DEV_46A6&SUBSYS_22E617AA&REV_0C"

    def repair(self, *arguments, status=0):
        """The outcome of a repair of the machine file, which must end with the status."""
        found, output, errors = run("--machine", self.MACHINE, "--json", "repair", *arguments)
        self.assertEqual((found, errors), (status, ""))
        return json.loads(output)["repair"]

    def test_a_failing_driver_heals(self):
        outcome = self.repair("reset", "--kind", "wireless", "--id", self.WIRELESS, "--yes")
        self.assertEqual((outcome["problem_code_before"], outcome["problem_code_after"]), (10, 0))
        self.assertEqual((outcome["done"], outcome["result"]), (True, 0))
        self.assertEqual(outcome["verdict"], "The device works.")

    def test_a_driver_that_never_heals_is_told_as_failed(self):
        outcome = self.repair("reset", "--kind", "audio", "--id", self.AUDIO, "--yes", status=1)
        self.assertEqual((outcome["problem_code_before"], outcome["problem_code_after"]), (31, 31))
        self.assertEqual((outcome["done"], outcome["result"]), (False, 0xFFFFFFFF))
        self.assertIn("did not come back working", outcome["verdict"])

    def test_an_uninstalled_device_is_gone(self):
        outcome = self.repair("uninstall", "--kind", "usb", "--id", "USB\\VID_05E3&PID_0610&REV_0655", "--yes")
        self.assertEqual((outcome["problem_code_before"], outcome["problem_code_after"]), (43, 45))
        self.assertTrue(outcome["done"])

    def test_a_system_that_denies_it_is_told(self):
        outcome = self.repair("uninstall", "--kind", "fingerprint", "--id", "USB\\VID_06CB&PID_00F9&REV_0000", "--yes",
                              status=1)
        self.assertEqual((outcome["done"], outcome["result"], outcome["problem_code_after"]), (False, 5, 43))
        self.assertIn("administrator", outcome["verdict"])

    def test_nothing_is_done_without_yes(self):
        for verb in ("reset", "uninstall"):
            outcome = self.repair(verb, "--kind", "wireless", "--id", self.WIRELESS)
            self.assertFalse(outcome["done"])
            self.assertNotIn("result", outcome)
            self.assertNotIn("problem_code_after", outcome)
            self.assertEqual(outcome["problem_code_before"], 10)
            self.assertIn("Nothing has been done; --yes does it.", outcome["verdict"])

    def test_the_only_display_is_refused_unless_it_is_named(self):
        display = ("--kind", "display", "--id", self.DISPLAY)
        for arguments in (display, (*display, "--yes"), (*display, "--yes", "--force", "something else")):
            outcome = self.repair("reset", *arguments, status=3)
            self.assertEqual((outcome["done"], outcome["refused_because"]), (False, "it is the only display"))
            self.assertNotIn("problem_code_after", outcome)
        outcome = self.repair("reset", *display, "--yes", "--force", "Iris(R) Xe Graphics")
        self.assertTrue(outcome["done"])

    def test_a_device_that_is_not_there_is_told(self):
        for kind, device in (("wireless", "PCI\\NOSUCH"), ("audio", self.WIRELESS)):
            outcome = self.repair("reset", "--kind", kind, "--id", device, "--yes", status=1)
            self.assertFalse(outcome["done"])
            self.assertIn("There is no device", outcome["verdict"])

    def test_a_rescan_tells_what_fails_before_and_after(self):
        outcome = self.repair("rescan")
        self.assertEqual((outcome["done"], outcome["count_before"]), (False, 5))
        self.assertNotIn("failing_after", outcome)
        outcome = self.repair("rescan", "--yes")
        self.assertEqual((outcome["done"], outcome["count_before"], outcome["count_after"]), (True, 5, 5))
        self.assertEqual([device["problem_code"] for device in outcome["failing_after"]], [10, 31, 28, 43, 43])

    def test_people_are_told_in_words(self):
        text = self.report("--machine", self.MACHINE, "repair", "reset", "--kind", "wireless", "--id", self.WIRELESS,
                           "--yes")
        lines = text.splitlines()
        self.assertEqual(lines[:2], ["Driver repair", "  The device works."])
        self.assertIn("  State before         cannot start", lines)
        self.assertIn("  State after          works", lines)

    def test_arguments_that_make_no_repair_are_refused(self):
        for arguments, message in (
            ((), "repair needs to know what: "),
            (("everything",), 'there is no repair "everything"'),
            (("reset",), "--kind is needed"),
            (("reset", "--kind", "wireless"), "--id is needed"),
            (("reset", "--kind", "keyboard", "--id", "x"), 'no device of the kind "keyboard"'),
            (("reset", "--kind", "usb", "--id", "x"), 'no device of the kind "usb"'),
            (("rescan", "--kind", "usb"), 'unknown option "--kind"'),
        ):
            self.assert_refused(["--machine", self.MACHINE, "repair", *arguments], message)


class Arguments(Case):
    def test_an_unknown_one_is_refused_by_name(self):
        self.assert_refused(["--jsn"], 'velmora-report: unknown option "--jsn"')
        self.assert_refused(["--json", "caf\u00e9"], 'unknown option "caf\u00e9"')

    def test_machine_without_a_file_is_refused(self):
        self.assert_refused(["--machine"], "velmora-report: --machine needs a file")

    def test_help_tells_the_options(self):
        text = self.report("--help")
        self.assertTrue(text.startswith("Usage: velmora-report "))
        for option in ("--json", "--machine FILE", "--help", "--version"):
            self.assertIn(option, text)

    def test_version_is_the_projects(self):
        text = (REPOSITORY / "CMakeLists.txt").read_text()
        version = text.split("project(Velmora VERSION ")[1].split()[0]
        self.assertEqual(self.report("--version"), f"velmora-report {version}\n")


class BluetoothRepair(Case):
    """The road back of a Bluetooth adapter, on machine files only."""

    def repair(self, machine, *arguments, status=0):
        """The outcome of the repair on a machine of machines/, which must end with the status."""
        file = MACHINES / f"{machine}.json"
        found, output, errors = run("--machine", file, "--json", "repair", "bluetooth", *arguments)
        self.assertEqual((found, errors), (status, ""))
        return json.loads(output)["repair"]

    def test_an_adapter_among_unknown_devices_comes_back_after_a_rescan(self):
        outcome = self.repair("laptop-bluetooth-lost", "--yes")
        self.assertEqual(outcome["state_before"], "The adapter is lost: it stands among the devices without a driver.")
        self.assertEqual((outcome["state_after"], outcome["done"]), ("The adapter works.", True))
        self.assertEqual(outcome["hardware_id_after"], "USB\\VID_8087&PID_0026&REV_0002")
        self.assertEqual((outcome["remedy_result"], outcome["finds_device"]), (None, True))

    def test_an_adapter_that_fails_on_usb_comes_back_after_its_repair(self):
        outcome = self.repair("laptop-bluetooth-failing", "--yes")
        self.assertEqual(outcome["usb_device"], "Unknown USB Device (Device Descriptor Request Failed)")
        self.assertIn("problem code 43", outcome["state_before"])
        self.assertEqual((outcome["remedy_result"], outcome["done"]), (0, True))
        self.assertEqual(outcome["verdict"], "The adapter works.")

    def test_an_adapter_that_stays_lost_is_told_as_failed(self):
        outcome = self.repair("laptop-bluetooth-gone", "--yes", status=1)
        self.assertEqual((outcome["done"], outcome["hardware_id_after"]), (False, None))
        self.assertEqual((outcome["remedy_result"], outcome["finds_device"]), (0, None))
        self.assertIn("problem code 43", outcome["verdict"])

    def test_nothing_is_done_without_yes(self):
        for machine, intention in (
            ("laptop-bluetooth-lost", "Would have the system look for hardware."),
            ("laptop-bluetooth-failing", "Would uninstall the first USB device that fails and have the system look"),
        ):
            outcome = self.repair(machine)
            self.assertFalse(outcome["done"])
            self.assertIn(intention, outcome["verdict"])
            self.assertTrue(outcome["verdict"].endswith(" Nothing has been done; --yes does it."), outcome)
            self.assertNotIn("state_after", outcome)
        outcome = self.repair("laptop-bluetooth-lost", "--address", "1")
        self.assertIn(", then switch the radio off and on.", outcome["verdict"])

    def test_an_adapter_that_works_is_left_alone(self):
        outcome = self.repair("laptop-healthy", "--yes")
        self.assertEqual((outcome["verdict"], outcome["done"]), ("The adapter works. Nothing has been done.", False))

    def test_a_machine_without_an_adapter_cannot_be_helped(self):
        outcome = self.repair("empty", "--yes", status=1)
        self.assertTrue(outcome["verdict"].startswith("There is no adapter. Nothing here could be it"), outcome)
        self.assertFalse(outcome["done"])

    def test_the_radio_is_reset_when_its_address_is_given(self):
        outcome = self.repair("laptop-healthy", "--address", "1A2B", "--yes")
        self.assertEqual((outcome["radio_reset_error"], outcome["done"]), (0, True))
        outcome = self.repair("laptop-failing-devices", "--address", "1A2B", "--yes", status=1)
        self.assertEqual((outcome["radio_reset_error"], outcome["done"]), (31, False))
        self.assertIn("Its radio could not be reset: error 31.", outcome["verdict"])

    def test_the_radio_is_reset_once_the_adapter_is_back(self):
        outcome = self.repair("laptop-bluetooth-failing", "--address", "1A2B", "--yes")
        self.assertEqual((outcome["remedy_result"], outcome["radio_reset_error"]), (0, 0))

    def test_the_device_that_is_told_is_the_one_that_would_be_uninstalled(self):
        def usb(name, identifier, code):
            return {"setup_class": "USB", "description": name, "hardware_ids": [identifier], "problem_code": code}
        machine = {"devices": [usb("Hub", "USB\\A", 0), usb("Hub", "USB\\B", 43), usb("Stick", "USB\\C", 43)]}
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "machine.json"
            file.write_text(json.dumps(machine))
            status, output, errors = run("--machine", file, "--json", "repair", "bluetooth")
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(json.loads(output)["repair"]["usb_device"], "Stick")

    def test_people_are_told_in_words(self):
        text = self.report("--machine", MACHINES / "laptop-bluetooth-failing.json", "repair", "bluetooth", "--yes")
        self.assertTrue(text.startswith("Bluetooth repair\n  The adapter works.\n"), text)
        self.assertRegex(text, "\n  State before  +No adapter is there, but a USB device fails")
        self.assertRegex(text, "\n  State after  +The adapter works\\.\n")

    def test_arguments_that_it_does_not_take_are_refused(self):
        machine = ["--machine", MACHINES / "laptop-healthy.json"]
        self.assert_refused([*machine, "repair", "bluetooth", "--id", "x"], 'unknown option "--id"')
        self.assert_refused([*machine, "repair", "bluetooth", "--address"], "--address needs a value")


class Installed(Case):
    """The program from an installed tree that stands elsewhere than it was built."""

    def test_it_reports_this_machine_and_machine_files(self):
        machine = MACHINES / "laptop-healthy.json"
        with tempfile.TemporaryDirectory() as folder:
            install = ["cmake", "--install", str(PROGRAM.parents[1]), "--prefix", folder]
            subprocess.run(install, check=True, capture_output=True, timeout=120)
            program = pathlib.Path(folder) / "bin" / PROGRAM.name
            self.assertEqual(steady(self.report(program=program)), steady(self.report()))
            self.assertEqual(self.report("--machine", machine, program=program), self.report("--machine", machine))


class OnLinux(Case):
    """What only the Linux program can be asked."""

    def test_folders_that_the_library_would_read_otherwise_are_not_pruned(self):
        self.assert_refused(["files", "prune", "a\\b", "--keep", "1"], "cannot be pruned here")
        self.assert_refused(["files", "prune", "c:dump", "--keep", "1"], "cannot be pruned here")

    def test_times_of_any_year_are_compared(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, year in (("old", 1700), ("new", 2400)):
                path = pathlib.Path(folder) / name
                path.write_text("x")
                subprocess.run(["touch", "-d", f"{year}-01-01", path], check=True)
            status, output, errors = run("--json", "files", "prune", folder, "--keep", "1")
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual([file["path"] for file in json.loads(output)["files"]["files"]], [f"{folder}/old"])

    def test_firmware_that_says_nothing_reads_as_not_reported(self):
        before = without_firmware("/sys/firmware", "/sys/class")
        self.assertEqual(self.json_report(before=before)["baseboard"], dict.fromkeys(KERNEL_NAMES))
        lines = self.report(before=before).splitlines()[1:8]
        self.assertEqual([line[2:].split("  ")[0] for line in lines], LABELS)
        for line in lines:
            self.assertTrue(line.endswith("  not reported"), line)

    def test_output_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([str(PROGRAM)], stdout=full, stderr=subprocess.PIPE, timeout=60)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, b"velmora-report: the output could not be written\n")

    def test_a_link_to_the_program_finds_the_simulated_one(self):
        with tempfile.TemporaryDirectory() as folder:
            link = pathlib.Path(folder) / "report"
            link.symlink_to(PROGRAM)
            machine = MACHINES / "laptop-healthy.json"
            self.assertEqual(self.report("--machine", machine, program=link), self.report("--machine", machine))

    def test_a_missing_simulated_program_is_told(self):
        with tempfile.TemporaryDirectory() as folder:
            copy = pathlib.Path(folder) / "velmora-report"
            copy.write_bytes(PROGRAM.read_bytes())
            copy.chmod(0o755)
            library_path = f"LD_LIBRARY_PATH={PROGRAM.parents[1] / 'lib'}"
            status, output, errors = run("--machine", "x", program=copy, before=["env", library_path])
        self.assertEqual((status, output), (1, ""))
        self.assertIn("velmora-report: cannot run ", errors)

    def test_the_environment_does_not_turn_the_real_program_into_the_simulated(self):
        machine = f"VELMORA_MACHINE={MACHINES / 'laptop-healthy.json'}"
        self.assertEqual(steady(self.report(before=["env", machine])), steady(self.report()))


if __name__ == "__main__":
    unittest.main(verbosity=0)
