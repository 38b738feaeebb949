"""A virtual machine of chosen parts, in which the report program runs as on any computer.

The machine has no system but a kernel from Debian, busybox and the programs under test, so that it is up in
seconds even where the processor is emulated.
"""
import os
import shutil
import subprocess
from pathlib import Path

HERE = Path(__file__).resolve().parent
STAGE = Path(os.environ.get("VELMORA_GUEST_STAGE", ""))
REPORT = Path(os.environ.get("VELMORA_REPORT", ""))

MODULES = ("nvme", "ahci", "sd_mod", "xhci-pci", "usb-storage", "usbhid", "hid-generic", "bochs", "ext4", "battery", "ac",
           "e1000e", "snd-hda-intel", "snd-hda-codec-generic")
TIME_LIMIT = 120  # seconds; an idle machine needs less than ten


def module_files():
    """Files of the modules and of what they need, in the order in which they are loaded."""
    release = next((STAGE / "lib" / "modules").iterdir()).name
    modprobe = shutil.which("modprobe") or "/usr/sbin/modprobe"
    listing = subprocess.run([modprobe, "-a", "-d", str(STAGE), "-S", release, "--show-depends", *MODULES],
                             check=True, capture_output=True, text=True).stdout
    files = [Path(line.split()[1]) for line in listing.splitlines() if line.startswith("insmod ")]
    return list(dict.fromkeys(files))


def libraries_of(programs):
    """Shared libraries that the programs load, the loader itself included."""
    listing = subprocess.run(["ldd", *map(str, programs)], check=True, capture_output=True, text=True).stdout
    words = [word for line in listing.splitlines() for word in line.split() if word.startswith("/")]
    return {Path(word) for word in words if not word.endswith(":")}


class Image:
    """The guest's root folder, packed for its kernel."""

    def __init__(self, folder):
        self.root = folder / "root"
        self.file = folder / "initramfs"
        for name in ("bin", "lib", "lib64", "proc", "sys", "dev", "modules", "steps"):
            (self.root / name).mkdir(parents=True)
        self.add("/bin/busybox", "bin/busybox")
        self.add(HERE / "init", "init")
        modules = module_files()
        for module in modules:
            self.add(module, f"modules/{module.name}")
        (self.root / "modules.list").write_text("".join(f"/modules/{module.name}\n" for module in modules))

    def add(self, source, name):
        target = self.root / name
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(source, target)

    def add_program(self, program):
        self.add(program, f"bin/{program.name}")
        for library in libraries_of([program]):
            folder = "lib64" if library.name.startswith("ld-") else "lib"
            self.add(library, f"{folder}/{library.name}")

    def add_step(self, name, script):
        (self.root / "steps" / name).write_text(script + "\n")

    def pack(self):
        names = subprocess.run(["find", ".", "-print0"], cwd=self.root, check=True, capture_output=True).stdout
        with self.file.open("wb") as packed:
            subprocess.run(["cpio", "--quiet", "-0", "-o", "-H", "newc"], cwd=self.root, check=True, input=names,
                           stdout=packed)


def boot(folder, image, parts):
    """Runs the machine to its end and returns what it said: (free bytes of its file system, {step: (text, status)})."""
    output = folder / "output"
    console = folder / "console"
    kernel = next((STAGE / "boot").glob("vmlinuz-*"))
    command = ["qemu-system-x86_64", "-M", "q35", "-accel", "tcg,thread=multi", "-no-reboot", "-nodefaults", "-display", "none",
               "-kernel", str(kernel), "-initrd", str(image.file), "-append", "console=ttyS0 quiet loglevel=3 panic=-1",
               "-serial", f"file:{console}", "-serial", f"file:{output}", *parts]
    try:
        subprocess.run(command, check=True, capture_output=True, text=True, timeout=TIME_LIMIT)
    except (subprocess.CalledProcessError, subprocess.TimeoutExpired) as error:
        said = console.read_text(errors="replace") if console.exists() else ""
        raise RuntimeError(f"the guest did not end well: {error} {error.stderr}\n{said}") from error
    return understand(output.read_text(), console.read_text(errors="replace"))


def understand(output, console):
    lines = output.splitlines()
    if not lines or lines[-1] != "end":
        raise RuntimeError(f"the guest ended early:\n{output}\n{console}")
    count, size = map(int, lines[0].split()[1:])
    steps, name, text = {}, None, []
    for line in lines[1:-1]:
        word, _, rest = line.partition(" ")
        if word == "step":
            name, text = rest, []
        elif word == "status":
            steps[name] = ("\n".join(text), int(rest))
        else:
            text.append(line)
    return count * size, steps
