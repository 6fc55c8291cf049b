#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tool/Report.h"

namespace zaf {

// Parts of the JSON that the program writes.

/// On one line. What is not UTF-8 is written with U+FFFD.
std::string DumpJson(const nlohmann::ordered_json& value);

/// `input` and, when it is not UTF-8, `input_raw`.
nlohmann::ordered_json InputJson(const std::string& path);

nlohmann::ordered_json LossJson(const TLoss& loss);

/// A text, or null when it is empty.
nlohmann::ordered_json TextOrNull(const std::string& text);

}  // namespace zaf
