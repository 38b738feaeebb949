/// What an INF file says about whose driver package it belongs to.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::devices {

/// Whether the name of an INF file is nothing but a name, so that behind a folder it means a file of that
/// folder: no separator, no drive or stream, not the folder itself or the one above.
bool IsBareFileName(std::wstring_view name) noexcept;

/// At most so many bytes of a line are given out. No line that the system accepts comes near.
inline constexpr std::size_t kMostBytesOfLine = 65536;

/// Whether a phrase occurs in a text that comes in pieces. Keeps less of the text than the phrase is long.
class PhraseSearch {
 public:
  explicit PhraseSearch(std::string_view phrase) : phrase_(phrase) {}

  /// Takes the next piece of the text.
  void Take(std::string_view piece);
  bool IsFound() const { return is_found_; }

  /// Forgets the text; another one begins.
  void Restart();

 private:
  std::string_view phrase_;
  std::string tail_;  ///< the end of what has come: one byte less than the phrase
  bool is_found_ = false;
};

/// Looks in an INF file, as it is read, for a line that names a model of the Realtek audio function and lacks
/// the mark of the machine's maker. Only the first unbroken run of lines with such models is looked at. Lines
/// end at "\n" and are compared as bytes. Memory does not grow with the file or its lines.
class ForeignModelScan {
 public:
  /// Takes the file's next bytes. False when what follows does not matter any more.
  bool Take(std::string_view bytes);

  /// Tells, at the end of the file or when Take has said enough, the line without its line end; nothing when
  /// there is no such line.
  std::optional<std::string> Finish();

 private:
  void TakePartOfLine(std::string_view part);
  void EndLine();

  PhraseSearch model_{"AUDIO\\FUNC_01&VEN_10EC"};
  PhraseSearch mark_{"SUBSYS_7B2D"};
  std::string line_;  ///< the line that is being taken, up to kMostBytesOfLine
  bool is_in_run_ = false;
  bool is_over_ = false;
  bool is_foreign_ = false;  ///< the line is the one; it is kept
};

}  // namespace velmora::devices
