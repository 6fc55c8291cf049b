#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zaf::fuzz {

inline constexpr std::size_t kMostRecords = 64;

/// A section.
struct TPart {
  std::string code;
  std::string bytes;
};

/// A record: the file itself or an action.
struct TRecordParts {
  std::uint32_t format = 0x01000002;
  std::string type = "appl";
  std::string name;
  std::vector<TPart> sections;
};

/// The first record is the file's own.
using TFileParts = std::vector<TRecordParts>;

/// The records and sections of a file; what is out of bounds is left out, and so is what is more
/// than a seed needs.
TFileParts TakeApart(std::string_view bytes);

/// A file of these parts.
std::string PutTogether(const TFileParts& parts);

/// The big-endian number at `offset`; 0 where there is none.
std::uint32_t Number32At(std::string_view bytes, std::size_t offset);

}  // namespace zaf::fuzz
