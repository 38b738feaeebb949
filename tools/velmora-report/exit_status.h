#pragma once

namespace report {

enum ExitStatus {
  kDone = 0,
  kFailed = 1,
  kUnusable = 2,  ///< the arguments, or the machine file
  kRefused = 3,   ///< a repair that would take away what the machine cannot do without
};

}  // namespace report
