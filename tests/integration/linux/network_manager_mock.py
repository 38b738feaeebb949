"""NetworkManager for tests: the part of its bus interface that is read. Loaded by python3-dbusmock."""
import dbus
from dbusmock import MOCK_IFACE, mockobject

BUS_NAME = 'org.freedesktop.NetworkManager'
MAIN_OBJ = '/org/freedesktop/NetworkManager'
MAIN_IFACE = 'org.freedesktop.NetworkManager'
SYSTEM_BUS = True

DEVICE = 'org.freedesktop.NetworkManager.Device'
ACTIVE = 'org.freedesktop.NetworkManager.Connection.Active'
SETTINGS = 'org.freedesktop.NetworkManager.Settings.Connection'
DHCP = 'org.freedesktop.NetworkManager.DHCP4Config'


def load(mock, _parameters):
    mock.AddProperties(MAIN_IFACE, {'State': dbus.UInt32(20), 'Connectivity': dbus.UInt32(1)})


@dbus.service.method(MAIN_IFACE, in_signature='s', out_signature='o')
def GetDeviceByIpIface(_self, name):
    path = f'{MAIN_OBJ}/Devices/{name}'
    if path not in mockobject.objects:
        raise dbus.exceptions.DBusException('none', name=MAIN_IFACE + '.UnknownDevice')
    return path


@dbus.service.method(MOCK_IFACE, in_signature='sss')
def AddInterface(self, name, method, expiry):
    """`method`: of the connection's settings, "unmanaged" or "disconnected"; `expiry`: of the lease, if any."""
    connected = method not in ('unmanaged', 'disconnected')
    active, settings, lease = (f'{MAIN_OBJ}/{kind}/{name}' for kind in ('Active', 'Settings', 'DHCP4Config'))
    self.AddObject(f'{MAIN_OBJ}/Devices/{name}', DEVICE, {
        'Managed': method != 'unmanaged', 'Interface': name,
        'ActiveConnection': dbus.ObjectPath(active if connected else '/'),
        'Dhcp4Config': dbus.ObjectPath(lease if expiry else '/')}, [])
    self.AddObject(active, ACTIVE, {'Connection': dbus.ObjectPath(settings)}, [])
    groups = (f"{{'connection': {{'id': '{name}', 'timestamp': dbus.UInt64(5)}}, 'ipv4': "
              f"{{'addresses': dbus.Array([], signature='au'), 'method': '{method}'}}}}")
    self.AddObject(settings, SETTINGS, {}, [('GetSettings', '', 'a{sa{sv}}', f'ret = {groups}')])
    options = {'expiry': expiry, 'dhcp_lease_time': '3600', 'dhcp_server_identifier': '192.0.2.1',
               'requested_routers': '1', 'private': dbus.UInt32(7)}
    self.AddObject(lease, DHCP, {'Options': dbus.Dictionary(options, signature='sv')}, [])


@dbus.service.method(MOCK_IFACE, in_signature='ss')
def SetState(self, state, connectivity):
    self.UpdateProperties(MAIN_IFACE, {'State': dbus.UInt32(int(state)), 'Connectivity': dbus.UInt32(int(connectivity))})
