"""What the report program repairs, and what it refuses to, where the kernel really takes devices out."""
import json
import unittest

import steps
from machine import CODEC, DISPLAY, DRIVERLESS, MAC_ADDRESS, NETWORK_CARD

WORKS, NO_DRIVER, NOT_THERE = 0, 28, 45
NOT_SUPPORTED = 50


class Repair(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        _, cls.texts = steps.run()

    def repair(self, step):
        return json.loads(self.texts[step])["repair"]

    def assert_repair(self, step, **expected):
        repair = self.repair(step)
        self.assertEqual({key: repair.get(key) for key in expected}, expected)

    def assert_refused(self, step, reason):
        self.assert_repair(step, done=False, refused_because=reason, problem_code_before=WORKS)
        self.assertNotIn("result", self.repair(step), "nothing was tried")

    def card(self, step):
        """(number, address, driver) of the one network interface on the PCI bus."""
        number, address, driver = self.texts[step].split()
        return int(number), address, driver

    def failing(self, step, when):
        """Problem codes of the failing devices by their first hardware ID."""
        devices = self.repair(step)[f"failing_{when}"]
        return {device["device_id"].rsplit("\\", 1)[0]: device["problem_code"] for device in devices}

    def test_plans_change_nothing(self):
        self.assert_repair("plan to uninstall the card", done=False, problem_code_before=WORKS)
        self.assertEqual(self.card("cards after the plan"), self.card("cards"))
        self.assert_repair("plan to rescan", done=False)
        self.assertEqual(self.texts["cards after the plan to rescan"], "")

    def test_uninstalled_card_is_gone(self):
        self.assertEqual(self.card("cards")[1:], (MAC_ADDRESS, "e1000e"))
        self.assert_repair("uninstall the card", done=True, result=0, problem_code_before=WORKS,
                           problem_code_after=NOT_THERE)
        self.assertEqual(self.texts["cards without the card"], "")
        before, after = (json.loads(self.texts[step]) for step in ("report", "report without the card"))
        self.assertEqual([card["hardware_id"] for card in before["network_cards"]["cards"]], [NETWORK_CARD])
        self.assertEqual(after["network_cards"]["cards"], [])
        self.assertEqual(after["failing_drivers"], before["failing_drivers"], "what is gone does not fail")

    def test_card_that_is_gone_cannot_be_uninstalled(self):
        self.assert_repair("uninstall the card again", done=False)
        self.assertNotIn("problem_code_before", self.repair("uninstall the card again"))

    def test_rescan_brings_the_card_back_with_its_driver(self):
        self.assert_repair("rescan", done=True)
        number, address, driver = self.card("cards after the rescan")
        self.assertEqual((address, driver), (MAC_ADDRESS, "e1000e"))
        self.assertGreater(number, self.card("cards")[0], "the kernel made it anew")

    def test_rescan_finds_the_driver_of_a_card_that_has_lost_it(self):
        step = "rescan for the driver"
        before, after = self.failing(step, "before"), self.failing(step, "after")
        self.assertEqual(before.pop(NETWORK_CARD, None), NO_DRIVER)
        self.assertEqual(after, before)
        self.assert_repair(step, count_before=len(before) + 1, count_after=len(before))

    def test_rescan_leaves_the_device_that_no_driver_knows(self):
        for when in ("before", "after"):
            self.assertEqual(self.failing("rescan", when).get(DRIVERLESS), NO_DRIVER)

    def test_reset_makes_a_failing_card_work(self):
        self.assert_repair("reset the card", done=True, result=0, problem_code_before=NO_DRIVER,
                           problem_code_after=WORKS)
        number, address, driver = self.card("cards after the reset")
        self.assertEqual((address, driver), (MAC_ADDRESS, "e1000e"))
        self.assertGreater(number, self.card("cards after the rescan")[0], "it was out in between")

    def test_codec_cannot_be_taken_from_its_bus(self):
        self.assert_repair("uninstall the codec", done=False, result=NOT_SUPPORTED, problem_code_before=WORKS,
                           problem_code_after=WORKS)

    def test_only_display_is_refused(self):
        self.assert_refused("uninstall the display", "it is the only display")

    def test_usb_is_refused_while_the_disk_of_the_program_is_unknown(self):
        self.assert_refused("uninstall the hub while the disk is unknown",
                            "it could not be told whether the disk that this program runs from hangs on it")

    def test_what_the_disk_of_the_program_hangs_on_is_refused(self):
        self.assert_refused("uninstall what the stick hangs on",
                            "the disk that this program or the system runs from hangs on it")

    def test_hub_of_one_keyboard_of_two_goes_and_comes_back(self):
        self.assert_repair("uninstall the hub", done=True, result=0, problem_code_before=WORKS,
                           problem_code_after=NOT_THERE)
        self.assertEqual(self.texts["keyboards without the hub"], "")
        self.assert_repair("rescan for the hub", done=True)
        self.assertRegex(self.texts["keyboards after the rescan"], r"^0003:0627:0001\.\d{4}$")

    def test_hub_of_the_only_keyboard_is_refused(self):
        self.assert_refused("uninstall the hub of the only keyboard", "the only keyboard hangs on it")
        self.assertEqual(self.texts["keyboards after all"], self.texts["keyboards after the rescan"])

    def test_what_was_repaired_or_refused_is_listed_as_working(self):
        devices = json.loads(self.texts["devices"])["devices"]
        for name, hardware_id in (("net", NETWORK_CARD), ("media", CODEC), ("display", DISPLAY)):
            found = [(device["problem_code"], device["count"]) for device in devices[name]
                     if device["hardware_id"] == hardware_id]
            self.assertEqual(found, [(WORKS, 1)], hardware_id)
