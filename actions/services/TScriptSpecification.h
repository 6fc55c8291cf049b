#pragma once

#include "actions/TTableSpecification.h"

namespace zaf {

/// Runs a script. Owns its texts.
class TScriptSpecification final
    : public TTableSpecification<TScriptSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("scrp");
  static constexpr std::string_view kElement = "ScriptAction";
  static constexpr std::string_view kLabel = "[Script Action] ";
  static std::span<const TProperty> Properties();

  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;

 private:
  FourCharCode language_ = Code("jscr");
  CText script_;
  CText scope_;
  bool is_block_ = false;
};

}  // namespace zaf
