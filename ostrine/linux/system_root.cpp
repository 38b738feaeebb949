#include "ostrine/linux/system_root.h"

namespace ostrine {

[[gnu::weak]] const char* SystemRoot() noexcept { return "/"; }

}  // namespace ostrine
