#pragma once

#include <string>

#include "velmora-report/report.h"

namespace report {

/// The report for programs: one JSON object, a member for each section by its key, in it one for each row and
/// list. Values that the machine does not give are null. UTF-8.
std::string WriteJson(const Report& report);

}  // namespace report
