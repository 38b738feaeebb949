#include "ostrine/common/wql.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "ostrine/common/wql_text.h"

namespace ostrine {
namespace {

constexpr std::wstring_view kKeywords[] = {L"SELECT", L"FROM", L"WHERE", L"AND", L"OR",
                                           L"NOT",    L"LIKE", L"IS",    L"NULL"};

constexpr bool IsWideDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
constexpr bool IsWordStart(wchar_t c) {
  return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c == L'_';
}
constexpr bool IsWordPart(wchar_t c) { return IsWordStart(c) || IsWideDigit(c); }
constexpr bool IsSpace(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

bool IsKeyword(std::wstring_view word) {
  return std::any_of(std::begin(kKeywords), std::end(kKeywords),
                     [&](std::wstring_view keyword) { return EqualIgnoringCase(word, keyword); });
}

/// Takes a query's words, symbols and literals from its front. What does not fit is left where it is.
class Scanner {
 public:
  explicit Scanner(std::wstring_view text) : rest_(text) { SkipSpace(); }

  bool AtEnd() const { return rest_.empty(); }

  bool TakeKeyword(std::wstring_view keyword) {
    if (!EqualIgnoringCase(Word(), keyword)) return false;
    Advance(keyword.size());
    return true;
  }

  bool TakeSymbol(std::wstring_view symbol) {
    if (!rest_.starts_with(symbol)) return false;
    Advance(symbol.size());
    return true;
  }

  bool TakeName(std::wstring& name) {
    const std::wstring_view word = Word();
    if (word.empty() || IsKeyword(word)) return false;
    name = word;
    Advance(word.size());
    return true;
  }

  bool TakeNumber(std::uint64_t& number) {
    constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t value = 0;
    std::size_t length = 0;
    for (; length < rest_.size() && IsWideDigit(rest_[length]); ++length) {
      const auto digit = static_cast<std::uint64_t>(rest_[length] - L'0');
      if (value > (kMax - digit) / 10) return false;
      value = value * 10 + digit;
    }
    if (length == 0 || (length < rest_.size() && IsWordPart(rest_[length]))) return false;
    number = value;
    Advance(length);
    return true;
  }

  bool TakeText(std::wstring& text) {
    if (rest_.empty() || rest_.front() != L'\'') return false;
    std::wstring value;
    for (std::size_t i = 1; i < rest_.size(); ++i) {
      if (rest_[i] == L'\'') {
        text = std::move(value);
        Advance(i + 1);
        return true;
      }
      if (rest_[i] == L'\\') {
        ++i;
        if (i == rest_.size() || !IsEscapable(rest_[i])) return false;
      }
      value.push_back(rest_[i]);
    }
    return false;
  }

 private:
  static bool IsEscapable(wchar_t c) { return c == L'\\' || c == L'\'' || c == L'"'; }

  std::wstring_view Word() const {
    if (rest_.empty() || !IsWordStart(rest_.front())) return {};
    return rest_.substr(0, static_cast<std::size_t>(std::find_if_not(rest_.begin(), rest_.end(), IsWordPart) -
                                                    rest_.begin()));
  }

  void Advance(std::size_t length) {
    rest_.remove_prefix(length);
    SkipSpace();
  }

  void SkipSpace() {
    while (!rest_.empty() && IsSpace(rest_.front())) rest_.remove_prefix(1);
  }

  std::wstring_view rest_;
};

bool TakeLiteral(Scanner& scanner, WqlValue& literal) {
  std::uint64_t number = 0;
  if (scanner.TakeNumber(number)) {
    literal = number;
    return true;
  }
  std::wstring text;
  if (!scanner.TakeText(text)) return false;
  literal = std::move(text);
  return true;
}

bool TakePattern(Scanner& scanner, WqlValue& literal) {
  std::wstring pattern;
  if (!scanner.TakeText(pattern) || pattern.find(L'[') != std::wstring::npos) return false;
  literal = std::move(pattern);
  return true;
}

bool TakeCondition(Scanner& scanner, WqlCondition& condition) {
  if (!scanner.TakeName(condition.property)) return false;
  if (scanner.TakeSymbol(L"=")) {
    condition.comparison = WqlOperator::kEqual;
    return TakeLiteral(scanner, condition.literal);
  }
  if (scanner.TakeSymbol(L"<>")) {
    condition.comparison = WqlOperator::kNotEqual;
    return TakeLiteral(scanner, condition.literal);
  }
  if (scanner.TakeKeyword(L"LIKE")) {
    condition.comparison = WqlOperator::kLike;
    return TakePattern(scanner, condition.literal);
  }
  if (!scanner.TakeKeyword(L"IS")) return false;
  condition.comparison = scanner.TakeKeyword(L"NOT") ? WqlOperator::kIsNotNull : WqlOperator::kIsNull;
  return scanner.TakeKeyword(L"NULL");
}

bool Holds(const WqlCondition& condition, const WqlValue& value) {
  const bool is_null = std::holds_alternative<std::monostate>(value);
  if (condition.comparison == WqlOperator::kIsNull) return is_null;
  if (condition.comparison == WqlOperator::kIsNotNull) return !is_null;
  if (is_null || value.index() != condition.literal.index()) return false;

  const auto* text = std::get_if<std::wstring>(&value);
  const auto* literal = std::get_if<std::wstring>(&condition.literal);
  if (condition.comparison == WqlOperator::kLike)
    return text != nullptr && literal != nullptr && MatchesLike(*text, *literal);
  const bool equal = text && literal ? EqualIgnoringCase(*text, *literal) : value == condition.literal;
  return equal == (condition.comparison == WqlOperator::kEqual);
}

}  // namespace

std::optional<WqlQuery> ParseWql(std::wstring_view text) {
  Scanner scanner(text);
  WqlQuery query;
  if (!scanner.TakeKeyword(L"SELECT") || !scanner.TakeName(query.property)) return std::nullopt;
  if (!scanner.TakeKeyword(L"FROM") || !scanner.TakeName(query.class_name)) return std::nullopt;
  if (scanner.TakeKeyword(L"WHERE")) {
    do {
      if (!TakeCondition(scanner, query.conditions.emplace_back())) return std::nullopt;
    } while (scanner.TakeKeyword(L"AND"));
  }
  if (!scanner.AtEnd()) return std::nullopt;
  return query;
}

bool MatchesConditions(const WqlQuery& query, const WqlRow& row) {
  return std::all_of(query.conditions.begin(), query.conditions.end(), [&](const WqlCondition& condition) {
    return Holds(condition, row(condition.property));
  });
}

WqlValue SelectFirst(const WqlQuery& query, const WqlTable& table) {
  WqlValue selected;
  bool found = false;
  table([&](const WqlRow& row) {
    // A table that goes on after it was told to stop must not replace the first row.
    if (!found && MatchesConditions(query, row)) {
      found = true;
      selected = row(query.property);
    }
    return !found;
  });
  return selected;
}

WqlValue FindProperty(const WqlRecord& record, std::wstring_view property) {
  const auto found = std::find_if(record.begin(), record.end(), [&](const auto& entry) {
    return EqualIgnoringCase(entry.first, property);
  });
  return found == record.end() ? WqlValue{} : found->second;
}

std::wstring TextOf(const WqlValue& value) {
  if (const auto* text = std::get_if<std::wstring>(&value)) return *text;
  if (const auto* number = std::get_if<std::uint64_t>(&value)) return std::to_wstring(*number);
  return {};
}

std::uint32_t NumberOf(const WqlValue& value) noexcept {
  const auto* number = std::get_if<std::uint64_t>(&value);
  if (!number || *number > std::numeric_limits<std::uint32_t>::max()) return 0;
  return static_cast<std::uint32_t>(*number);
}

}  // namespace ostrine
