#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tool/Report.h"

namespace zaf {

// Parts of the JSON that the program writes.

/// Formats JSON on one line. Bytes that are not UTF-8 become U+FFFD.
std::string DumpJson(const nlohmann::ordered_json& value);

/// An object with `input` and, if that is not UTF-8, `input_raw`.
nlohmann::ordered_json InputJson(const std::string& path);

nlohmann::ordered_json LossJson(const TLoss& loss);

/// The text, or null when it is empty.
nlohmann::ordered_json TextOrNull(const std::string& text);

}  // namespace zaf
