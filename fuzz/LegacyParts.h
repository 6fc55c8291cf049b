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

/// Splits a file into its records and sections; omits parts that are out of bounds or exceed the
/// size of a seed.
TFileParts TakeApart(std::string_view bytes);

/// Assembles a file from these parts.
std::string PutTogether(const TFileParts& parts);

/// The big-endian number at `offset`; 0 beyond the end.
std::uint32_t Number32At(std::string_view bytes, std::size_t offset);

}  // namespace zaf::fuzz
