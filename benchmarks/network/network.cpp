/// Makes the report's network sections, so many times in one process: network ROUNDS
///
/// Prints how much came back, so that nothing is left out as unused. With 0 rounds it measures what the
/// process itself costs.
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "velmora-report/network_section.h"
#include "velmora-report/networkcard_section.h"

namespace {

std::size_t RowsIn(const report::Section& section) {
  std::size_t rows = section.rows.size();
  for (const auto& list : section.lists) {
    for (const auto& item : list.items) rows += item.size();
  }
  return rows;
}

}  // namespace

int main(int argc, char** argv) {
  const long rounds = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 1;
  std::size_t rows = 0;
  for (long round = 0; round < rounds; ++round) {
    rows += RowsIn(report::NetworkCardSection()) + RowsIn(report::NetworkSection());
  }
  std::printf("%zu\n", rows);
}
