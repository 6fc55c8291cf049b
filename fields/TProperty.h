#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>
#include <string_view>
#include <vector>

#include "fields/TLegacySection.h"
#include "fields/TSectionWriter.h"
#include "fields/TXmlContext.h"
#include "foundation/FourCharCode.h"
#include "foundation/Heap.h"
#include "foundation/Status.h"

namespace zaf {

class TFieldCodec;

/// The form that a field takes in XML.
enum class XmlForm : std::uint8_t {
  kNone,            ///< None: the field is carried from legacy file to legacy file.
  kByHand,          ///< The object writes and reads the field itself.
  kBase,            ///< No field: marks the place where the base class writes its part.
  kChild,           ///< A child element, always.
  kChildIfSet,      ///< A child element, if the field is set.
  kAttribute,       ///< An attribute, always.
  kAttributeIfSet,  ///< An attribute, if the field is set.
  kItems,           ///< The items of a list, as children of the object's own element.
};

/// Finds a field in its object. The pointer's constness passes from the object to the field.
struct TLocator {
  void* (*find)(void* object) = nullptr;
  const void* (*find_const)(const void* object) = nullptr;
  std::size_t size = 0;  ///< Of the field, in bytes.

  void* operator()(void* object) const { return find(object); }
  const void* operator()(const void* object) const { return find_const(object); }
};

/// One field of an object (an action, a part of one, a record of a list, an application): its
/// legacy section, its XML name and form, and the codec of its type. The rows of a class are in
/// the order of its XML element. Made by the builders below.
struct TProperty {
  FourCharCode code = kNoCode;  ///< Legacy section; kNoCode: the field has none.
  std::string_view name;        ///< Child element or attribute.
  XmlForm form = XmlForm::kNone;
  const TFieldCodec* codec = nullptr;  ///< Null only in the kBase row.
  TLocator locate;
  std::string_view detail;  ///< Element of a list's items; suffix of an output block's ID.
};

/// Reads, writes and compares the fields of one type. One constant instance serves every row; the
/// functions below pass it the field that the row locates. By default an operation does nothing.
class TFieldCodec {
 public:
  /// Reads the field from its legacy section. After a failure the field is unchanged, except that
  /// a list keeps the items read so far.
  virtual Status ReadLegacy(const TProperty& row, void* field, const TLegacySection& section) const;
  /// Writes the field's legacy section; a codec may omit the section of a field that is not set.
  virtual Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const;
  virtual void WriteXml(const TProperty& row, const void* field, const TXmlWriteScope& scope) const;
  virtual Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const;
  [[nodiscard]] virtual bool IsEqual(const void* field, const void* other) const = 0;
  /// Whether the field is a 32-bit number, whose byte order in a record depends on the host.
  [[nodiscard]] virtual bool IsNumber32() const { return false; }
  /// The rows of a part: a field that has fields of its own, each with its own legacy section.
  [[nodiscard]] virtual std::span<const TProperty> Nested() const { return {}; }
  /// The rows of the 32-bit numbers in a record's field that has fields of its own.
  [[nodiscard]] virtual std::span<const TProperty> NestedNumbers() const { return Nested(); }
  /// Names the bytes of a field in a record that can decide its XML. By default all.
  virtual void NoteUse(const TProperty& row, const void* field, const TRecordUse& use) const;
  /// Whether several sections of one code are appended; otherwise the last one counts.
  [[nodiscard]] virtual bool AppendsSections() const { return false; }

  // Only with an observer of losses; the field has just been read, or is about to be written.

  [[nodiscard]] virtual SectionForm GetSectionForm() const { return SectionForm::kBytes; }
  /// How many bytes of its section determined the field, possibly more than there are.
  [[nodiscard]] virtual std::uint64_t GetUsed(const void* field,
                                              const TLegacySection& section) const;
  /// Reports what the document omits of the field, except characters, which are reported when texts
  /// are written.
  virtual void ReportWriting(const TProperty& row, const void* field,
                             const TXmlWriteScope& scope) const;
  /// Reports what the field omits of the document.
  virtual void ReportReading(const TProperty& row, const void* field,
                             const TXmlReadScope& scope) const;

 protected:
  ~TFieldCodec() = default;
};

/// Maps legacy section codes to the rows of a class, of its bases and of their parts. Built once
/// per class. Refers to the rows, which are constants.
class TCodeIndex {
 public:
  /// A row and the place of its field.
  struct TField {
    FourCharCode code = kNoCode;
    std::uint32_t offset = 0;        ///< From the start of the object, in bytes.
    const TProperty* row = nullptr;  ///< Null: the code is unknown or excluded.

    /// Reads a section of this code into the field of `object`. The row must not be null.
    Status Read(void* object, const TLegacySection& section) const {
      if (section.losses != nullptr) [[unlikely]]
        return ReadObserved(object, section);
      return row->codec->ReadLegacy(*row, Locate(object), section);
    }

   private:
    void* Locate(void* object) const { return static_cast<std::byte*>(object) + offset; }
    // Not inlined: otherwise the path without an observer would save registers for it.
    [[gnu::noinline]] Status ReadObserved(void* object, const TLegacySection& section) const;
  };

  TCodeIndex() { Resize(32); }
  TCodeIndex(std::span<const TProperty> rows, const void* object) : TCodeIndex() {
    Add(rows, object, object);
  }

  /// Adds the rows of a class and of its parts. `object` is any object of the index's class, `part`
  /// the object in it, itself or a base, that the rows describe. Of several rows with one code the
  /// first counts.
  void Add(std::span<const TProperty> rows, const void* object, const void* part);
  /// Excludes codes that were not added before: rows added later are not found by them.
  void Exclude(std::span<const FourCharCode> codes);

  /// The field of this code; its row is null if not found.
  [[nodiscard]] const TField& Find(FourCharCode code) const {
    std::size_t place = PlaceOf(code);
    const TField* const fields = fields_.data();  // Places are masked, so always in bounds.
    while (fields[place].code != code && fields[place].code != kNoCode) place = Next(place);
    return fields[place];
  }

 private:
  /// Fibonacci hashing, since the codes differ little in some of their bits.
  [[nodiscard]] std::size_t PlaceOf(FourCharCode code) const {
    return (static_cast<std::uint32_t>(code) * 0x9E3779B1U >> 16) & last_place_;
  }
  [[nodiscard]] std::size_t Next(std::size_t place) const { return (place + 1) & last_place_; }
  void AddField(const TField& field);
  /// Rehashes the fields into `size` places, a power of two.
  void Resize(std::size_t size);

  std::vector<TField> fields_;  ///< At most half of the places are in use.
  std::size_t last_place_ = 0;
  std::size_t count_ = 0;
};

/// Returns the index that `get` creates on its first call; null, counted as a failure, when memory
/// runs out.
template <class Get>
const TCodeIndex* TryGetIndex(Get get) {
  try {
    return &get();
  } catch (const std::exception&) {
    heap::CountFailure();
    return nullptr;
  }
}

/// Writes the sections of all rows, in their order.
Status WriteLegacyRows(std::span<const TProperty> rows, const void* object, TSectionWriter& out);

/// Writes the section of the row with this code, which must be one of `rows` or of their parts;
/// kFailure if it is not.
Status WriteLegacyRow(std::span<const TProperty> rows, const void* object, FourCharCode code,
                      TSectionWriter& out);

/// Writes the rows' attributes and children, in their order; skips the kBase row.
void WriteXmlRows(std::span<const TProperty> rows, const void* object, const TXmlWriteScope& scope);

/// Reads what `WriteXmlRows` wrote, in any order; stops at the first row that fails.
Status ReadXmlRows(std::span<const TProperty> rows, void* object, const TXmlReadScope& scope);

/// Names the bytes of a record that can decide the XML of its rows.
void NoteRowsUse(std::span<const TProperty> rows, const void* object, const TRecordUse& use);

[[nodiscard]] bool AreRowsEqual(std::span<const TProperty> rows, const void* object,
                                const void* other);

/// The 32-bit numbers in one type of record. Built once per type.
class TRecordNumbers {
 public:
  /// `record`: any record of the type that the rows describe.
  TRecordNumbers(std::span<const TProperty> rows, const void* record) { Add(rows, record, record); }

  /// Converts the numbers of a record between big-endian, the file's byte order, and the host's.
  /// Applied twice, it restores the record. `record` is aligned for its type.
  void ConvertByteOrder(void* record) const;

 private:
  void Add(std::span<const TProperty> rows, const void* record, const void* part);

  std::vector<std::uint32_t> offsets_;  ///< From the start of a record, in bytes.
};

// Builders of rows. `Member` is a pointer to the field (`&TNote::title_`); its type finds the codec
// unless one is given.

/// The codec of the fields of a type. Specialised in the header of each codec.
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
const void* LocateConstMember(const void* object) {
  using Object = typename TMemberTraits<decltype(Member)>::Object;
  return &(static_cast<const Object*>(object)->*Member);
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
  return {code,
          name,
          form,
          &codec,
          {&LocateMember<Member>, &LocateConstMember<Member>,
           sizeof(typename TMemberTraits<decltype(Member)>::Field)},
          detail};
}

/// A child element, always written.
template <auto Member>
constexpr TProperty Child(FourCharCode code, std::string_view name,
                          const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kChild, codec);
}

/// A child element, written if the field is set (a text: not empty; a switch: on).
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

/// An attribute, written if the field is set.
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

/// A field whose XML the object writes and reads itself.
template <auto Member>
constexpr TProperty ByHand(FourCharCode code, const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, {}, XmlForm::kByHand, codec);
}

/// A list: a container element `name`, always written, with one child element `item` per item.
template <auto Member>
constexpr TProperty List(FourCharCode code, std::string_view name, std::string_view item,
                         const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kChild, codec, item);
}

/// A list whose container is written only if it has items.
template <auto Member>
constexpr TProperty ListIfSet(FourCharCode code, std::string_view name, std::string_view item,
                              const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, name, XmlForm::kChildIfSet, codec, item);
}

/// A list without a container: its items are children of the object's own element.
template <auto Member>
constexpr TProperty Items(FourCharCode code, std::string_view item,
                          const TFieldCodec& codec = DefaultCodec<Member>()) {
  return Row<Member>(code, item, XmlForm::kItems, codec, item);
}

/// Marks where the base class writes its part. Without this row the base's part comes last.
constexpr TProperty BasePart() {
  TProperty row;
  row.form = XmlForm::kBase;
  return row;
}

}  // namespace zaf
