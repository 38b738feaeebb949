#include "tests/support/simulator/machines.h"

#include <utility>

namespace velmora::testing {

simulator::Machine MachineWithDevices(std::vector<simulator::Device> devices) {
  auto machine = simulator::BlankMachine();
  machine.devices = std::move(devices);
  return machine;
}

}  // namespace velmora::testing
