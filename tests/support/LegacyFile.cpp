#include "tests/support/LegacyFile.h"

namespace zaf::test {

std::string BigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::string Slot(std::string_view text, std::size_t width) {
  std::string slot(text.substr(0, width));
  slot.resize(width, '\0');
  return slot;
}

std::string Slots(std::size_t width, std::initializer_list<std::string_view> texts) {
  std::string slots;
  for (const std::string_view text : texts) slots += Slot(text, width);
  return slots;
}

std::string ListOf(std::uint32_t count, std::string_view records) {
  return BigEndian(count).append(records);
}

std::vector<std::string> SectionPayloads() {
  using namespace std::string_literals;
  std::vector<std::string> payloads{
      BigEndian(1),
      BigEndian(2),
      BigEndian(0xFFFFFFFF),
      "some text\0"s,
      "<b a='1'>]]>&\"\r\n\t\xE9 </b>\0"s,
      "\x01\n\0"s,
      ListOf(2, "one\0\0"s),
      ListOf(1, BigEndian(1) + "v" + std::string(1028, 'a')),
      "miscdosctarget\0\0\0\0\1n\0v\0"s,
      "exev"s,
      "aevx"s,
      "aevt"s,
      "mac "s,
      "odbc"s,
      "\0\0\0w"s,
      std::string(640, 'f'),
  };
  // Records of the current and of older sizes. Their slots are full, or have one character each.
  for (const std::size_t size : {1024U, 896U, 648U, 646U, 524U, 448U, 384U, 168U, 140U, 96U}) {
    payloads.push_back(ListOf(1, std::string(size, 'r')));
    std::string sparse(size, '\0');
    for (std::size_t at = 0; at < size; at += 4) sparse[at] = 'r';
    payloads.push_back(ListOf(1, sparse));
  }
  return payloads;
}

LegacyFile::LegacyFile(std::string_view document_type, std::uint32_t format) {
  records_.push_back({BigEndian(format).append(document_type), {}, {}});
}

LegacyFile& LegacyFile::Action(std::string_view type, std::string_view name,
                               std::string_view parent, std::uint32_t format) {
  records_.push_back({BigEndian(format).append(type), std::string(name), {}});
  return parent.empty() ? *this : Text("pare", parent);
}

LegacyFile& LegacyFile::Text(std::string_view code, std::string_view text) {
  return Payload(code, std::string(text) + '\0');
}

LegacyFile& LegacyFile::Number(std::string_view code, std::uint32_t value) {
  return Payload(code, BigEndian(value));
}

LegacyFile& LegacyFile::Payload(std::string_view code, std::string_view bytes) {
  records_.back().sections.push_back({std::string(code), std::string(bytes)});
  return *this;
}

LegacyFile& LegacyFile::TruncateTo(std::size_t size) {
  damages_.push_back({true, size, 0});
  return *this;
}

LegacyFile& LegacyFile::SetNumber(std::size_t offset, std::uint32_t value) {
  damages_.push_back({false, offset, value});
  return *this;
}

std::string LegacyFile::Bytes() const {
  constexpr std::size_t kHeaderSize = 48;
  const auto entry = [](std::string_view code, std::size_t offset, std::size_t length) {
    return std::string(code) + BigEndian(static_cast<std::uint32_t>(offset)) +
           BigEndian(static_cast<std::uint32_t>(length));
  };
  const auto header = [](const Record& record, std::size_t map_offset, std::size_t map_count) {
    return record.header + BigEndian(static_cast<std::uint32_t>(map_offset)) +
           BigEndian(static_cast<std::uint32_t>(map_count)) + Slot(record.name, 32);
  };
  std::string bytes(kHeaderSize, '\0');
  std::string file_map;
  std::size_t file_count = 0;
  for (std::size_t i = 0; i < records_.size(); ++i) {
    const Record& record = records_[i];
    const std::size_t begin = bytes.size();
    if (i > 0) bytes.append(kHeaderSize, '\0');
    std::string map;
    for (const Section& section : record.sections) {
      map += entry(section.code, bytes.size(), section.bytes.size());
      bytes += section.bytes;
    }
    if (i == 0) {
      file_map = map;
      file_count = record.sections.size();
      continue;
    }
    bytes.replace(begin, kHeaderSize, header(record, bytes.size(), record.sections.size()));
    bytes += map;
    file_map += entry("head", begin, kHeaderSize);
    ++file_count;
  }
  bytes.replace(0, kHeaderSize, header(records_[0], bytes.size(), file_count));
  bytes += file_map;
  for (const Damage& damage : damages_) {
    if (damage.is_truncation) {
      bytes.resize(damage.offset);
    } else {
      bytes.replace(damage.offset, 4, BigEndian(damage.value));
    }
  }
  if (records_[0].header.ends_with("rdoc")) {
    for (std::size_t i = kHeaderSize; i < bytes.size(); ++i) {
      const auto byte = static_cast<unsigned char>(bytes[i]);
      bytes[i] = static_cast<char>(byte << 3 | byte >> 5);
    }
  }
  return bytes;
}

}  // namespace zaf::test
