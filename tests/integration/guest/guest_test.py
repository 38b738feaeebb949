"""The report program on a machine of chosen parts: what it tells of them, and what it repairs."""
import unittest

from repair_test import Repair  # noqa: F401
from report_test import Report  # noqa: F401
from wifi_test import Wifi  # noqa: F401

if __name__ == "__main__":
    unittest.main()
