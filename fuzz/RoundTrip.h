#pragma once

#include <string>

#include "fuzz/FuzzSupport.h"
#include "fuzz/NamedChanges.h"
#include "fuzz/WellFormed.h"

namespace zaf::fuzz {

/// A small file can make a large document. That is bounded, but reading them all would slow the
/// fuzzing down.
constexpr std::size_t kLongestDocument = std::size_t{1} << 18;

/// How often a document may change. One change can make room for the next: an output that is empty
/// is lost, so an assign action has its text made anew, and so an action of the same name refers to
/// two outputs of one ID. And where branches stand in branches, one reference after another can
/// leave the one that it stands in.
inline std::size_t FindMostChanges(std::string_view document) {
  constexpr std::string_view kReference = "<ActionRef ";
  std::size_t count = 4;
  for (std::size_t at = document.find(kReference); at != std::string_view::npos;
       at = document.find(kReference, at + 1))
    ++count;
  return count;
}

/// A document that the program wrote is well-formed, loads, and is written again with the same
/// bytes as soon as no change by design applies to it any more; and after some changes in any case.
inline void RequireThatDocumentStays(std::string document) {
  const std::size_t most_changes = FindMostChanges(document);
  for (std::size_t i = 0; i <= most_changes && document.size() <= kLongestDocument; ++i) {
    if (IsKnown(document, i)) return;
    Require(IsWellFormed(document), "a document is well-formed");
    TZanfoFile again;
    if (const Status status = LoadBytes(document, again); status != Status::kOk) {
      Require(status == Status::kMalformed && FindNamedChanges(document).contains(kNamelessJoin),
              "a document loads");
      return;
    }
    Require(again.IsEqual(again), "a file equals itself");
    std::string next = SaveToXml(again);
    if (next == document || WithoutSignatures(next) == WithoutSignatures(document)) return;
    if (i == most_changes || FindNamedChanges(document, 1).empty()) {
      std::fprintf(stderr, "%s\nbecomes\n%s\n", document.c_str(), next.c_str());
      Require(false, "a document that was read is written alike");
    }
    document = std::move(next);
  }
}

}  // namespace zaf::fuzz
