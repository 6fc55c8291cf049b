#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <type_traits>

#include "actions/TQuerySpecification.h"
#include "fields/ListCodecs.h"
#include "fields/TProperty.h"
#include "fields/ValueCodecs.h"

namespace zaf {

/// Supplies the operations of an action class from what the class declares about itself:
///
/// - `kTypeCode`, `kElement`, `kLabel`: its type code, XML element and the label of its display
///   name; an empty element is one that the class or its base makes itself;
/// - `kElements`, optional: the elements that it is made for, where that is not just `kElement`;
/// - `Properties()`: the rows of its own fields, in the order of the XML element; the `BasePart()`
///   row says where the part of `Base` goes. Every class declares it, if only to return no rows.
/// - `LegacyOrder()`, optional: the order of its legacy sections where that differs; kNoCode stands
///   for the sections of `Base`, which else come last;
/// - `kBaseSectionsFirst`, optional: the sections of `Base` come first instead. Classes inherit it.
/// - `kReadByHand`, where it overrides ReadLegacyProperty and is itself a base: the codes for which
///   it does so.
///
/// In each operation the class's own rows come first and `Base` gets the rest. A class overrides an
/// operation for what no row can say and calls this one for the others.
template <class Action, class Base>
class TTableSpecification : public Base {
 public:
  TTableSpecification() { this->SetTypeCode(Action::kTypeCode); }

  Status Clone(std::unique_ptr<TQuerySpecification>& target) const override {
    return CloneAction(Self(), target);
  }

  bool IsEqual(const TQuerySpecification& other) const override {
    const auto* const that = dynamic_cast<const Action*>(&other);
    return that != nullptr && Base::IsEqual(other) && AreRowsEqual(Rows(), &Self(), that);
  }

  Status ReadLegacyProperty(const TLegacySection& section) override {
    if (section.file == nullptr) return Status::kNoFile;
    static const TCodeIndex index = MakeCodeIndex(Self());
    const TCodeIndex::TField& field = index.Find(section.code);
    return field.row != nullptr ? field.Read(&Self(), section) : Base::ReadLegacyProperty(section);
  }

  Status WriteLegacyProperties(TSectionWriter& out) const override {
    if constexpr (HasOwnLegacyOrder()) {
      for (const FourCharCode code : Action::LegacyOrder()) {
        Status status = Status::kOk;
        if (code == kNoCode) {
          status = Base::WriteLegacyProperties(out);
        } else {
          WriteLegacyRow(Rows(), &Self(), code, out, status);
        }
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
    if (!element && !Action::kElement.empty()) element = parent.appendElement(Action::kElement);
    const std::span<const TProperty> rows = Rows();
    const auto base = std::find_if(rows.begin(), rows.end(),
                                   [](const TProperty& row) { return row.form == XmlForm::kBase; });
    const auto own = static_cast<std::size_t>(base - rows.begin());
    const TXmlWriteScope scope{context, element, this->GetName().View()};
    WriteXmlRows(rows.first(own), &Self(), scope);
    const Status status = Base::WriteXml(context, element, parent);
    WriteXmlRows(rows.subspan(own), &Self(), scope);
    return status;
  }

  Status ReadXml(const TXmlReadContext& context, dom::Element element) override {
    const Status status = ReadXmlRows(Rows(), &Self(), {context, element});
    return status == Status::kOk ? Base::ReadXml(context, element) : status;
  }

 protected:
  /// Adds the rows of the class and of its bases to the index of `object`'s class, so that one
  /// look-up finds them all. What a base reads by hand is left to that base.
  static void AddLegacyRows(TCodeIndex& index, const Action& action, const void* object) {
    index.Add(Rows(), &action, object);
    static_assert(IsReadByHandTold(), "a base tells for which codes it overrides");
    index.Leave(Base::kReadByHand);
    Base::AddLegacyRows(index, action, object);
  }

 private:
  /// Tells functions apart; their addresses are no constants under some sanitizers.
  template <auto Function>
  struct TFunction;

  /// An order that is inherited is that of a base's sections.
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

  /// Whether a `Base` with a ReadLegacyProperty of its own has a `kReadByHand` of its own, too.
  static constexpr bool IsReadByHandTold() {
    if constexpr (!std::is_same_v<decltype(DeclaringClass(&Base::ReadLegacyProperty)), Base> ||
                  !requires { typename Base::TTableSpecification; }) {
      return true;
    } else {
      return !std::is_same_v<TConstant<Base::kReadByHand>,
                             TConstant<Base::TTableSpecification::kReadByHand>>;
    }
  }

  static TCodeIndex MakeCodeIndex(const Action& action) {
    TCodeIndex index;
    AddLegacyRows(index, action, &action);
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
