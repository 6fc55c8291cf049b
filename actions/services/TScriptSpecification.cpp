#include "actions/services/TScriptSpecification.h"

#include "foundation/CaseFolding.h"

namespace zaf {
namespace {

constexpr FourCharCode kJavaScript = Code("jscr");

constexpr TKeyword kLanguageKeywords[] = {
    {static_cast<std::int32_t>(kJavaScript), "JavaScript"},
    {static_cast<std::int32_t>(Code("vscr")), "VBScript"},
    {static_cast<std::int32_t>(Code("ascr")), "AppleScript"},
};
constexpr TVocabulary kLanguages{kLanguageKeywords, TVocabulary::Fallback::kCharacters};
constexpr TKeywordCodec kLanguageCodec{kLanguages};

constexpr std::string_view kLanguageAttribute = "Type";
constexpr std::string_view kDefaultScope = "Default";

/// A scope: a text whose default, ignoring case, is written as the empty text.
class TScopeCodec final : public TTextCodecBase {
 protected:
  std::string_view Spell(const void* field, TScratch&) const override {
    const std::string_view scope = static_cast<const CText*>(field)->View();
    return EqualsIgnoringCase(scope, kDefaultScope) ? std::string_view() : scope;
  }
};

constexpr TScopeCodec kScopeCodec;

}  // namespace

std::span<const TProperty> TScriptSpecification::Properties() {
  using Script = TScriptSpecification;
  static constexpr TProperty kRows[] = {
      Attribute<&Script::language_>(Code("flav"), kLanguageAttribute, kLanguageCodec),
      AttributeIfSet<&Script::is_block_>(Code("blok"), "Block"),
      Child<&Script::script_>(Code("scrp"), "Script"),
      Child<&Script::scope_>(Code("scop"), "Scope", kScopeCodec),
  };
  return kRows;
}

/// An empty language is a code of its own; only a missing one means the default language.
Status TScriptSpecification::ReadXml(const TXmlReadContext& context, dom::Element element) {
  const Status status = TTableSpecification::ReadXml(context, element);
  if (!element.hasAttribute(kLanguageAttribute)) language_ = kJavaScript;
  return status;
}

Status TScriptSpecification::CheckEngine(ScriptEngine engine, CText& error) const {
  if (language_ != kJavaScript || engine == ScriptEngine::kPresent) return Status::kOk;
  error = "Javascript is not available";
  return Status::kFailure;
}

}  // namespace zaf
