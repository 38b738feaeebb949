"""A service manager for tests: the part of systemd's bus interface that service control uses.

Loaded by python3-dbusmock. Unknown units answer as systemd's do: they load as "not-found", and a name that no unit
can have is refused.
"""
import re

import dbus
from dbusmock import MOCK_IFACE, mockobject

BUS_NAME = 'org.freedesktop.systemd1'
MAIN_OBJ = '/org/freedesktop/systemd1'
MAIN_IFACE = 'org.freedesktop.systemd1.Manager'
SYSTEM_BUS = True

UNIT_IFACE = 'org.freedesktop.systemd1.Unit'


def load(mock, _parameters):
    mock.units = {}
    mock.unit_files = []
    mock.jobs = 0
    mock.refusal = ''
    mock.requests = []


def bus_error(name):
    return dbus.exceptions.DBusException('refused', name=name)


def add_unit(mock, name, load_state, active_state):
    path = f'{MAIN_OBJ}/unit/_{len(mock.units)}'
    mock.units[str(name)] = path
    mock.AddObject(path, UNIT_IFACE, {
        'Id': name, 'LoadState': load_state, 'ActiveState': active_state, 'FreezerState': 'running',
        'CanStop': True, 'RequiredBy': dbus.Array([], signature='s'),
        'RequisiteOf': dbus.Array([], signature='s'), 'BoundBy': dbus.Array([], signature='s')}, [])
    return path


def change(mock, name, verb, active_state):
    if mock.refusal:
        raise bus_error(mock.refusal)
    mock.requests.append(f'{verb} {name}')
    unit = mockobject.objects[mock.units[str(name)]]
    if unit.props[UNIT_IFACE]['LoadState'] == 'masked':
        raise bus_error('org.freedesktop.systemd1.UnitMasked')
    unit.UpdateProperties(UNIT_IFACE, {'ActiveState': active_state})
    mock.jobs += 1
    return f'{MAIN_OBJ}/job/{mock.jobs}'


@dbus.service.method(MAIN_IFACE, in_signature='s', out_signature='o')
def LoadUnit(self, name):
    if not re.fullmatch(r'[A-Za-z0-9:_.\\@-]+', name):
        raise bus_error('org.freedesktop.DBus.Error.InvalidArgs')
    return self.units.get(str(name)) or add_unit(self, name, 'not-found', 'inactive')


@dbus.service.method(MAIN_IFACE, in_signature='', out_signature='a(ss)')
def ListUnitFiles(self):
    return [('/lib/systemd/system/' + name, 'disabled') for name in self.unit_files]


@dbus.service.method(MAIN_IFACE, in_signature='', out_signature='a(ssssssouso)')
def ListUnits(self):
    return [(name, '', 'loaded', 'active', 'running', '', path, 0, '', '/') for name, path in self.units.items()]


@dbus.service.method(MAIN_IFACE, in_signature='ss', out_signature='o')
def StartUnit(self, name, _mode):
    return change(self, name, 'start', 'active')


@dbus.service.method(MAIN_IFACE, in_signature='ss', out_signature='o')
def StopUnit(self, name, _mode):
    return change(self, name, 'stop', 'inactive')


@dbus.service.method(MOCK_IFACE, in_signature='sss')
def AddMockUnit(self, name, load_state, active_state):
    add_unit(self, name, load_state, active_state)


@dbus.service.method(MOCK_IFACE, in_signature='s')
def AddUnitFile(self, name):
    self.unit_files.append(str(name))
    add_unit(self, name, 'loaded', 'inactive')


@dbus.service.method(MOCK_IFACE, in_signature='sss')
def SetText(self, name, key, value):
    mockobject.objects[self.units[str(name)]].UpdateProperties(UNIT_IFACE, {key: value})


@dbus.service.method(MOCK_IFACE, in_signature='ss')
def SetRequiredBy(self, name, other):
    units = {'RequiredBy': dbus.Array([other], signature='s')}
    mockobject.objects[self.units[str(name)]].UpdateProperties(UNIT_IFACE, units)


@dbus.service.method(MOCK_IFACE, in_signature='s')
def ForbidStop(self, name):
    mockobject.objects[self.units[str(name)]].UpdateProperties(UNIT_IFACE, {'CanStop': dbus.Boolean(False)})


@dbus.service.method(MOCK_IFACE, in_signature='s')
def Refuse(self, error_name):
    self.refusal = str(error_name)


@dbus.service.method(MOCK_IFACE, in_signature='', out_signature='s')
def Requests(self):
    return ','.join(self.requests)
