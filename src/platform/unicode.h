/// Conversions between the forms of Unicode text that meet at the library's edges. Pure and bounded: they
/// read and write only the memory that they are given, take time linear in it and never fail, because what is
/// not well-formed becomes U+FFFD.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmora::unicode {

inline constexpr char32_t kReplacement = 0xFFFD;

/// Takes the next character off the front of `text`, which must not be empty. A broken sequence counts as one
/// U+FFFD for each maximal part that could have begun a character.
char32_t TakeUtf8(std::string_view& text) noexcept;

/// Writes `character` to the front of `output` in the system's wide form (UTF-32 where `wchar_t` has four
/// bytes, else UTF-16) and returns the number of units written; 0 when they do not fit.
std::size_t PutWide(char32_t character, std::span<wchar_t> output) noexcept;

/// Writes UTF-8 text to the front of `output` in the system's wide form and returns the number of units
/// written; nothing when they do not fit.
std::optional<std::size_t> PutWideFromUtf8(std::string_view text, std::span<wchar_t> output) noexcept;

/// Appends `character` to `text` in the system's wide form.
void AppendWide(char32_t character, std::wstring& text);

/// Wide text of UTF-8 text.
std::wstring WideFromUtf8(std::string_view text);

/// Wide text of UTF-16 text; a lone surrogate becomes U+FFFD.
std::wstring WideFromUtf16(std::span<const char16_t> text);

/// UTF-8 text of wide text; a lone surrogate or a number that is no character becomes U+FFFD.
std::string Utf8FromWide(std::wstring_view text);

/// UTF-16 text of UTF-8 text.
std::u16string Utf16FromUtf8(std::string_view text);

}  // namespace velmora::unicode
