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

MODULES = ("nvme", "ahci", "sd_mod", "xhci-pci", "usb-storage", "usbhid", "hid-generic", "bochs", "ext4", "battery",
           "ac", "e1000e", "snd-hda-codec-generic", "snd-hda-intel", "mac80211_hwsim")
TIME_LIMIT = 400  # seconds; an idle machine needs a tenth
# What a kernel does for safety, or to know more of the machine, takes an emulated processor several times as long.
KERNEL_OPTIONS = ("console=ttyS0", "quiet", "loglevel=3", "panic=-1", "mitigations=off", "init_on_alloc=0",
                  "rodata=off", "lsm=", "audit=0", "cryptomgr.notests")
# One thread for all processors needs no atomic steps; the plain firmware starts at once.
MACHINE = ("-M", "q35", "-accel", "tcg,thread=single", "-bios", "qboot.rom", "-no-reboot", "-nodefaults",
           "-display", "none")


def find_program(name):
    """The file of a program, also of one that only the administrator's path leads to."""
    return Path(shutil.which(name) or f"/usr/sbin/{name}")


def module_files():
    """Files of the modules and of what they need, in the order in which they are loaded."""
    release = next((STAGE / "lib" / "modules").iterdir()).name
    command = [str(find_program("modprobe")), "-a", "-d", str(STAGE), "-S", release, "--show-depends", *MODULES]
    listing = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    files = [Path(line.split()[1]) for line in listing.splitlines() if line.startswith("insmod ")]
    return list(dict.fromkeys(files))


def libraries_of(programs):
    """Shared libraries that the programs load, the loader itself included."""
    listing = subprocess.run(["ldd", *map(str, programs)], check=True, capture_output=True, text=True).stdout
    words = [word for line in listing.splitlines() for word in line.split() if word.startswith("/")]
    return {Path(word) for word in words if not word.endswith(":")}


class Folder:
    """A root folder for programs."""

    def __init__(self, root):
        self.root = root
        for name in ("bin", "lib", "lib64", "proc", "sys", "dev"):
            (self.root / name).mkdir(parents=True)
    def add(self, source, name):
        target = self.root / name
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(source, target)

    def add_program(self, program):
        self.add(program, f"bin/{program.name}")
        for library in libraries_of([program]):
            folder = "lib64" if library.name.startswith("ld-") else "lib"
            self.add(library, f"{folder}/{library.name}")

    def strip(self):
        """Leaves out what only a debugger reads, and the guest would load for nothing.

        With it go the signatures of modules, each of which takes the guest time to check.
        """
        folders = [self.root / name for name in ("bin", "lib", "lib64", "modules")]
        files = [file for folder in folders if folder.exists() for file in folder.iterdir()]
        subprocess.run(["strip", "--strip-debug", *map(str, files)], check=True)

    def make_disk(self, file, size):
        """Makes a disk of `size` bytes out of the folder."""
        with file.open("wb") as disk:
            disk.truncate(size)
        subprocess.run(["/usr/sbin/mkfs.ext4", "-q", "-O", "^has_journal", "-d", str(self.root), str(file)], check=True)


class Image(Folder):
    """The guest's first root folder, packed for its kernel, with the steps that it takes in their order."""

    def __init__(self, folder):
        super().__init__(folder / "root")
        self.file = folder / "initramfs"
        self.step_count = 0
        for name in ("modules", "steps"):
            (self.root / name).mkdir()
        self.add("/bin/busybox", "bin/busybox")
        self.add(HERE / "init", "init")
        modules = module_files()
        for module in modules:
            self.add(module, f"modules/{module.name}")
        (self.root / "modules.list").write_text("".join(f"/modules/{module.name}\n" for module in modules))

    def add_step(self, name, script):
        self.step_count += 1
        (self.root / "steps" / f"{self.step_count:02} {name}").write_text(script + "\n")

    def pack(self):
        names = subprocess.run(["find", ".", "-print0"], cwd=self.root, check=True, capture_output=True).stdout
        with self.file.open("wb") as packed:
            subprocess.run(["cpio", "--quiet", "-0", "-o", "-H", "newc"], cwd=self.root, check=True, input=names,
                           stdout=packed)


def boot(folder, image, parts):
    """Runs the machine to its end and returns what it said: (free bytes of its file system, {step: (text, status)}).

    The console, which is told of when something goes wrong, has the time at which each step began.
    """
    output = folder / "output"
    console = folder / "console"
    command = ["qemu-system-x86_64", *MACHINE, "-kernel", str(STAGE / "boot" / "vmlinux"),
               "-initrd", str(image.file), "-append", " ".join(KERNEL_OPTIONS),
               "-serial", f"file:{console}", "-serial", f"file:{output}", *parts]
    try:
        subprocess.run(command, check=True, capture_output=True, text=True, timeout=TIME_LIMIT)
    except (subprocess.CalledProcessError, subprocess.TimeoutExpired) as error:
        said = [file.read_text(errors="replace") for file in (output, console) if file.exists()]
        raise RuntimeError("\n".join([f"the guest did not end well: {error} {error.stderr}", *said])) from error
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
            name, text = rest.partition(" ")[2], []
        elif word == "status":
            steps[name] = ("\n".join(text), int(rest))
        else:
            text.append(line)
    return count * size, steps
