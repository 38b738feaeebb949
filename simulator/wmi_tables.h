/// What the simulated CWMI stands on: its connection's parts and the rows of its classes.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "ostrine/common/wql.h"
#include "platform/ostrine/connection_part.h"
#include "simulator/machine.h"

namespace simulator {

class Session;

using WqlRecords = std::vector<ostrine::WqlRecord>;

/// A part with one owner. It counts as an open handle until its last owner releases it; a release too many is
/// a problem.
ConnectionPart* OpenConnectionPart(Session& session);

/// The rows of a class: processes or services as they are now, then those that are written in the machine.
/// None when the machine has no script for the class.
std::optional<WqlRecords> MakeWmiTable(const Machine& machine, std::wstring_view class_name);

/// The rows as the query reader takes them.
ostrine::WqlTable VisitRows(const WqlRecords& records);

}  // namespace simulator
