"""What is done in the guest, in this order, in one run that all tests share."""
import functools
import tempfile
from pathlib import Path

import guest
import radios
from machine import CODEC, DISPLAY, HUB, NETWORK_CARD, STICK_CONTROLLER, parts_of

# Each network interface that stands on the PCI bus: its number, which the kernel gives to no other after it, its
# address and its driver.
CARDS = """for net in /sys/bus/pci/devices/*/net/*; do
  if [ -e "$net" ]; then
    echo "$(cat "$net/ifindex") $(cat "$net/address") $(basename "$(readlink "$net/device/driver")")"
  fi
done"""
KEYBOARDS = "ls /sys/bus/hid/devices"
TAKE_DRIVER_FROM_CARD = """driver=/sys/bus/pci/drivers/e1000e
for card in "$driver"/0*; do echo "${card##*/}" >"$driver/unbind"; done
"""
MOUNT_STICK = """for disk in /sys/block/sd*; do if [ "$(cat "$disk/removable")" = 1 ]; then stick=${disk##*/}; fi; done
mkdir /stick && mount -t ext4 -o ro "/dev/$stick" /stick &&
  for name in proc sys dev; do mount -o bind "/$name" "/stick/$name"; done"""
WAIT_FOR_KEYBOARD = """waited=0
while [ $waited -lt 100 ] && [ -z "$(ls /sys/bus/hid/devices)" ]; do sleep 0.1; waited=$((waited + 1)); done"""


def repair(action, kind, hardware_id, *options):
    return " ".join(["velmora-report --json repair", action, "--kind", kind, "--id", f"'{hardware_id}'", *options])


def from_stick(command):
    """The same by the program that the stick holds, whose root is the stick."""
    return "chroot /stick " + command


REPORT_ALL = " ".join(["velmora-report --json", *(f"--network '{point.ssid}'" for point in radios.ALL)])
RESCAN = "velmora-report --json repair rescan"
DONE, FAILED, REFUSED = 0, 1, 3

# Name, script, and the status that it has to end with.
STEPS = (
    ("serve two networks", radios.SERVE, DONE),
    ("join the first network", radios.JOIN, DONE),
    ("report", radios.while_scanning(REPORT_ALL), DONE),
    ("cards", CARDS, DONE),
    ("plan to uninstall the card", repair("uninstall", "wireless", NETWORK_CARD), DONE),
    ("cards after the plan", CARDS, DONE),
    ("uninstall the card", repair("uninstall", "wireless", NETWORK_CARD, "--yes"), DONE),
    ("cards without the card", CARDS, DONE),
    ("switch the radios off", radios.SWITCH_OFF, DONE),
    ("report without the card", "velmora-report --json", DONE),
    ("uninstall the card again", repair("uninstall", "wireless", NETWORK_CARD, "--yes"), FAILED),
    ("plan to rescan", RESCAN, DONE),
    ("cards after the plan to rescan", CARDS, DONE),
    ("rescan", RESCAN + " --yes", DONE),
    ("cards after the rescan", CARDS, DONE),
    ("rescan for the driver", TAKE_DRIVER_FROM_CARD + RESCAN + " --yes", DONE),
    ("reset the card", TAKE_DRIVER_FROM_CARD + repair("reset", "wireless", NETWORK_CARD, "--yes"),
     DONE),
    ("cards after the reset", CARDS, DONE),
    ("uninstall the codec", repair("uninstall", "audio", CODEC, "--yes"), FAILED),
    ("uninstall the display", repair("uninstall", "display", DISPLAY, "--yes"), REFUSED),
    ("uninstall the hub while the disk is unknown", repair("uninstall", "usb", HUB, "--yes"), REFUSED),
    ("mount the stick", MOUNT_STICK, DONE),
    ("uninstall what the stick hangs on",
     from_stick(repair("uninstall", "usb", STICK_CONTROLLER, "--yes")), REFUSED),
    ("uninstall the hub", from_stick(repair("uninstall", "usb", HUB, "--yes")), DONE),
    ("keyboards without the hub", KEYBOARDS, DONE),
    ("rescan for the hub", RESCAN + " --yes\n" + WAIT_FOR_KEYBOARD, DONE),
    ("keyboards after the rescan", KEYBOARDS, DONE),
    ("take the other keyboard away", "echo serio0 >/sys/bus/serio/drivers/atkbd/unbind", DONE),
    ("uninstall the hub of the only keyboard", from_stick(repair("uninstall", "usb", HUB, "--yes")), REFUSED),
    ("keyboards after all", KEYBOARDS, DONE),
    ("devices", "velmora-report --devices --json", DONE),
)


def attempt():
    with tempfile.TemporaryDirectory(prefix="velmora-guest-") as name:
        folder = Path(name)
        image = guest.Image(folder)
        for program in (guest.REPORT, *radios.PROGRAMS):
            image.add_program(program)
        image.strip()
        for step, script, _ in STEPS:
            image.add_step(step, script)
        image.pack()
        free_bytes, answers = guest.boot(folder, image, parts_of(folder))
    wrong = [f"{step}: status {answers[step][1]}, not {status}\n{answers[step][0]}"
             for step, _, status in STEPS if answers[step][1] != status]
    if wrong:
        raise RuntimeError("\n".join(wrong))
    return free_bytes, {step: text for step, (text, _) in answers.items()}


@functools.cache
def outcome():
    try:
        return attempt(), None
    except Exception as error:
        return None, error


def run():
    """(free bytes of the guest's file system, {step: text}). The guest is booted once, also when that fails."""
    result, error = outcome()
    if error:
        raise error
    return result
