#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <type_traits>
#include <typeinfo>

#include "actions/TQuerySpecification.h"
#include "fields/ListCodecs.h"
#include "fields/TProperty.h"
#include "fields/ValueCodecs.h"

namespace zaf {

/// Implements the operations of an action class from these declarations of the class:
///
/// - `kTypeCode`, `kElement`, `kLabel`: its type code, XML element and the label of its display
///   name. An empty element: the class or its base makes the element itself.
/// - `kElements`, optional: the elements that are read as this class, if not just `kElement`.
/// - `Properties()`: the rows of its own fields, in the order of the XML element; the `BasePart()`
///   row marks where `Base` writes its part. Required, even to return no rows.
/// - `LegacyOrder()`, optional: the order of its legacy sections if it differs. kNoCode is the
///   place of the sections of `Base`, which otherwise come last.
/// - `kBaseSectionsFirst`, optional: the sections of `Base` come first instead. Classes inherit it.
/// - `kReadByHand`: the codes for which it overrides ReadLegacyProperty. Required if it does and is
///   itself a base.
///
/// Each operation handles the class's own rows and leaves the rest to `Base`. Where rows are not
/// enough, a class overrides the operation and calls this one for the rest.
template <class Action, class Base>
class TTableSpecification : public Base {
 public:
  TTableSpecification() { this->SetTypeCode(Action::kTypeCode); }

  Status Clone(std::unique_ptr<TQuerySpecification>& target) const override {
    return CloneAction(Self(), target);
  }

  bool IsEqual(const TQuerySpecification& other) const override {
    return typeid(*this) == typeid(other) && Base::IsEqual(other) &&
           AreRowsEqual(Rows(), &Self(), static_cast<const Action*>(&other));
  }

  Status ReadLegacyProperty(const TLegacySection& section) override {
    if (section.file == nullptr) return Status::kNoFile;
    const TCodeIndex* const index = TryGetIndex([this]() -> const TCodeIndex& {
      static const TCodeIndex own = MakeCodeIndex(Self());
      return own;
    });
    if (index == nullptr) return Status::kFailure;
    const TCodeIndex::TField& field = index->Find(section.code);
    return field.row != nullptr ? field.Read(&Self(), section) : Base::ReadLegacyProperty(section);
  }

  Status WriteLegacyProperties(TSectionWriter& out) const override {
    if constexpr (HasOwnLegacyOrder()) {
      for (const FourCharCode code : Action::LegacyOrder()) {
        const Status status = code == kNoCode ? Base::WriteLegacyProperties(out)
                                              : WriteLegacyRow(Rows(), &Self(), code, out);
        if (status != Status::kOk) return status;
      }
      return Status::kOk;
    } else if constexpr (requires { Action::kBaseSectionsFirst; }) {
      const Status status = Base::WriteLegacyProperties(out);
      return status == Status::kOk ? WriteLegacyRows(Rows(), &Self(), out) : status;
    } else {
      const Status status = WriteLegacyRows(Rows(), &Self(), out);
      return status == Status::kOk ? Base::WriteLegacyProperties(out) : status;
    }
  }

  void GetDisplayName(CText& name) const override {
    name = Action::kLabel;
    name.Append(this->GetName().View());
  }

  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override {
    const auto write = [&] {
      if (!element && !Action::kElement.empty()) element = parent.appendElement(Action::kElement);
      const std::span<const TProperty> rows = Rows();
      const auto base = std::find_if(rows.begin(), rows.end(), [](const TProperty& row) {
        return row.form == XmlForm::kBase;
      });
      const auto own = static_cast<std::size_t>(base - rows.begin());
      const TXmlWriteScope scope{context, element, this->GetName().View()};
      WriteXmlRows(rows.first(own), &Self(), scope);
      const Status status = Base::WriteXml(context, element, parent);
      WriteXmlRows(rows.subspan(own), &Self(), scope);
      return status;
    };
    return Attempt(write, Status::kFailure);
  }

  Status ReadXml(const TXmlReadContext& context, dom::Element element) override {
    const auto read = [&] {
      const Status status = ReadXmlRows(Rows(), &Self(), {context, element});
      return status == Status::kOk ? Base::ReadXml(context, element) : status;
    };
    return Attempt(read, Status::kFailure);
  }

 protected:
  /// Adds the rows of this class and of its bases to the index of the class of `object`, which is
  /// this object, so that one look-up covers them all. Excludes the codes that a base reads by
  /// hand.
  void AddLegacyRows(TCodeIndex& index, const void* object) const {
    index.Add(Rows(), object, &Self());
    static_assert(DeclaresReadByHand(), "a base that overrides ReadLegacyProperty lists its codes");
    index.Exclude(Base::kReadByHand);
    Base::AddLegacyRows(index, object);
  }

 private:
  /// A type per function, by which functions are compared: with some sanitizers their addresses are
  /// not constants.
  template <auto Function>
  struct TFunction;

  /// Whether `Action` declares a LegacyOrder(); an inherited one lists a base's sections.
  static constexpr bool HasOwnLegacyOrder() {
    if constexpr (!requires { &Action::LegacyOrder; }) {
      return false;
    } else if constexpr (!requires { &Base::LegacyOrder; }) {
      return true;
    } else {
      return !std::is_same_v<TFunction<&Action::LegacyOrder>, TFunction<&Base::LegacyOrder>>;
    }
  }

  template <const auto& Constant>
  struct TConstant;
  template <class Class>
  static Class DeclaringClass(Status (Class::*)(const TLegacySection&));

  /// Whether `Base` declares `kReadByHand` itself, if it declares ReadLegacyProperty itself.
  static constexpr bool DeclaresReadByHand() {
    if constexpr (!std::is_same_v<decltype(DeclaringClass(&Base::ReadLegacyProperty)), Base> ||
                  !requires { typename Base::TTableSpecification; }) {
      return true;
    } else {
      return !std::is_same_v<TConstant<Base::kReadByHand>,
                             TConstant<Base::TTableSpecification::kReadByHand>>;
    }
  }

  static TCodeIndex MakeCodeIndex(const Action& object) {
    TCodeIndex index;
    object.TTableSpecification::AddLegacyRows(index, &object);
    return index;
  }

  static std::span<const TProperty> Rows() {
    static_assert(!std::is_same_v<TFunction<&Action::Properties>, TFunction<&Base::Properties>>,
                  "an action class declares its own Properties()");
    return Action::Properties();
  }
  Action& Self() { return static_cast<Action&>(*this); }
  const Action& Self() const { return static_cast<const Action&>(*this); }
};

}  // namespace zaf
