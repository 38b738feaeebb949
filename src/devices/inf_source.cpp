#include "devices/inf_source.h"

#include <algorithm>
#include <utility>

namespace velmora::devices {

bool IsBareFileName(std::wstring_view name) noexcept {
  return !name.empty() && name != L"." && name != L".." &&
         name.find_first_of(L"\\/:") == std::wstring_view::npos;
}

void PhraseSearch::Take(std::string_view piece) {
  if (is_found_) return;
  const std::size_t kept = phrase_.size() - 1;  // a phrase across two pieces has at most so much in each
  tail_ += piece.substr(0, kept);
  is_found_ = tail_.find(phrase_) != std::string::npos || piece.find(phrase_) != std::string_view::npos;
  if (piece.size() > kept) tail_ = piece.substr(piece.size() - kept);
  tail_.erase(0, tail_.size() - std::min(tail_.size(), kept));
}

void PhraseSearch::Restart() {
  tail_.clear();
  is_found_ = false;
}

bool ForeignModelScan::Take(std::string_view bytes) {
  while (!is_over_ && !bytes.empty()) {
    const std::size_t length = bytes.find('\n');
    TakePartOfLine(bytes.substr(0, length));
    if (length == std::string_view::npos) break;
    EndLine();
    bytes.remove_prefix(length + 1);
  }
  return !is_over_;
}

std::optional<std::string> ForeignModelScan::Finish() {
  if (!is_over_) EndLine();
  is_over_ = true;
  return is_foreign_ ? std::optional(std::move(line_)) : std::nullopt;
}

void ForeignModelScan::TakePartOfLine(std::string_view part) {
  model_.Take(part);
  mark_.Take(part);
  line_ += part.substr(0, kMostBytesOfLine - line_.size());
}

void ForeignModelScan::EndLine() {
  const bool names_model = model_.IsFound();
  is_foreign_ = names_model && !mark_.IsFound();
  is_over_ = is_foreign_ || (is_in_run_ && !names_model);
  is_in_run_ = names_model;
  if (is_over_) return;
  line_.clear();
  model_.Restart();
  mark_.Restart();
}

}  // namespace velmora::devices
