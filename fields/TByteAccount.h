#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/FourCharCode.h"

namespace zaf {

struct TProperty;

/// What happens to a byte of a legacy file in a conversion to XML. The first of several uses of a
/// byte counts.
enum class ByteUse : std::uint8_t {
  kStructure,     ///< Of a record header or section map.
  kCarried,       ///< Affects the document.
  kDropped,       ///< Read, but not in the document, or skipped in a section that is read.
  kUnknown,       ///< In a section whose code its class does not have.
  kUnreferenced,  ///< In no header, map or section that was read.
};

/// How a section was read.
enum class SectionForm : std::uint8_t {
  kUnread,
  kHeader,
  kMap,
  kBytes,
  kText,
  kNumber,
  kTexts,
  kRecords,
};

/// What a range of a legacy file is read as.
enum class AccessKind : std::uint8_t {
  kHeader,   ///< The record header of the file or of an action.
  kMap,      ///< Its section map.
  kSection,  ///< A section in the map, including that of a header.
  kBeyond,   ///< Bytes after a section that are read as if they were part of it.
  kField,    ///< The same section, read by a row. Other sections are read by hand or skipped.
};

/// A range of a legacy file that is being read. It may extend past the end of the file, and overlap
/// others.
struct TAccess {
  AccessKind kind;
  std::uint64_t offset;            ///< From the start of the file, in bytes.
  std::uint64_t length;            ///< In bytes.
  FourCharCode section = kNoCode;  ///< Code of the section.
  const TProperty* row = nullptr;  ///< The row of a kField, a constant.
  std::string_view action = {};    ///< Name of the action; empty: the application itself.
  bool is_in_action = false;       ///< Whether the range is of the record of an action.
};

/// Accounts for all bytes of a legacy file, from the accesses that its reader reports.
class TByteAccount {
 public:
  struct TSection {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    FourCharCode code = kNoCode;
    std::uint32_t record = 0;  ///< Index into the records.
    std::string_view field;    ///< Its name in XML; empty: it has none.
    SectionForm form = SectionForm::kUnread;
    bool is_without_use = false;  ///< A later section replaces it, or its record has no XML form.
  };
  /// Bytes of one use in one section.
  struct TRange {
    std::uint64_t offset = 0;
    std::uint64_t end = 0;
    ByteUse use = ByteUse::kUnreferenced;
    std::uint32_t section = kNoSection;
  };
  static constexpr std::uint32_t kNoSection = UINT32_MAX;

  /// Notes an access to the file. The accesses come in reading order, one record after another: its
  /// header, its map, then its sections; the sections of an action come between those of the
  /// application. A section is the current one until the next begins. All its bytes count as
  /// carried until more is reported.
  void OnAccess(const TAccess& access);
  /// Sets the use of all bytes of the section.
  void SetUse(ByteUse use);
  /// Sets the use of bytes, which may be outside of the section. Later calls override earlier ones.
  void SetUse(std::uint64_t offset, std::uint64_t length, ByteUse use);
  /// Records that a later section of the last record, or of the file's, replaces this one.
  void DropSection(std::uint64_t offset, FourCharCode code);
  /// Records that the last record, that of the root container, has no XML form.
  void DropRecord();

  /// Names of the records, in the order in which they were read.
  [[nodiscard]] const std::vector<std::string>& GetRecords() const { return records_; }
  /// Headers, maps and sections, in the order in which they were read.
  [[nodiscard]] const std::vector<TSection>& GetSections() const { return sections_; }
  /// Returns consecutive ranges that together cover a file of `size` bytes. Ends the account.
  [[nodiscard]] std::vector<TRange> TakeRanges(std::uint64_t size);

 private:
  void BeginSection(const TAccess& access, SectionForm form);
  void SetField(const TProperty& row);
  void EndSection();

  std::vector<std::string> records_;
  std::vector<TSection> sections_;
  std::vector<TRange> ranges_;
  /// The uses in the current section by the offset where each begins; the last entry marks the end.
  std::map<std::uint64_t, ByteUse> uses_;
};

/// The bytes of one record of a list. Codecs mark those that affect its XML, by their place in
/// memory.
class TRecordUse {
 public:
  /// `offset`: of the record in the file; `size`: its bytes there.
  TRecordUse(TByteAccount& account, const void* record, std::uint64_t offset, std::size_t size)
      : account_(account),
        record_(static_cast<const char*>(record)),
        offset_(offset),
        size_(size) {}
  void Add(const void* begin, std::size_t count) const;

 private:
  TByteAccount& account_;
  const char* record_;
  std::uint64_t offset_;
  std::size_t size_;
};

}  // namespace zaf
