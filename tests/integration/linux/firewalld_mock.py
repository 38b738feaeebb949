"""firewalld for tests: its name on the bus. Loaded by python3-dbusmock."""
BUS_NAME = 'org.fedoraproject.FirewallD1'
MAIN_OBJ = '/org/fedoraproject/FirewallD1'
MAIN_IFACE = 'org.fedoraproject.FirewallD1'
SYSTEM_BUS = True


def load(_mock, _parameters):
    pass
