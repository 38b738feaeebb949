"""The machine's two simulated radios: one serves two networks, and the other joins the first of them."""
from typing import NamedTuple

import guest


class AccessPoint(NamedTuple):
    """One that tells who made it by Wi-Fi Protected Setup, or does not."""

    ssid: str
    address: str
    manufacturer: str | None = None
    model: str | None = None


NAMED = AccessPoint("Velmora Guest", "02:1a:2b:3c:4d:5e", "Guest Radio Works", "GR-7 Router")
QUIET = AccessPoint("Velmora Quiet", "02:1a:2b:3c:4d:5f")
ABSENT = AccessPoint("Velmora Elsewhere", "")
ALL = (NAMED, QUIET, ABSENT)
CHANNEL, MEGAHERTZ = 1, 2412
PROGRAMS = tuple(guest.find_program(name) for name in ("hostapd", "iw"))

# The texts around the manufacturer and the model are there so that it matters which of them are read.
SERVE = f"""cat >/run/hostapd.conf <<END
interface=wlan0
hw_mode=g
channel={CHANNEL}
ssid={NAMED.ssid}
eap_server=1
wps_state=2
config_methods=push_button
device_type=6-0050F204-1
device_name=Guest Access Point
manufacturer={NAMED.manufacturer}
model_name={NAMED.model}
model_number=Seven
serial_number=APSN0001
bss=wlan0_quiet
bssid={QUIET.address}
ssid={QUIET.ssid}
END
ip link set wlan0 address {NAMED.address} && hostapd -B /run/hostapd.conf"""

# A guest that is slow can miss what an access point says in the short time of one scan. Scanning and asking what was
# found are two commands: one that does both waits for ever when news of the scan comes while it is being answered.
JOIN = f"""scan() {{ iw dev wlan1 scan trigger freq {MEGAHERTZ} ssid "{NAMED.ssid}" ssid "{QUIET.ssid}"; }}
found() {{ iw dev wlan1 scan dump | grep -c -e "Model: {NAMED.model}" -e "SSID: {QUIET.ssid}"; }}
joined() {{ [ "$(cat /sys/class/net/wlan1/operstate)" = up ]; }}
ip link set wlan1 up && ip addr add 192.168.7.2/24 dev wlan1
waited=0
while [ $waited -lt 100 ] && [ "$(found)" != 2 ]; do scan; sleep 0.2; waited=$((waited + 1)); done
while [ $waited -lt 100 ] && ! joined; do
  iw dev wlan1 connect -w "{NAMED.ssid}" {MEGAHERTZ}
  sleep 0.1
  waited=$((waited + 1))
done
joined"""

SWITCH_OFF = "for switch in /sys/class/rfkill/*/soft; do echo 1 >\"$switch\"; done\nkillall hostapd"


def while_scanning(command):
    """The command, while the other radio keeps hearing of the network that it has not joined.

    The kernel forgets such a network after half a minute, which is short for a slow machine.
    """
    return f"(while sleep 10; do scan; done) &\n{command}\nstatus=$?\nkill $!\n(exit $status)"
