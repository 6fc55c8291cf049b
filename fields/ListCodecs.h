#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TProperty.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/TRecordArray.h"

namespace zaf {

/// Appends or finds the element that contains a list's items: a child `row.name` or, for kItems,
/// the object's own element.
dom::Element MakeListElement(const TProperty& row, dom::Element parent);
dom::Element FindListElement(const TProperty& row, const TXmlReadScope& scope);

/// A list of texts, one element each. Set if it is not empty.
class TTextListCodec final : public TFieldCodec {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;
  bool AppendsSections() const override { return true; }
  SectionForm GetSectionForm() const override { return SectionForm::kTexts; }
};

inline constexpr TTextListCodec kTextListCodec{};

template <>
struct TCodecOf<CTextPtrArray> {
  static constexpr const TFieldCodec& kCodec = kTextListCodec;
};

/// How a record list's payload, a count followed by the records, is divided into records.
enum class Slicing : std::uint8_t {
  /// A count greater than the bytes that follow is malformed. A record whose size is not the
  /// current one is upgraded by the action.
  kUpgrade,
  /// Any count is valid. A slice shorter than its record is extended by the bytes after it as far
  /// as the payload reaches and then by zeros; a longer one is cut.
  kOverlap,
};

/// The properties of a record type that the list codec needs.
struct TRecordType {
  std::size_t size;
  std::span<const TProperty> (*properties)();
  const TRecordNumbers& (*numbers)();
  // These write and read the content of a record's element.
  void (*write_xml)(const void* record, const TXmlWriteScope& scope);
  Status (*read_xml)(void* record, const TXmlReadScope& scope);
};

/// The part of the record list codecs that is independent of the record type.
class TRecordListCodecBase : public TFieldCodec {
 public:
  constexpr TRecordListCodecBase(const TRecordType& type, Slicing slicing)
      : type_(type), slicing_(slicing) {}

  /// kMalformed, with nothing appended, if the payload contradicts its count or the records exceed
  /// what the file's size allows.
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;
  bool AppendsSections() const override { return true; }
  SectionForm GetSectionForm() const override { return SectionForm::kRecords; }
  void ReportWriting(const TProperty& row, const void* field,
                     const TXmlWriteScope& scope) const override;

 protected:
  ~TRecordListCodecBase() = default;

 private:
  Status AppendSlices(const TLegacySection& section, ByteView records, std::uint32_t count,
                      CDynamicArray& list) const;
  /// Reports what was left out of the slices; `conversion` is the worst result among them.
  void ReportSlices(const TLegacySection& section, std::size_t slice_size, std::uint32_t count,
                    Conversion conversion) const;
  /// Copies `count` records of the current size in one step into the list, which must be empty.
  Status TakeRecords(const TLegacySection& section, ByteView records, std::uint32_t count,
                     CDynamicArray& list) const;
  /// Lets the action finish the records from index `first` on.
  void FixRecords(const TLegacySection& section, CDynamicArray& list, std::uint32_t first) const;
  /// Reports which bytes of the records from index `first` on, `slice_size` apart, affect the XML.
  void NoteUses(const TLegacySection& section, std::size_t slice_size, const CDynamicArray& list,
                std::uint32_t first) const;
  /// Appends the record converted from a slice of another size; none if there is no upgrade. Sets
  /// `conversion` if the record is not whole.
  Status AppendSlice(const TLegacySection& section, ByteView slice, CDynamicArray& list,
                     Conversion& conversion) const;

  TRecordType type_;
  Slicing slicing_;
};

template <class Record>
const TRecordNumbers& NumbersOf() {
  static constexpr Record kAny{};
  static const TRecordNumbers numbers(Record::Properties(), &kAny);
  return numbers;
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

/// Lists keep their records, and sections contain them, at multiples of 4 bytes.
template <class Record>
requires(alignof(Record) <= 4 && sizeof(Record) % 4 == 0) inline constexpr TRecordType kRecordType{
    sizeof(Record), &Record::Properties, &NumbersOf<Record>, &WriteRecordXml<Record>,
    &ReadRecordXml<Record>};

/// A list of records of one type, `TRecordArray<Record>`. Set if it is not empty. `Record` is a
/// trivial type with the layout of the legacy record; only the byte order of its numbers differs.
/// Its static `Properties()` has the rows of its fields, including the numbers that are only
/// carried. Members `WriteXml(scope)` and `ReadXml(scope)`, if it has them, replace the rows' XML.
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
