#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace zaf::test {

/// A four-byte number in the byte order of legacy files.
std::string BigEndian(std::uint32_t value);

/// `text` in a slot of `width` bytes, cut or padded with NULs.
std::string Slot(std::string_view text, std::size_t width);

/// Texts in slots of one width, one after another.
std::string Slots(std::size_t width, std::initializer_list<std::string_view> texts);

/// The payload of a list section: the count, then the records.
std::string ListOf(std::uint32_t count, std::string_view records);

/// Payloads of sections, including some that every type of field accepts: numbers, codes, texts,
/// lists of records of many sizes, bytes. At least one of those changes the field from its initial
/// value.
std::vector<std::string> SectionPayloads();

/// Builds the bytes of a legacy file, valid by default. Sections before the first Action belong to
/// the application, later ones to the action added last. The damage methods change the bytes of the
/// finished file, so they are called last.
class LegacyFile {
 public:
  explicit LegacyFile(std::string_view document_type = "appl", std::uint32_t format = 0x01000002);

  /// Begins an action; `parent` is its "pare" section, if any.
  LegacyFile& Action(std::string_view type, std::string_view name, std::string_view parent = {},
                     std::uint32_t format = 0x01000002);
  LegacyFile& Text(std::string_view code, std::string_view text);  ///< With its NUL.
  LegacyFile& Number(std::string_view code, std::uint32_t value);
  LegacyFile& Payload(std::string_view code, std::string_view bytes);

  LegacyFile& TruncateTo(std::size_t size);
  LegacyFile& SetNumber(std::size_t offset, std::uint32_t value);

  /// The bytes of the file. A run-only one ("rdoc") is scrambled after its header.
  [[nodiscard]] std::string Bytes() const;

 private:
  struct Section {
    std::string code;
    std::string bytes;
  };
  struct Record {
    std::string header;  ///< Format and type; the map's offset follows; then the name.
    std::string name;
    std::vector<Section> sections;
  };
  struct Damage {
    bool is_truncation;
    std::size_t offset;
    std::uint32_t value;
  };

  std::vector<Record> records_;  ///< The first one is the file's own.
  std::vector<Damage> damages_;
};

}  // namespace zaf::test
