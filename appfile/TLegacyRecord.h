#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "fields/TLegacySection.h"
#include "fields/TSectionWriter.h"

namespace zaf {

/// The sections of an action, or of an application, as they are in its legacy record.
class TLegacyRecord {
 public:
  /// Collects the sections that `write` writes. Throws std::bad_alloc when it fails.
  explicit TLegacyRecord(const std::function<Status(TSectionWriter&)>& write);

  /// The codes in the order of the sections.
  [[nodiscard]] std::vector<FourCharCode> GetCodes() const;
  /// The bytes of a section; nullopt if no section has this code.
  [[nodiscard]] std::optional<std::string_view> Find(FourCharCode code) const;

  /// Calls `read` with each section except `code`, then with the section `code` of `other`, if it
  /// has one. If `other` is null, calls it with each section.
  void Read(const std::function<void(const TLegacySection&)>& read,
            const TLegacyRecord* other = nullptr, FourCharCode code = kNoCode) const;

 private:
  std::vector<std::byte> bytes_;
  std::vector<TSectionMapEntry> sections_;
};

}  // namespace zaf
