#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/FourCharCode.h"

namespace zaf {

/// Where and why the load of a file failed, as far as known.
struct TErrorPlace {
  std::string_view reason;              ///< A sentence without full stop, a literal. Or empty.
  std::string action;                   ///< Name of the action; empty: none, or unknown.
  FourCharCode section = kNoCode;       ///< Of a legacy file.
  std::optional<std::uint32_t> offset;  ///< Of that section, in bytes from the start of the file.
  std::uint32_t line = 0;               ///< Of a document, from 1, as is the column; 0: unknown.
  std::uint32_t column = 0;
};

}  // namespace zaf
