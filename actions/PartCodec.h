#pragma once

#include <span>

#include "actions/TProperty.h"

namespace zaf {

/// A part of an action: an object with rows of its own, whose legacy sections stand among those of
/// the action and whose XML is a child element, or, for kItems, stands in the object's own element.
/// The codec of a part that has a legacy section of its own derives from it.
class TPartCodecBase : public TFieldCodec {
 public:
  constexpr explicit TPartCodecBase(std::span<const TProperty> (*properties)())
      : properties_(properties) {}

  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;
  bool IsEqual(const void* field, const void* other) const override;
  std::span<const TProperty> Nested() const override { return properties_(); }

 protected:
  ~TPartCodecBase() = default;

 private:
  std::span<const TProperty> (*properties_)();
};

class TPartCodec final : public TPartCodecBase {
 public:
  using TPartCodecBase::TPartCodecBase;
};

template <class Object>
inline constexpr TPartCodec kPartCodec{&Object::Properties};

/// A part in a child element `name`, always written.
template <auto Member>
constexpr TProperty Part(std::string_view name) {
  using Field = typename TMemberTraits<decltype(Member)>::Field;
  return Row<Member>(kNoCode, name, XmlForm::kChild, kPartCodec<Field>);
}

/// A part without an element of its own: its rows stand among those of the object.
template <auto Member>
constexpr TProperty InlinePart() {
  using Field = typename TMemberTraits<decltype(Member)>::Field;
  return Row<Member>(kNoCode, {}, XmlForm::kItems, kPartCodec<Field>);
}

}  // namespace zaf
