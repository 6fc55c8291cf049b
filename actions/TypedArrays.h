#pragma once

#include <cstddef>

#include "actions/TListItem.h"
#include "foundation/CObjectArray.h"
#include "foundation/TRecordArray.h"

/// Typed arrays of the model that are not fields of any action. The others are declared with their
/// elements.
namespace zaf {

/// A record of `kSize` bytes whose fields only the server uses.
template <std::size_t kSize>
struct TOpaqueRecord {
  std::byte bytes[kSize];
};

using CTableAliasArray = TRecordArray<TOpaqueRecord<12>>;
using CColumnCatalogArray = TRecordArray<TOpaqueRecord<280>>;  ///< Of a data source.

/// List items as stored in legacy files: "fval" of the new record builder; "sfvt" and "dfvt" of the
/// search builder.
using TFieldValueInfoArray = TRecordArray<TLegacyListItem<1>>;
using CFieldValueInfoArray = TRecordArray<TLegacyListItem<3>>;

/// Arguments of a call. Does not own them.
class CArgumentArray : public CObjectArray {};

}  // namespace zaf
