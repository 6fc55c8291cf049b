#include "actions/flow/TAssignItem.h"

#include <algorithm>
#include <string>

#include "fields/PartCodec.h"
#include "fields/ValueCodecs.h"
#include "foundation/CaseFolding.h"

namespace zaf {
namespace {

/// Whether `c` could end an unquoted text after the "=" of a tag.
bool NeedsQuotes(char c) {
  switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
    case '"':
    case '\'':
    case '<':
    case '>':
    case '=':
      return true;
    default:
      return false;
  }
}

/// Appends `text` as the value after the "=" of a tag, in quotes if its end would otherwise be
/// ambiguous. Quotes inside are doubled when it has both kinds.
void AppendQuoted(std::string_view text, std::string& tag) {
  if (!text.empty() && std::none_of(text.begin(), text.end(), NeedsQuotes)) {
    tag.append(text);
    return;
  }
  const bool has_double = text.find('"') != std::string_view::npos;
  const bool has_single = text.find('\'') != std::string_view::npos;
  const char quote = has_double && !has_single ? '\'' : '"';
  tag += quote;
  for (std::size_t end; (end = text.find(quote)) != text.npos; text.remove_prefix(end + 1))
    tag.append(text.substr(0, end)).append(2, quote);
  tag.append(text) += quote;
}

/// The attributes of a cookie's tag.
std::string CookieAttributes(const TCookie& cookie) {
  std::string attributes;
  if (!cookie.expiry.IsEmpty()) {
    const auto minutes = static_cast<std::uint32_t>(ParseNumber(cookie.expiry.View()));
    attributes
        .append(R"( EXPIRES="<@TOGMT <@SECSTOTS <@CALC EXPR="<@TSTOSECS <@CURRENTTIMESTAMP>>+)")
        .append(std::to_string(static_cast<std::int32_t>(minutes * 60)))
        .append(R"(" >> FORMAT=datetime:http>")");
  }
  if (!cookie.domain.IsEmpty())
    attributes.append(" DOMAIN=\"").append(cookie.domain.View()).append("\" ");
  attributes.append(" PATH=\"").append(cookie.path.View()).append("\" ");
  attributes.append(" SECURE=\"").append(cookie.is_secure != 0 ? "yes" : "no").append("\" ");
  return attributes;
}

}  // namespace

std::span<const TProperty> TCookie::Properties() {
  static constexpr TProperty kRows[] = {
      Child<&TCookie::expiry>(kNoCode, "Expiry"),
      Child<&TCookie::path>(kNoCode, "Path"),
      Child<&TCookie::domain>(kNoCode, "Domain"),
      AttributeIfSet<&TCookie::is_secure>(kNoCode, "Secure", kNumberSwitchCodec),
  };
  return kRows;
}

bool TAssignItem::IsCookie() const { return EqualsIgnoringCase(scope.View(), "cookie"); }

std::span<const TProperty> TAssignItem::CookieProperties() {
  using Item = TAssignItem;
  static constexpr TProperty kRows[] = {
      Child<&Item::name>(kNoCode, "Name"),
      Child<&Item::value>(kNoCode, "Value"),
      InlinePart<&Item::cookie>(),
  };
  return kRows;
}

std::span<const TProperty> TAssignItem::VariableProperties() {
  using Item = TAssignItem;
  static constexpr TProperty kRows[] = {
      Child<&Item::name>(kNoCode, "Name"),
      Child<&Item::value>(kNoCode, "Value"),
  };
  return kRows;
}

bool operator==(const TAssignItem& one, const TAssignItem& two) {
  return AreRowsEqual(TAssignItem::CookieProperties(), &one, &two) &&
         one.scope.View() == two.scope.View();
}

/// Unlike IsCookie, this compares scopes with case: the tags use the keywords of documents.
void AppendAssignTag(const TAssignItem& item, CText& text) {
  if (item.name.IsEmpty()) return;
  const std::string_view scope = item.scope.View();
  const bool is_default = scope == "Default";
  std::string tag = "<@ASSIGN ";
  if (!is_default) tag.append("SCOPE=").append(scope).append(" NAME=");
  AppendQuoted(item.name.View(), tag);
  tag.append(is_default ? " " : " VALUE=");
  AppendQuoted(item.value.View(), tag);
  if (scope == "Cookie") tag.append(" ").append(CookieAttributes(item.cookie.Get()));
  text.Append(std::string_view(tag.append(">")));
}

}  // namespace zaf
