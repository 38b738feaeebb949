/// A small, strict reader of WMI queries, and their evaluation over tables that a caller supplies.
///
///     SELECT property FROM class [WHERE condition [AND condition]...]
///     condition:  property = literal | property <> literal | property LIKE 'pattern'
///               | property IS NULL | property IS NOT NULL
///
/// - Keywords, class names and property names are ASCII words and match in either case; the grammar's own
///   keywords are not names.
/// - A literal is an unsigned decimal number below 2^64 or a text in single quotes. In a text a backslash
///   stands before a backslash or a quote (single or double) and gives that character; before anything else
///   it is an error. Any other character, a zero included, is itself.
/// - Between words, symbols and literals stand any number of spaces, tabs and line ends.
/// - A pattern knows '%' and '_'. WMI's character sets are not part of this grammar, so a pattern that holds
///   '[' is an error.
/// Everything else (OR, parentheses, several properties, a text behind the end) is an error too: such a query
/// is none and selects no row, so that a name which breaks out of its quotes cannot widen a query.
///
/// Nothing here throws but for want of memory. Functions keep no state; separate calls are independent.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ostrine {

/// What a row has for a property: nothing (null), a text, or a number.
using WqlValue = std::variant<std::monostate, std::wstring, std::uint64_t>;

enum class WqlOperator { kEqual, kNotEqual, kLike, kIsNull, kIsNotNull };

struct WqlCondition {
  std::wstring property;
  WqlOperator comparison = WqlOperator::kIsNull;
  WqlValue literal;  ///< null for kIsNull and kIsNotNull
};

struct WqlQuery {
  std::wstring property;
  std::wstring class_name;
  std::vector<WqlCondition> conditions;  ///< all must hold
};

/// The query that `text` states, or none if `text` is not exactly one query of the grammar above.
std::optional<WqlQuery> ParseWql(std::wstring_view text);

/// One row: answers the value of a property by its name, which arrives as the query spells it. A property
/// that the row does not know is null.
using WqlRow = std::function<WqlValue(std::wstring_view property)>;

/// Takes the rows of a table one by one; false says that no further row is wanted.
using WqlVisitor = std::function<bool(const WqlRow& row)>;

/// Hands its rows to a visitor, in the table's order, until the visitor has enough or the rows end. A row is
/// read only as far as the query asks for its properties.
using WqlTable = std::function<void(const WqlVisitor& visit)>;

/// Whether every condition of `query` holds for `row`; the class is not looked at.
///
/// Texts compare without regard to case (`wql_text.h`), numbers by value. A comparison with null, or between
/// a text and a number, holds neither as equal nor as unequal.
bool MatchesConditions(const WqlQuery& query, const WqlRow& row);

/// The selected property of the first row of `table` that meets the conditions; null when there is no such
/// row or that row has none. The caller has chosen the table by `query.class_name`.
WqlValue SelectFirst(const WqlQuery& query, const WqlTable& table);

/// A row that is at hand as a whole. Names are compared without regard to case; the first one counts.
using WqlRecord = std::vector<std::pair<std::wstring, WqlValue>>;
WqlValue FindProperty(const WqlRecord& record, std::wstring_view property);

/// `value` as text: a text itself, a number in decimal, null as the empty text.
std::wstring TextOf(const WqlValue& value);

/// `value` as a 32-bit number; 0 for null, for a text, and for a number of more than 32 bits.
std::uint32_t NumberOf(const WqlValue& value) noexcept;

}  // namespace ostrine
