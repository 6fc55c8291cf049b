#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TProperty.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// The element that holds a list's items: `row.name`, made or found by the row's form. For kItems
/// it is the object's own element.
dom::Element MakeListElement(const TProperty& row, dom::Element parent);
dom::Element FindListElement(const TProperty& row, const TXmlReadScope& scope);

/// A list of texts, one element each. Set when it is not empty.
class TTextListCodec final : public TFieldCodec {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;
};

inline constexpr TTextListCodec kTextListCodec{};

template <>
struct TCodecOf<CTextPtrArray> {
  static constexpr const TFieldCodec& kCodec = kTextListCodec;
};

/// How the payload of a record list, a count and what follows it, is cut into records.
enum class Slicing : std::uint8_t {
  /// A count that the payload cannot hold is malformed; a record of another size than the current
  /// one is upgraded by the action.
  kUpgrade,
  /// Any count goes: a slice that is shorter than its record takes in the bytes behind it as far
  /// as the payload reaches, and the rest of the record is zero; a longer one is cut.
  kOverlap,
};

/// What the list codec knows of one type of record.
struct TRecordType {
  std::size_t size;
  std::span<const TProperty> (*properties)();
  const TRecordWords& (*words)();
  /// Fills and reads a record's element. A record type that is more than its rows brings its own.
  void (*write_xml)(const void* record, const TXmlWriteScope& scope);
  Status (*read_xml)(void* record, const TXmlReadScope& scope);
};

/// The part of the record list codecs that does not depend on the type of the records.
class TRecordListCodecBase : public TFieldCodec {
 public:
  constexpr TRecordListCodecBase(const TRecordType& type, Slicing slicing)
      : type_(type), slicing_(slicing) {}

  /// kMalformed: the payload contradicts its count, or the records are more than the file's
  /// size allows; nothing is appended then.
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;

 protected:
  ~TRecordListCodecBase() = default;

 private:
  Status AppendSlices(const TLegacySection& section, ByteView records, std::uint32_t count,
                      CDynamicArray& list) const;
  /// Fills the list, which is empty, with `count` records that need no upgrade, all at once.
  Status TakeRecords(const TLegacySection& section, ByteView records, std::uint32_t count,
                     CDynamicArray& list) const;
  /// Has the action finish the records from `first` on.
  void FixRecords(const TLegacySection& section, CDynamicArray& list, std::uint32_t first) const;
  /// Appends what becomes of a slice that is not just a record.
  Status AppendSlice(const TLegacySection& section, ByteView slice, CDynamicArray& list) const;

  TRecordType type_;
  Slicing slicing_;
};

template <class Record>
const TRecordWords& WordsOf() {
  static const TRecordWords words = [] {
    const Record record{};
    return TRecordWords(Record::Properties(), &record);
  }();
  return words;
}

template <class Record>
void WriteRecordXml(const void* record, const TXmlWriteScope& scope) {
  if constexpr (requires(const Record& own) { own.WriteXml(scope); }) {
    static_cast<const Record*>(record)->WriteXml(scope);
  } else {
    WriteXmlRows(Record::Properties(), record, scope);
  }
}

template <class Record>
Status ReadRecordXml(void* record, const TXmlReadScope& scope) {
  if constexpr (requires(Record & own) { own.ReadXml(scope); }) {
    return static_cast<Record*>(record)->ReadXml(scope);
  } else {
    return ReadXmlRows(Record::Properties(), record, scope);
  }
}

template <class Record>
inline constexpr TRecordType kRecordType{sizeof(Record), &Record::Properties, &WordsOf<Record>,
                                         &WriteRecordXml<Record>, &ReadRecordXml<Record>};

/// A list of records of one type, `TRecordArray<Record>`. Set when it is not empty. `Record` is a
/// trivial type whose bytes are those of the legacy record but for the byte order of its numbers.
/// Its static `Properties()` tells its fields; rows without XML form tell the numbers that are
/// only carried. It may have members `WriteXml(scope)` and `ReadXml(scope)` instead of the rows'.
template <class Record>
class TRecordListCodec final : public TRecordListCodecBase {
 public:
  constexpr explicit TRecordListCodec(Slicing slicing)
      : TRecordListCodecBase(kRecordType<Record>, slicing) {}
};

template <class Record>
struct TCodecOf<TRecordArray<Record>> {
  static constexpr TRecordListCodec<Record> kInstance{Slicing::kUpgrade};
  static constexpr const TFieldCodec& kCodec = kInstance;
};

}  // namespace zaf
