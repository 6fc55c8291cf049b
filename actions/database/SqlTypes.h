#pragma once

#include "fields/ValueCodecs.h"

namespace zaf {

/// The names of the types that a column can have, by the codes of the SQL call-level interface
/// (ISO/IEC 9075-3) and those that drivers add to it.
// clang-format off
inline constexpr TKeyword kSqlTypeKeywords[] = {
    {1, "Char"},
    {2, "Numeric"},
    {3, "Decimal"},
    {4, "Integer"},
    {5, "SmallInt"},
    {6, "Float"},
    {7, "Real"},
    {8, "Double"},
    {9, "Date"},
    {10, "Time"},
    {11, "Timestamp"},
    {12, "VarChar"},
    {-1, "LongVarChar"},
    {-2, "Binary"},
    {-3, "VarBinary"},
    {-4, "LongVarBinary"},
    {-5, "BigInt"},
    {-6, "TinyInt"},
    {-7, "Bit"},
};
// clang-format on
inline constexpr TVocabulary kSqlTypes{kSqlTypeKeywords, TVocabulary::Fallback::kNumber};
inline constexpr TKeywordCodec kSqlTypeCodec{kSqlTypes};

}  // namespace zaf
