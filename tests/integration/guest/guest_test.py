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

PARTS = [
    "-cpu", "Skylake-Client-v1,model-id=Velmora Test CPU @ 2.40GHz,enforce=off", "-smp", "4,sockets=1,cores=2,threads=2",
    "-m", str(MEMORY_MIB),
    "-smbios", "type=0,vendor=Guest BIOS Works,version=G1ET42WW (1.12 ),date=03/14/2024",
    "-smbios", "type=2,manufacturer=Guest Boards,product=GB-1,version=R2,serial=BSN0001",
    "-smbios", "type=4,max-speed=4321,current-speed=2100",
    "-smbios", "type=17,loc_pfx=SLOT,manufacturer=Guest Memory,serial=MSN0001,part=GM-768,speed=4800",
    "-device", "bochs-display,edid=on,xres=1600,yres=900",
    "-netdev", "user,id=net0", "-device", "e1000e,netdev=net0,mac=52:54:00:12:34:56",
    "-device", "intel-hda", "-device", "hda-duplex",
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
            image.add_step("report", "velmora-report --json")
            image.pack()
            cls.free_bytes, cls.steps = guest.boot(folder, image, parts_of(folder))
        text, status = cls.steps["report"]
        cls.report = json.loads(text)
        cls.status = status

    def test_program_ends_well(self):
        self.assertEqual(self.status, 0)

    def test_baseboard_is_the_one_of_the_firmware_table(self):
        self.assertEqual(self.report["baseboard"], {
            "product": "GB-1", "manufacturer": "Guest Boards", "version": "R2", "serial_number": "BSN0001",
            "bios_version": "G1ET42WW (1.12 )", "bios_manufacturer": "Guest BIOS Works",
            "bios_release_date": "03/14/2024"})

    def test_processor_has_the_chosen_name_cores_and_threads(self):
        cpu = self.report["cpu"]
        self.assertEqual(cpu["name"], "Velmora Test CPU @ 2.40GHz")
        self.assertEqual((cpu["manufacturer"], cpu["kind"]), ("Intel", "Intel"))
        self.assertEqual((cpu["cores"], cpu["threads"]), (2, 4))
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


if __name__ == "__main__":
    unittest.main()
