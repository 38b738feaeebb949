"""What the report says of the radios and of the access points around them."""
import json
import unittest

import steps
from radios import ABSENT, ALL, NAMED, QUIET


def halves(address):
    digits = address.replace(":", "").upper()
    return digits[:6] or None, digits[6:] or None


class Wifi(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        _, texts = steps.run()
        cls.report = json.loads(texts["report"])
        cls.network, cls.network_off = (json.loads(texts[step])["network"]
                                        for step in ("report", "report without the card"))

    def point(self, ssid):
        return {one["name"]: one for one in self.report["access_points"]["access_points"]}[ssid]

    def assert_told(self, point):
        head, last = halves(point.address)
        self.assertEqual(self.point(point.ssid), {
            "name": point.ssid, "mac_head": head, "mac_last": last, "manufacturer": point.manufacturer,
            "model": point.model})

    def test_radio_is_on_until_it_is_switched_off(self):
        self.assertEqual([network["wifi_switch"] for network in (self.network, self.network_off)], [1, 2])

    def test_machine_is_connected_until_the_radio_is_switched_off(self):
        self.assertEqual([network["connected"] for network in (self.network, self.network_off)], [True, False])
        self.assertEqual([network["internet"] for network in (self.network, self.network_off)], [False, False])

    def test_radios_stand_on_no_card(self):
        self.assertIsNone(self.report["network_cards"]["wireless"])
        self.assertEqual(self.network["adapters"], [])
        self.assertEqual([card["kind"] for card in self.report["network_cards"]["cards"]], ["Ethernet"])

    def test_access_point_that_tells_who_made_it_is_told_with_its_maker_and_model(self):
        self.assert_told(NAMED)

    def test_access_point_that_does_not_is_told_by_its_address_alone(self):
        self.assert_told(QUIET)

    def test_network_that_no_access_point_serves_is_not_known(self):
        self.assert_told(ABSENT)

    def test_networks_are_told_in_the_order_in_which_they_were_asked_for(self):
        self.assertEqual([one["name"] for one in self.report["access_points"]["access_points"]],
                         [point.ssid for point in ALL])
        self.assertEqual(self.report["access_points"]["verdict"], "The access points of 2 of 3 networks are known.")
