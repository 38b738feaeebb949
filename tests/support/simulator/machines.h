#pragma once

#include <vector>

#include "simulator/machine.h"

namespace velmora::testing {

/// A blank machine that has these devices.
simulator::Machine MachineWithDevices(std::vector<simulator::Device> devices);

}  // namespace velmora::testing
