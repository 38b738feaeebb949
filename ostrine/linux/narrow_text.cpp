#include "ostrine/common/narrow_text.h"

namespace ostrine {

// Narrow text is UTF-8 here, whatever the process's locale says.
std::size_t NarrowPrefix(std::string_view text, std::size_t limit) { return Utf8Prefix(text, limit); }

}  // namespace ostrine
