"""A system bus below a folder, with a made-up service manager and Bluetooth service on it.

    mock_services.py ROOT SERVICE...

SERVICE is systemd, bluez or silent (a Bluetooth service that never answers). Says "ready" once all are there
and ends, with everything that it has started, when its standard input does.
"""
import os
import signal
import subprocess
import sys
import time

import dbus

CONFIGURATION = """<busconfig><type>session</type><listen>unix:path={}</listen>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>"""
LONGEST_SECONDS = 120
MOCK = "org.freedesktop.DBus.Mock"
children = []


def start(*arguments, **options):
    children.append(subprocess.Popen(arguments, **options))
    return children[-1]


def start_bus(root):
    folder = os.path.join(root, "run/dbus")
    os.makedirs(folder, exist_ok=True)
    configuration = os.path.join(root, "bus.conf")
    with open(configuration, "w", encoding="ascii") as file:
        file.write(CONFIGURATION.format(os.path.join(folder, "system_bus_socket")))
    start("dbus-daemon", "--nofork", "--nopidfile", "--config-file=" + configuration,
          stderr=subprocess.DEVNULL)


def connect(address):
    for _ in range(500):
        try:
            return dbus.bus.BusConnection(address)
        except dbus.DBusException:
            time.sleep(0.02)
    sys.exit("no bus")


def start_mock(bus, name, path, interface, *options):
    start(sys.executable, "-m", "dbusmock", "--system", *options, name, path, interface,
          stdout=subprocess.DEVNULL)
    for _ in range(500):
        if bus.name_has_owner(name):
            return dbus.Interface(bus.get_object(name, path), MOCK)
        time.sleep(0.02)
    sys.exit("no service " + name)


def add_systemd(bus):
    path = "/org/freedesktop/systemd1"
    interface = "org.freedesktop.systemd1.Manager"
    mock = start_mock(bus, "org.freedesktop.systemd1", path, interface)

    def unit(name, load, active, sub, path="/unit"):
        return (f"('{name}', 'About {name}', '{load}', '{active}', '{sub}', '', "
                f"dbus.ObjectPath('{path}'), dbus.UInt32(0), '', dbus.ObjectPath('/'))")

    for held in "frozen", "running":
        mock.AddObject("/unit/" + held, "org.freedesktop.systemd1.Unit", {"FreezerState": held}, [])

    units = ", ".join([unit("ssh.service", "loaded", "active", "running"),
                       unit("starting.service", "loaded", "activating", "start"),
                       unit("stopping.service", "loaded", "deactivating", "stop-sigterm"),
                       unit("broken.service", "loaded", "failed", "failed"),
                       unit("frozen.service", "loaded", "active", "running", "/unit/frozen"),
                       unit("thawed.service", "loaded", "active", "frozen", "/unit/running"),
                       unit("mentioned.service", "not-found", "inactive", "dead"),
                       unit("WpnUserService_1a2b.service", "loaded", "active", "running")])
    mock.AddMethod(interface, "ListUnitsByPatterns", "asas", "a(ssssssouso)",
                   f"assert list(args[1]) == ['*.service']; ret = [{units}]")
    files = [("/usr/lib/systemd/system/ssh.service", "enabled"),
             ("/usr/lib/systemd/system/idle.service", "disabled"),
             ("/usr/lib/systemd/system/getty@.service", "enabled"),
             ("/etc/systemd/system/sshd.service", "alias")]
    mock.AddMethod(interface, "ListUnitFilesByPatterns", "asas", "a(ss)", f"ret = {files}")


def add_bluez(bus):
    mock = start_mock(bus, "org.bluez", "/", "org.bluez.Mock", "--is-object-manager")
    mock.AddObject("/org/bluez/hci0", "org.bluez.Adapter1", {"Address": "00:11:22:33:44:55"}, [])

    def device(address, properties):
        path = "/org/bluez/hci0/dev_" + address.replace(":", "_")
        facts = {"Address": address, "AddressType": "public", "Alias": address.replace(":", "-"),
                 "UUIDs": dbus.Array(["0000110b-0000-1000-8000-00805f9b34fb"]), "Paired": True,
                 "ManufacturerData": dbus.Dictionary({dbus.UInt16(76): dbus.Array([dbus.Byte(1)])},
                                                     signature="qv")}
        facts.update(properties)
        mock.AddObject(path, "org.bluez.Device1", facts, [])

    device("AA:BB:CC:DD:EE:FF", {"Alias": "B\u00fcro Mouse", "Icon": "input-mouse", "AddressType": "random",
                                 "Appearance": dbus.UInt16(0x3C2)})
    device("10:20:30:40:50:60", {"Alias": "Headset", "Class": dbus.UInt32(0x240404)})
    device("10:20:30:40:50:61", {"Paired": False, "Connected": False})
    device("10:20:30:40:50:62", {"Paired": False, "Connected": True, "Appearance": dbus.UInt16(0x3C1)})


def add_silent(bus):
    # It takes the name, and stops before it could answer.
    start_mock(bus, "org.bluez", "/", "org.bluez.Mock", "--is-object-manager")
    children[-1].send_signal(signal.SIGSTOP)


def main():
    root = sys.argv[1]
    address = "unix:path=" + os.path.join(root, "run/dbus/system_bus_socket")
    signal.signal(signal.SIGALRM, lambda *_: sys.exit("it took too long"))
    signal.alarm(LONGEST_SECONDS)
    os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = address
    try:
        start_bus(root)
        bus = connect(address)
        for service in sys.argv[2:]:
            {"systemd": add_systemd, "bluez": add_bluez, "silent": add_silent}[service](bus)
        print("ready", flush=True)
        sys.stdin.read()
    finally:
        for child in children:
            child.kill()
            child.wait()


main()
