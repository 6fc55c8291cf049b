#pragma once

#include <string>

#include "fuzz/FuzzSupport.h"
#include "fuzz/WellFormed.h"
#include "tests/support/NamedChanges.h"

namespace zaf::fuzz {

/// Larger documents are skipped: a small file can make a large one, within bounds, and reading them
/// all would slow down fuzzing.
constexpr std::size_t kLongestDocument = std::size_t{1} << 18;

/// Requires that a document of the program is well-formed, loads, and is written again with the
/// same bytes when no change by design applies to it any more, at the latest after the maximum
/// number of changes.
inline void RequireThatDocumentStays(std::string document) {
  const std::size_t most_changes = test::FindMostChanges(document);
  for (std::size_t i = 0; i <= most_changes && document.size() <= kLongestDocument; ++i) {
    if (IsKnown(document, i)) return;
    Require(IsWellFormed(document), "a document is well-formed");
    TZanfoFile again;
    if (const Status status = LoadBytes(document, again); status != Status::kOk) {
      Require(status == Status::kMalformed &&
                  test::FindNamedChanges(document).contains(test::kNamelessJoin),
              "a document loads");
      return;
    }
    Require(again.IsEqual(again), "a file equals itself");
    std::string next = SaveToXml(again);
    if (next == document || test::WithoutSignatures(next) == test::WithoutSignatures(document))
      return;
    if (i == most_changes || test::FindNamedChanges(document, 1).empty()) {
      std::fprintf(stderr, "%s\nbecomes\n%s\n", document.c_str(), next.c_str());
      Require(false, "a document that was read is written alike");
    }
    document = std::move(next);
  }
}

}  // namespace zaf::fuzz
