#include <dlfcn.h>

#include "logging/log_writer.h"

namespace velmora::logging {
namespace {

const LogWriter* LoadLogWriter() noexcept {
  void* const library = dlopen(VELMORA_LOG_WRITER, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) return nullptr;
  const auto* const writer = static_cast<const LogWriter*>(dlsym(library, "velmora_log_writer"));
  dlclose(library);  // it stays all the same
  return writer;
}

}  // namespace

const LogWriter* FindLogWriter() noexcept {
  static const LogWriter* const writer = LoadLogWriter();
  return writer;
}

}  // namespace velmora::logging
