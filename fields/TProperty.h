#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "fields/TLegacySection.h"
#include "fields/TSectionWriter.h"
#include "fields/TXmlContext.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"

namespace zaf {

class TFieldCodec;

/// Where a field stands in XML.
enum class XmlForm : std::uint8_t {
  kNone,            ///< Nowhere: carried from legacy file to legacy file.
  kChild,           ///< A child element, always.
  kChildIfSet,      ///< A child element, when there is something to say.
  kAttribute,       ///< An attribute, always.
  kAttributeIfSet,  ///< An attribute, when there is something to say.
  kItems,           ///< The items of a list, as children of the object's own element.
  kBase,            ///< No field: the place where the base class writes its part.
};

/// One field of an object (an action, a part of one, a record of a list, an application): its
/// legacy section, its XML name and form, and the codec of its type. The rows of a class stand in
/// the order of its XML element; the builders below make them.
struct TProperty {
  FourCharCode code = kNoCode;  ///< Legacy section; kNoCode: the field has none.
  std::string_view name;        ///< Child element or attribute.
  XmlForm form = XmlForm::kNone;
  const TFieldCodec* codec = nullptr;
  void* (*locate)(void* object) = nullptr;  ///< The field within its object.
  std::string_view detail;  ///< Element of a list's items; suffix of an output block's ID.
};

/// Reads, writes and compares the fields of one type. One constant instance serves every row; the
/// engine below hands it the field that the row locates. An operation that a type does not need
/// keeps its default, which does nothing.
class TFieldCodec {
 public:
  /// Takes the field from its legacy section. The field is unchanged when that fails, but lists
  /// keep the items that were read before.
  virtual Status ReadLegacy(const TProperty& row, void* field, const TLegacySection& section) const;
  /// Writes the field's legacy section, or none when it has nothing to say.
  virtual Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const;
  virtual void WriteXml(const TProperty& row, const void* field, const TXmlWriteScope& scope) const;
  virtual Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const;
  [[nodiscard]] virtual bool IsEqual(const void* field, const void* other) const = 0;
  /// Whether the field of a record is a number of 4 bytes, which the file has in the other order.
  [[nodiscard]] virtual bool IsWord() const;
  /// The rows of a field that has fields itself and whose legacy sections are those of its fields.
  [[nodiscard]] virtual std::span<const TProperty> Nested() const;
  /// The rows of a field of a record that has numbers itself.
  [[nodiscard]] virtual std::span<const TProperty> NestedWords() const;

 protected:
  ~TFieldCodec() = default;
};

// The engine: what every class does with its rows. `object` is the object that the rows describe.

/// The rows of a class by the codes of their legacy sections, those of its parts among them, with
/// the places of their fields. Made once for a class; refers to the rows, which are constants.
class TCodeIndex {
 public:
  /// A row and where its field lies in the object, in bytes from its start.
  struct TField {
    FourCharCode code = kNoCode;
    std::uint32_t offset = 0;
    const TProperty* row = nullptr;  ///< Null: the code is left to others, or nobody has it.

    /// Gives a section of this code to the field of `object`. There is a row.
    Status Read(void* object, const TLegacySection& section) const {
      return row->codec->ReadLegacy(*row, static_cast<char*>(object) + offset, section);
    }
  };

  TCodeIndex() { Resize(32); }
  TCodeIndex(std::span<const TProperty> rows, const void* object) : TCodeIndex() {
    Add(rows, object, object);
  }

  /// Adds the rows that describe `part`: `object` itself, or a base or a part of it. Any object of
  /// the class will do. Of several rows with one code the first counts.
  void Add(std::span<const TProperty> rows, const void* part, const void* object);
  /// Leaves codes that were not added to others: rows that are added later do not have them.
  void Leave(std::span<const FourCharCode> codes);

  [[nodiscard]] const TField& Find(FourCharCode code) const {
    std::size_t place = PlaceOf(code);
    const TField* const fields = fields_.data();  // A place is never outside.
    while (fields[place].code != code && fields[place].code != kNoCode) place = Next(place);
    return fields[place];
  }

 private:
  /// Fibonacci hashing: the codes differ little in some of their bits.
  [[nodiscard]] std::size_t PlaceOf(FourCharCode code) const {
    return (static_cast<std::uint32_t>(code) * 0x9E3779B1U >> 16) & last_place_;
  }
  [[nodiscard]] std::size_t Next(std::size_t place) const { return (place + 1) & last_place_; }
  void AddField(const TField& field);
  /// Makes `size` places, a power of two, for the fields that there are.
  void Resize(std::size_t size);

  std::vector<TField> fields_;  ///< At most half of the places are in use.
  std::size_t last_place_ = 0;
  std::size_t count_ = 0;
};

/// Writes the sections of all rows, in their order.
Status WriteLegacyRows(std::span<const TProperty> rows, const void* object, TSectionWriter& out);

/// Writes the section of the one row that has this code; false when none has.
bool WriteLegacyRow(std::span<const TProperty> rows, const void* object, FourCharCode code,
                    TSectionWriter& out, Status& status);

/// Writes the rows' attributes and children, in their order; the kBase row is passed over.
void WriteXmlRows(std::span<const TProperty> rows, const void* object, const TXmlWriteScope& scope);

/// Reads what `WriteXmlRows` wrote, in any order; ends at the first row that fails.
Status ReadXmlRows(std::span<const TProperty> rows, void* object, const TXmlReadScope& scope);

[[nodiscard]] bool AreRowsEqual(std::span<const TProperty> rows, const void* object,
                                const void* other);

/// Where the numbers of a type of record are. Made once for a type.
class TRecordWords {
 public:
  /// `record`: any record that the rows describe.
  TRecordWords(std::span<const TProperty> rows, const void* record) { Add(rows, record, record); }

  /// Turns the numbers of a record from the file's byte order into the machine's, and back.
  void SwapByteOrder(void* record) const;

 private:
  void Add(std::span<const TProperty> rows, const void* part, const void* record);

  std::vector<std::uint32_t> offsets_;
};

// Builders of rows. `Member` is a pointer to the field (`&TNote::title_`); its type finds the codec
// unless one is given.

/// The codec of the fields of a type. Specialised beside each codec.
template <class Field>
struct TCodecOf;

template <class Member>
struct TMemberTraits;
template <class ObjectType, class FieldType>
struct TMemberTraits<FieldType ObjectType::*> {
  using Object = ObjectType;
  using Field = FieldType;
};

template <auto Member>
void* LocateMember(void* object) {
  using Object = typename TMemberTraits<decltype(Member)>::Object;
  return &(static_cast<Object*>(object)->*Member);
}

template <auto Member>
constexpr const TFieldCodec& DefaultCodec() {
  return TCodecOf<typename TMemberTraits<decltype(Member)>::Field>::kCodec;
}

/// A field in the given form.
template <auto Member>
constexpr TProperty Row(FourCharCode code, std::string_view name, XmlForm form,
                        const TFieldCodec& codec = DefaultCodec<Member>(),
                        std::string_view detail = {}) {
  return {code, name, form, &codec, &LocateMember<Member>, detail};
}

/// A child element, always written.
template <auto Member>
constexpr TProperty Child(FourCharCode code, std::string_view name,
                          const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kChild, codec);
}

/// A child element, written when the field is set (a text: not empty; a switch: on).
template <auto Member>
constexpr TProperty ChildIfSet(FourCharCode code, std::string_view name,
                               const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kChildIfSet, codec);
}

/// An attribute, always written.
template <auto Member>
constexpr TProperty Attribute(FourCharCode code, std::string_view name,
                              const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kAttribute, codec);
}

/// An attribute, written when the field is set.
template <auto Member>
constexpr TProperty AttributeIfSet(FourCharCode code, std::string_view name,
                                   const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kAttributeIfSet, codec);
}

/// A field without XML form.
template <auto Member>
constexpr TProperty Carried(FourCharCode code, const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, {}, XmlForm::kNone, codec);
}

/// A list: a container element `name`, always written, with one element `item` per item.
template <auto Member>
constexpr TProperty List(FourCharCode code, std::string_view name, std::string_view item,
                         const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kChild, codec, item);
}

/// A list whose container is written when there are items.
template <auto Member>
constexpr TProperty ListIfSet(FourCharCode code, std::string_view name, std::string_view item,
                              const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kChildIfSet, codec, item);
}

/// A list without container: its items stand among the object's own children.
template <auto Member>
constexpr TProperty Items(FourCharCode code, std::string_view item,
                          const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, item, XmlForm::kItems, codec, item);
}

/// The place of the base class's part. Without this row the base's part comes last.
constexpr TProperty BasePart() {
  TProperty row;
  row.form = XmlForm::kBase;
  return row;
}

}  // namespace zaf
