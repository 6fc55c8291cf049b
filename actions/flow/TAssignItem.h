#pragma once

#include <cstdint>
#include <span>

#include "fields/TProperty.h"
#include "foundation/CText.h"
#include "foundation/TFixedText.h"
#include "foundation/TLazyRecord.h"
#include "foundation/TOwningArray.h"

namespace zaf {

/// The fields of an assignment that only a cookie has.
struct TCookie {
  TFixedText<128> expiry{};  ///< In minutes, as decimal digits; empty: at the end of the session.
  TFixedText<256> path{};
  TFixedText<256> domain{};
  std::int32_t is_secure = 0;  ///< Not zero: the cookie is sent over secure connections only.

  static std::span<const TProperty> Properties();
};

/// An assignment: a variable, or with the scope "cookie" (case ignored) a cookie, and its value.
/// Owns its value.
struct TAssignItem {
  TFixedText<256> name{};
  CText value;
  TFixedText<128> scope{};
  TLazyRecord<TCookie> cookie;

  [[nodiscard]] bool IsCookie() const;

  /// The rows of an item's element: those of a cookie, and those of any other assignment except its
  /// scope.
  static std::span<const TProperty> CookieProperties();
  static std::span<const TProperty> VariableProperties();

  friend bool operator==(const TAssignItem& one, const TAssignItem& two);
};

using TAssignItemArray = TOwningArray<TAssignItem>;

/// Appends the item as a server tag for the same assignment; nothing for an item without a name.
void AppendAssignTag(const TAssignItem& item, CText& text);

}  // namespace zaf
