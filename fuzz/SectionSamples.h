#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "fields/TProperty.h"
#include "foundation/FourCharCode.h"

namespace zaf::fuzz {

/// Contents of legacy sections by their codes, each in several variants: the first one is current
/// and full, the others have older records and the other words of a vocabulary. Lists of records
/// and sections that no row tells of are written down here; texts and numbers follow from the rows.
class TSectionSamples {
 public:
  TSectionSamples();

  /// Takes in the codes of the rows and of their parts. False, after a message, when there is a
  /// section of which nothing tells how it looks.
  bool AddRows(std::span<const TProperty> rows);

  /// All codes, in ascending order.
  [[nodiscard]] const std::map<FourCharCode, std::vector<std::string>>& All() const {
    return samples_;
  }
  /// The bytes of a section in this variant; the variants repeat.
  [[nodiscard]] const std::string& Get(FourCharCode code, std::size_t variant) const;

 private:
  std::map<FourCharCode, std::vector<std::string>> samples_;
};

}  // namespace zaf::fuzz
