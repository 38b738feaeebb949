"""What the report says of the machine's parts."""
import json
import unittest

import steps
from machine import DRIVERLESS, MAC_ADDRESS, MEMORY_MIB, NETWORK_CARD, NVME_BYTES, SATA_BYTES


class Report(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.free_bytes, cls.texts = steps.run()
        cls.report = json.loads(cls.texts["report"])

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
                         [("Ethernet", NETWORK_CARD, MAC_ADDRESS)])

    def test_keyboard_is_there(self):
        # "Raw", as the firmware has left the keys' codes as they are.
        self.assertEqual(self.report["keyboard"]["name"], "AT Raw Set 2 keyboard")

    def test_failing_drivers_are_the_devices_without_one(self):
        failing = {device["device_id"].rsplit("\\", 1)[0]: device["problem_code"]
                   for device in self.report["failing_drivers"]["devices"]}
        self.assertEqual(failing.get(DRIVERLESS), 28, "the one without any driver")
        self.assertEqual(failing.get(r"ACPI\VELM0001"), 28)
        self.assertNotIn(NETWORK_CARD, failing)
