"""The report program on a machine whose every part is chosen here, on the command line of the emulator."""
import json
import subprocess
import tempfile
import unittest
from pathlib import Path

import guest

NVME_BYTES = 64 * 1024 * 1024
SATA_BYTES = 250_059_350_016
MEMORY_MIB = 768
NETWORK_CARD = r"PCI\VEN_8086&DEV_10D3&SUBSYS_00008086&REV_00"

PARTS = [
    "-cpu", "Skylake-Client-v1,model-id=Velmora Test CPU @ 2.40GHz,enforce=off", "-smp", "2,sockets=1,cores=2,threads=1",
    "-m", str(MEMORY_MIB),
    "-smbios", "type=0,vendor=Guest BIOS Works,version=G1ET42WW (1.12 ),date=03/14/2024",
    "-smbios", "type=2,manufacturer=Guest Boards,product=GB-1,version=R2,serial=BSN0001",
    "-smbios", "type=4,max-speed=4321,current-speed=2100",
    "-smbios", "type=17,loc_pfx=SLOT,manufacturer=Guest Memory,serial=MSN0001,part=GM-768,speed=4800",
    "-device", "bochs-display,edid=on,xres=1600,yres=900",
    "-netdev", "user,id=net0", "-device", "e1000e,netdev=net0,mac=52:54:00:12:34:56",
    "-audiodev", "none,id=sound", "-device", "intel-hda", "-device", "hda-duplex,audiodev=sound",
    "-device", "edu",
    "-device", "qemu-xhci,id=usb", "-device", "usb-kbd,bus=usb.0",
]


def parts_of(folder):
    """PARTS with the disks: one solid-state, one that turns, one that can be pulled out."""
    nvme = folder / "nvme"
    with nvme.open("wb") as file:
        file.truncate(NVME_BYTES)
    subprocess.run(["/usr/sbin/mkfs.ext4", "-q", str(nvme)], check=True)
    table = folder / "machine.aml"
    subprocess.run(["iasl", "-p", str(table), str(guest.HERE / "machine.dsl")], check=True, capture_output=True)
    return [
        *PARTS,
        "-acpitable", f"file={table}",
        "-drive", f"if=none,id=nvme,format=raw,file={nvme}", "-device", "nvme,drive=nvme,serial=NVME-0001",
        "-drive", f"if=none,id=sata,driver=null-co,size={SATA_BYTES},read-zeroes=on",
        "-device", "ide-hd,drive=sata,bus=ide.0,serial=SATA-0002,model=Guest Spinning Disk,ver=FW1.2,rotation_rate=5400",
        "-drive", "if=none,id=stick,driver=null-co,size=8000000000,read-zeroes=on",
        "-device", "usb-storage,bus=usb.0,drive=stick,removable=on,serial=STICK-0003",
    ]


class Guest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory(prefix="velmora-guest-") as name:
            folder = Path(name)
            image = guest.Image(folder)
            image.add_program(guest.REPORT)
            image.add_step("1-report", "velmora-report --json")
            image.add_step("2-devices", "velmora-report --devices --json")
            image.pack()
            cls.free_bytes, cls.steps = guest.boot(folder, image, parts_of(folder))
        cls.report = json.loads(cls.steps["1-report"][0])

    def test_every_step_ends_well(self):
        self.assertEqual({name: status for name, (_, status) in self.steps.items() if status != 0}, {})

    def test_baseboard_is_the_one_of_the_firmware_table(self):
        self.assertEqual(self.report["baseboard"], {
            "product": "GB-1", "manufacturer": "Guest Boards", "version": "R2", "serial_number": "BSN0001",
            "bios_version": "G1ET42WW (1.12 )", "bios_manufacturer": "Guest BIOS Works",
            "bios_release_date": "03/14/2024"})

    def test_processor_has_the_chosen_name_cores_and_threads(self):
        cpu = self.report["cpu"]
        self.assertEqual(cpu["name"], "Velmora Test CPU @ 2.40GHz")
        self.assertEqual((cpu["manufacturer"], cpu["kind"]), ("Intel", "Intel"))
        self.assertEqual((cpu["cores"], cpu["threads"]), (2, 2))
        self.assertEqual(cpu["maximum_clock_mhz"], 4321)

    def test_memory_is_one_module_of_the_chosen_maker(self):
        memory = self.report["memory"]
        self.assertEqual(memory["total_bytes"], MEMORY_MIB * 1024 * 1024)
        self.assertEqual(memory["modules"], [{
            "locator": "SLOT 0", "manufacturer": "Guest Memory", "part_number": "GM-768", "serial_number": "MSN0001",
            "capacity_bytes": MEMORY_MIB * 1024 * 1024, "speed_mts": 4800}])

    def test_disks_are_the_two_fixed_ones(self):
        disks = {disk["serial_number"]: disk for disk in self.report["disk"]["disks"]}
        self.assertEqual(sorted(disks), ["NVME-0001", "SATA-0002"])
        nvme, sata = disks["NVME-0001"], disks["SATA-0002"]
        self.assertEqual((nvme["solid_state"], sata["solid_state"]), (True, False))
        self.assertEqual((nvme["total_bytes"], sata["total_bytes"]), (NVME_BYTES, SATA_BYTES))
        self.assertEqual((sata["caption"], sata["firmware"]), ("Guest Spinning Disk", "FW1.2"))
        self.assertEqual(sata["nominal_megabytes"], 250059)
        self.assertEqual({disk["media_type"] for disk in disks.values()}, {"Fixed hard disk media"})

    def test_free_bytes_are_those_of_the_mounted_file_system(self):
        disks = {disk["serial_number"]: disk for disk in self.report["disk"]["disks"]}
        self.assertEqual(disks["NVME-0001"]["free_bytes"], self.free_bytes)
        self.assertIsNone(disks["SATA-0002"]["free_bytes"], "no file system of it is mounted")

    def test_display_has_the_mode_and_monitor_of_its_edid(self):
        video = self.report["vediocard"]
        self.assertEqual((video["horizontal"], video["vertical"]), (1600, 900))
        self.assertEqual(video["monitor"], "QEMU Monitor")
        self.assertEqual(video["card_count"], 1)

    def test_battery_is_the_one_of_the_acpi_table(self):
        battery = self.report["battery"]
        self.assertEqual((battery["name"], battery["manufacturer"]), ("LX42", "ACME"))
        self.assertEqual((battery["remaining_mwh"], battery["full_mwh"], battery["design_mwh"]), (25000, 45000, 50000))
        self.assertEqual((battery["voltage_mv"], battery["discharge_rate_mw"]), (11100, 9000))
        self.assertEqual((battery["charge_percent"], battery["wear_percent"]), (56, 10.0))
        self.assertFalse(battery["on_mains"])

    def test_thermal_zone_has_the_temperature_of_the_acpi_table(self):
        self.assertIn(45, [one["celsius"] for one in self.report["sensors"]["temperatures"]])

    def test_network_card_has_the_chosen_address(self):
        cards = self.report["network_cards"]["cards"]
        self.assertEqual([(card["kind"], card["hardware_id"], card["mac_address"]) for card in cards],
                         [("Ethernet", NETWORK_CARD, "52:54:00:12:34:56")])

    def test_keyboard_is_there(self):
        self.assertEqual(self.report["keyboard"]["name"], "AT Translated Set 2 keyboard")

    def test_failing_drivers_are_the_devices_without_one(self):
        failing = {device["device_id"].rsplit("\\", 1)[0]: device["problem_code"]
                   for device in self.report["failing_drivers"]["devices"]}
        self.assertEqual(failing.get(r"PCI\VEN_1234&DEV_11E8&SUBSYS_11001AF4&REV_10"), 28, "the one without any driver")
        self.assertEqual(failing.get(r"ACPI\VELM0001"), 28)
        self.assertNotIn(NETWORK_CARD, failing)

    def test_devices_are_listed_by_class(self):
        self.assertIn(NETWORK_CARD, self.steps["2-devices"][0].replace("\\\\", "\\"))


if __name__ == "__main__":
    unittest.main()
