#pragma once

#include <array>

#include "actions/TTableSpecification.h"

namespace zaf {

/// Whether the server has an engine for JavaScript.
enum class ScriptEngine : bool { kMissing, kPresent };

/// The script action. Owns its texts.
class TScriptSpecification final
    : public TTableSpecification<TScriptSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("scrp");
  static constexpr std::string_view kElement = "ScriptAction";
  static constexpr std::string_view kLabel = "[Script Action] ";
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 5> LegacyOrder() {
    return {kNoCode, Code("flav"), Code("scrp"), Code("scop"), Code("blok")};
  }

  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;
  /// Whether the server can run the script: kFailure, with the reason in `error`, for JavaScript
  /// without an engine.
  Status CheckEngine(ScriptEngine engine, CText& error) const;

 private:
  FourCharCode language_ = Code("jscr");
  CText script_;
  CText scope_;
  bool is_block_ = false;
};

}  // namespace zaf
