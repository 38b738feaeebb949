#include "velmora-report/vediocard_section.h"

#include <velmora/vediocard.h>

namespace report {
namespace {

/// The facts of one card, which is absent when it has no name.
Rows VideoRows(const std::wstring& name, const std::wstring& status, const std::wstring& version,
               const std::wstring& date, unsigned long memory, unsigned long error) {
  return {
      {"name", "Name", TextValue(name)},
      {"status", "Status", TextValue(status)},
      {"driver_version", "Driver version", TextValue(version)},
      {"driver_date", "Driver date", TextValue(date)},
      {"memory_mib", "Memory", NumberValue(memory), "MiB"},
      {"error_code", "Problem code", name.empty() ? Value(Absent{}) : Value(std::uint64_t{error})},
  };
}

Rows InternalCard(CVediocard& cards) {
  return VideoRows(cards.GetInternalVideoCardName(), cards.GetInternalVideoCardStatus(),
                   cards.GetInternalVideoCardDriverVersion(), cards.GetInternalVideoCardDriverDate(),
                   cards.GetInternalVedioCardMemorySize(), cards.GetInternalVedioCardErrorCode());
}

Rows IndependentCard(CVediocard& cards) {
  return VideoRows(cards.GetIndependentVideoCardName(), cards.GetIndependentVideoCardStatus(),
                   cards.GetIndependentVideoCardDriverVersion(), cards.GetIndependentVideoCardDriverDate(),
                   cards.GetIndependentVedioCardMemorySize(), cards.GetIndependentVedioCardErrorCode());
}

}  // namespace

Section VediocardSection() {
  CVediocard cards;
  return {
      .key = "vediocard",
      .title = "Video and display",
      .rows =
          {
              {"card_count", "Video cards", NumberValue(cards.GetVideoCardNumber())},
              {"resolution", "Resolution", TextValue(cards.GetDisplayResolution())},
              {"horizontal", "Width", NumberValue(cards.GetHorizontalResolution()), "pixels"},
              {"vertical", "Height", NumberValue(cards.GetVerticalResolution()), "pixels"},
              {"refresh_rate_hz", "Refresh rate", NumberValue(cards.GetRefreshRate()), "Hz"},
              {"bits_per_pixel", "Colour depth", NumberValue(cards.GetBitPerPixel()), "bits"},
              {"monitor", "Monitor", TextValue(cards.GetMonitorCaption())},
          },
      .lists = {{.key = "internal", .item_title = "Internal card", .items = {InternalCard(cards)}},
                {.key = "independent", .item_title = "Independent card", .items = {IndependentCard(cards)}}},
  };
}

}  // namespace report
