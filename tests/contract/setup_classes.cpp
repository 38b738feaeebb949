#include "platform/ostrine/setup_class.h"
#include "tests/contract/backend.h"

namespace contract {

std::vector<GUID> SetupClasses() {
  namespace setup_class = velmora::setup_class;
  return {setup_class::kNet,      setup_class::kBluetooth, setup_class::kBiometric, setup_class::kMedia,
          setup_class::kKeyboard, setup_class::kDisplay,   setup_class::kUsb,       setup_class::kSystem};
}

}  // namespace contract
