#include "logging/log_writer.h"

namespace velmora::logging {

const LogWriter* FindLogWriter() noexcept { return &velmora_log_writer; }

}  // namespace velmora::logging
