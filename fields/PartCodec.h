#pragma once

#include <span>

#include "fields/TProperty.h"
#include "foundation/TLazyRecord.h"

namespace zaf {

/// A part of an action: an object with rows of its own. Its legacy sections are among those of the
/// action; its XML is a child element or, for kItems, part of the action's own element.
class TPartCodec final : public TFieldCodec {
 public:
  constexpr explicit TPartCodec(std::span<const TProperty> (*properties)())
      : properties_(properties) {}

  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;
  std::span<const TProperty> Nested() const override { return properties_(); }

 private:
  std::span<const TProperty> (*properties_)();
};

template <class Object>
inline constexpr TPartCodec kPartCodec{&Object::Properties};

/// A part stored as a `TLazyRecord<Record>`. The rows of `Record` have no legacy sections. The
/// codec of a part that is one legacy section as a whole derives from this class.
template <class Record>
class TLazyPartCodecBase : public TFieldCodec {
 public:
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override {
    kPartCodec<Record>.WriteXml(row, &Get(field), scope);
  }
  /// kFailure if memory for the record runs out.
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override {
    Record record{};
    const Status status = kPartCodec<Record>.ReadXml(row, &record, scope);
    return status == Status::kOk ? Set(field, record) : status;
  }
  bool IsEqual(const void* field, const void* other) const override {
    return kPartCodec<Record>.IsEqual(&Get(field), &Get(other));
  }

 protected:
  static const Record& Get(const void* field) {
    return static_cast<const TLazyRecord<Record>*>(field)->Get();
  }
  static Status Set(void* field, const Record& record) {
    return static_cast<TLazyRecord<Record>*>(field)->Set(record) ? Status::kOk : Status::kFailure;
  }

  ~TLazyPartCodecBase() = default;
};

template <class Record>
class TLazyPartCodec final : public TLazyPartCodecBase<Record> {};

template <class Record>
inline constexpr TLazyPartCodec<Record> kPartCodec<TLazyRecord<Record>>{};

/// A part in a child element `name`, always written.
template <auto Member>
constexpr TProperty Part(std::string_view name) {
  using Field = typename TMemberTraits<decltype(Member)>::Field;
  return Row<Member>(kNoCode, name, XmlForm::kChild, kPartCodec<Field>);
}

/// A part without an element of its own: its rows write to the object's element.
template <auto Member>
constexpr TProperty InlinePart() {
  using Field = typename TMemberTraits<decltype(Member)>::Field;
  return Row<Member>(kNoCode, {}, XmlForm::kItems, kPartCodec<Field>);
}

}  // namespace zaf
