#include "fuzz/LegacyParts.h"

#include <algorithm>

#include "foundation/FourCharCode.h"
#include "tests/support/LegacyFile.h"

namespace zaf::fuzz {
namespace {

constexpr std::size_t kHeaderSize = 48;
constexpr std::size_t kEntrySize = 12;
constexpr std::size_t kMostSections = 256;

std::string Range(std::string_view bytes, std::size_t offset, std::size_t count) {
  return offset <= bytes.size() ? std::string(bytes.substr(offset, count)) : std::string();
}

/// `remaining`: the number of bytes that sections may still have, since they can overlap.
void TakeRecord(std::string_view bytes, std::size_t offset, std::size_t& remaining,
                TFileParts& parts) {
  if (parts.size() >= kMostRecords || offset + kHeaderSize > bytes.size()) return;
  const std::size_t index = parts.size();
  TRecordParts& record = parts.emplace_back();
  record.format = Number32At(bytes, offset);
  record.type = Range(bytes, offset + 4, 4);
  record.name = Range(bytes, offset + 16, 32);
  record.name.resize(std::min(record.name.find('\0'), record.name.size()));
  const std::size_t map = Number32At(bytes, offset + 8);
  const std::size_t count = std::min<std::size_t>(Number32At(bytes, offset + 12), kMostSections);
  if (map < bytes.size())
    record.sections.reserve(std::min(count, (bytes.size() - map) / kEntrySize));
  for (std::size_t i = 0; i < count && map + (i + 1) * kEntrySize <= bytes.size(); ++i) {
    const std::size_t entry = map + i * kEntrySize;
    const std::string code = Range(bytes, entry, 4);
    const std::size_t target = Number32At(bytes, entry + 4);
    if (code != "head") {
      const std::size_t size = std::min<std::size_t>(Number32At(bytes, entry + 8), remaining);
      parts[index].sections.push_back({code, Range(bytes, target, size)});
      remaining -= parts[index].sections.back().bytes.size();
    } else if (index == 0) {
      TakeRecord(bytes, target, remaining, parts);
    }
  }
}

}  // namespace

std::uint32_t Number32At(std::string_view bytes, std::size_t offset) {
  if (offset + 4 > bytes.size()) return 0;
  return static_cast<std::uint32_t>(CodeOfText(bytes.substr(offset)));
}

TFileParts TakeApart(std::string_view bytes) {
  std::string plain(bytes);
  if (Range(bytes, 4, 4) == "rdoc") {
    for (std::size_t i = kHeaderSize; i < plain.size(); ++i) {
      const auto byte = static_cast<unsigned char>(plain[i]);
      plain[i] = static_cast<char>(byte << 5 | byte >> 3);
    }
  }
  TFileParts parts;
  std::size_t remaining = plain.size();
  TakeRecord(plain, 0, remaining, parts);
  if (parts.empty()) parts.emplace_back();
  return parts;
}

std::string PutTogether(const TFileParts& parts) {
  test::LegacyFile file(parts.front().type, parts.front().format);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) file.Action(parts[i].type, parts[i].name, {}, parts[i].format);
    for (const TPart& section : parts[i].sections) file.Payload(section.code, section.bytes);
  }
  return file.Bytes();
}

}  // namespace zaf::fuzz
