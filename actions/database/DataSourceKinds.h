#pragma once

#include <span>

#include "fields/ValueCodecs.h"

namespace zaf {

/// The keyword of a host type that is not a kind of data source.
inline constexpr TKeyword kDefaultDataSourceKind{0, "Default"};

/// The kinds of data source, by their host types. The first is used for every other host type.
inline constexpr TKeyword kDataSourceKindsAndDefault[] = {
    kDefaultDataSourceKind,
    {static_cast<std::int32_t>(Code("odbc")), "ODBC"},
    {static_cast<std::int32_t>(Code("psql")), "Halvex.SQL"},
    {static_cast<std::int32_t>(Code("oci ")), "Oracle"},
    {static_cast<std::int32_t>(Code("FMPm")), "FileMaker"},
    {static_cast<std::int32_t>(Code("dam ")), "DAM"},
};

/// The same without the keyword for other host types.
inline constexpr std::span<const TKeyword> kDataSourceKinds =
    std::span<const TKeyword>(kDataSourceKindsAndDefault).subspan(1);

/// Those whose keyword is also the type name of an action's data source.
inline constexpr std::span<const TKeyword> kNamedDataSourceKinds = kDataSourceKinds.first(4);

}  // namespace zaf
