"""The machine, every part of which is chosen here, on the command line of the emulator."""
import subprocess

import guest

NVME_BYTES = 64 * 1024 * 1024
SATA_BYTES = 250_059_350_016
STICK_BYTES = 96 * 1024 * 1024
MEMORY_MIB = 768
MAC_ADDRESS = "52:54:00:12:34:56"
# First hardware IDs of the parts.
NETWORK_CARD = r"PCI\VEN_8086&DEV_10D3&SUBSYS_00008086&REV_00"
DISPLAY = r"PCI\VEN_1234&DEV_1111&SUBSYS_11001AF4&REV_02"
CODEC = r"HDAUDIO\FUNC_01&VEN_1AF4&DEV_0022&SUBSYS_1AF40022&REV_1001"
DRIVERLESS = r"PCI\VEN_1234&DEV_11E8&SUBSYS_11001AF4&REV_10"
STICK_CONTROLLER = r"PCI\VEN_1B36&DEV_000D&SUBSYS_11001AF4&REV_01"
HUB = r"USB\VID_0409&PID_55AA&REV_0101"

PARTS = [
    # One without the newer instructions, which are slow where they are emulated, and used where they are there.
    "-cpu", "Conroe,model-id=Velmora Test CPU @ 2.40GHz",
    "-smp", "2,sockets=1,cores=2,threads=1",
    "-m", str(MEMORY_MIB),
    "-smbios", "type=0,vendor=Guest BIOS Works,version=G1ET42WW (1.12 ),date=03/14/2024",
    "-smbios", "type=2,manufacturer=Guest Boards,product=GB-1,version=R2,serial=BSN0001",
    "-smbios", "type=4,max-speed=4321,current-speed=2100",
    "-smbios", "type=17,loc_pfx=SLOT,manufacturer=Guest Memory,serial=MSN0001,part=GM-768,speed=4800",
    "-device", "bochs-display,edid=on,xres=1600,yres=900",
    "-netdev", "user,id=net0", "-device", f"e1000e,netdev=net0,mac={MAC_ADDRESS}",
    "-audiodev", "none,id=sound", "-device", "intel-hda", "-device", "hda-duplex,audiodev=sound",
    "-device", "edu",
    "-device", "qemu-xhci,id=usb", "-device", "usb-hub,bus=usb.0,port=1", "-device", "usb-kbd,bus=usb.0,port=1.1",
]


def parts_of(folder):
    """PARTS with the disks: one solid-state, one that turns, and one that can be pulled out, which has the programs.

    The keyboard that can be pulled out has a hub of its own, so that something stands between it and the machine.
    """
    stick = folder / "stick"
    system = guest.Folder(folder / "stick-root")
    system.add_program(guest.REPORT)
    system.strip()
    system.make_disk(stick, STICK_BYTES)
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
        "-device",
        "ide-hd,drive=sata,bus=ide.0,serial=SATA-0002,model=Guest Spinning Disk,ver=FW1.2,rotation_rate=5400",
        "-drive", f"if=none,id=stick,format=raw,file={stick}",
        "-device", "usb-storage,bus=usb.0,drive=stick,removable=on,serial=STICK-0003",
    ]
