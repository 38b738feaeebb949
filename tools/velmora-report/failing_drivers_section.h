#pragma once

#include <string>

#include "velmora-report/report.h"

namespace report {

/// Which devices have a failing driver, and what is wrong with each.
Section FailingDriversSection();

/// The same as a list under `key`, as it is now.
List FailingDriversList(const std::string& key, const std::string& item_title);

}  // namespace report
