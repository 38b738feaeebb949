"""A Bluetooth service for tests. Devices that are "unknown" come into sight with an inquiry and go with its end.

Loaded by python3-dbusmock.
"""
import dbus
from dbusmock import MOCK_IFACE, mockobject

BUS_NAME = 'org.bluez'
MAIN_OBJ = '/'
IS_OBJECT_MANAGER = True
SYSTEM_BUS = True

ADAPTER = 'org.bluez.Adapter1'
DEVICE = 'org.bluez.Device1'


def load(mock, _parameters):
    mock.requests = []
    mock.waiting = []
    mock.refused = False


def root():
    return mockobject.objects['/']


@dbus.service.method(ADAPTER, in_signature='a{sv}')
def SetDiscoveryFilter(self, wanted):
    root().requests.append('filter ' + str(wanted.get('Transport')))


@dbus.service.method(ADAPTER)
def StartDiscovery(self):
    if root().refused:
        raise dbus.exceptions.DBusException('refused', name='org.bluez.Error.NotReady')
    root().requests.append('start')
    for path, facts in root().waiting:
        root().AddObject(path, DEVICE, facts, [])


@dbus.service.method(ADAPTER)
def StopDiscovery(self):
    root().requests.append('stop')
    for path, _ in root().waiting:
        root().RemoveObject(path)


@dbus.service.method(MOCK_IFACE, in_signature='sss')
def AddAdapter(self, name, address, powered):
    self.AddObject('/org/bluez/' + name, ADAPTER, {
        'Address': address, 'Alias': 'Laptop of ' + name, 'Class': dbus.UInt32(0x6C010C),
        'Manufacturer': dbus.UInt16(2), 'Powered': powered == 'on', 'UUIDs': dbus.Array([], signature='s')}, [
            ('SetDiscoveryFilter', 'a{sv}', '', SetDiscoveryFilter), ('StartDiscovery', '', '', StartDiscovery),
            ('StopDiscovery', '', '', StopDiscovery)])


@dbus.service.method(MOCK_IFACE, in_signature='sss')
def AddRemote(self, adapter, address, marks):
    """`marks`: "classic" or "low-energy", and any of paired, trusted, connected, unknown."""
    marks = marks.split()
    facts = {'Address': address, 'Alias': 'Device ' + address, 'Paired': 'paired' in marks,
             'Trusted': 'trusted' in marks, 'Connected': 'connected' in marks,
             'AddressType': 'random' if 'low-energy' in marks else 'public',
             'ManufacturerData': dbus.Dictionary({dbus.UInt16(6): dbus.Array([dbus.Byte(1)])}, signature='qv')}
    if 'classic' in marks:
        facts['Class'] = dbus.UInt32(0x240404)
    path = f'/org/bluez/{adapter}/dev_' + address.replace(':', '_')
    if 'unknown' in marks:
        self.waiting.append((path, {**facts, 'RSSI': dbus.Int16(-60)}))
    else:
        self.AddObject(path, DEVICE, facts, [])


@dbus.service.method(MOCK_IFACE)
def Refuse(self):
    self.refused = True


@dbus.service.method(dbus.PROPERTIES_IFACE, in_signature='ssv')
def RefusedSet(_self, _interface, _name, _value):
    raise dbus.exceptions.DBusException('stuck', name='org.bluez.Error.Failed')


@dbus.service.method(MOCK_IFACE)
def RefuseToSwitch(_self):
    mockobject.DBusMockObject.Set = RefusedSet


@dbus.service.method(MOCK_IFACE, out_signature='s')
def Requests(self):
    return ','.join(self.requests)
