#pragma once

#include "actions/TTableSpecification.h"
#include "actions/flow/TAssignItem.h"

namespace zaf {

/// The assign action: sets variables and cookies. When it is read from XML, its results text
/// consists of the same assignments as server tags, unless the element refers to a results text.
/// Owns its items.
class TAssignSpecification final
    : public TTableSpecification<TAssignSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("asgn");
  static constexpr std::string_view kElement = "AssignAction";
  static constexpr std::string_view kLabel = "[Assign Action] ";
  static std::span<const TProperty> Properties();

  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;

 private:
  TAssignItemArray items_;
};

}  // namespace zaf
