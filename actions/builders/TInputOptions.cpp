#include "actions/builders/TInputOptions.h"

#include <string>

#include "fields/ValueCodecs.h"
#include "fields/WriteTextElement.h"

namespace zaf {
namespace {

// clang-format off
constexpr TKeyword kFixedKeywords[] = {
    {0, "SQLExpression"},
    {1, "SQLStatement"},
    {2, "CurrentTimestamp"},
    {3, "CurrentDate"},
    {4, "CurrentTime"},
    {5, "ClientName"},
    {6, "ClientDomain"},
    {7, "ClientIP"},
    {8, "ClientBrowser"},
    {9, "ServerAddress"},
    {10, "ServerPort"},
    {11, "Referrer"},
    {12, "Method"},
};
// clang-format on
constexpr TVocabulary kFixedKinds{kFixedKeywords, TVocabulary::Fallback::kFirstKeyword};
constexpr TKeywordCodec kFixedKindCodec{kFixedKinds};
constexpr std::int32_t kLastFixedKindWithText = 1;

constexpr TProperty kFixedInputRows[] = {
    Attribute<&TFixedInput::kind>(kNoCode, "Type", kFixedKindCodec),
};

/// A fixed input: its kind is an attribute of the object's own element, its text the content.
class TFixedInputCodec final : public TFieldCodec {
 public:
  void WriteXml(const TProperty&, const void* field, const TXmlWriteScope& scope) const override {
    const auto& input = *static_cast<const TFixedInput*>(field);
    WriteXmlRows(kFixedInputRows, field, scope);
    if (!input.HasText()) return;
    AppendText(scope, scope.element.getTagName(), input.text.View());
  }
  Status ReadXml(const TProperty&, void* field, const TXmlReadScope& scope) const override {
    auto& input = *static_cast<TFixedInput*>(field);
    const Status status = ReadXmlRows(kFixedInputRows, field, scope);
    std::string joined;
    if (input.HasText()) input.text.Set(scope.element.getTextContent(joined));
    return status;
  }
  bool IsEqual(const void* field, const void* other) const override {
    const auto& one = *static_cast<const TFixedInput*>(field);
    const auto& two = *static_cast<const TFixedInput*>(other);
    return AreRowsEqual(kFixedInputRows, field, other) &&
           (!one.HasText() || one.text.View() == two.text.View());
  }
  std::span<const TProperty> NestedNumbers() const override { return kFixedInputRows; }
  void NoteUse(const TProperty& row, const void* field, const TRecordUse& use) const override {
    const auto& input = *static_cast<const TFixedInput*>(field);
    use.Add(&input.kind, sizeof input.kind);
    if (input.HasText()) TCodecOf<TFixedText<128>>::kCodec.NoteUse(row, &input.text, use);
  }
};

constexpr TFixedInputCodec kFixedInputCodec{};

using Input = TInputOptions;

constexpr TProperty kTextRows[] = {
    Attribute<&Input::default_value>(kNoCode, "DefaultValue"),
    AttributeIfSet<&Input::required>(kNoCode, "Required"),
    Attribute<&Input::width>(kNoCode, "Width"),
    Attribute<&Input::height>(kNoCode, "Height"),
    Attribute<&Input::max_length>(kNoCode, "MaxLength"),
    AttributeIfSet<&Input::scrolling>(kNoCode, "Scrolling"),
    AttributeIfSet<&Input::password>(kNoCode, "Password"),
};
constexpr TProperty kPickListRows[] = {
    AttributeIfSet<&Input::multiple_or_checked>(kNoCode, "AllowMultiple"),
};
constexpr TProperty kCheckBoxRows[] = {
    AttributeIfSet<&Input::multiple_or_checked>(kNoCode, "Checked"),
    Attribute<&Input::value>(kNoCode, "Value"),
};
constexpr TProperty kFixedRows[] = {
    Row<&Input::fixed>(kNoCode, {}, XmlForm::kItems, kFixedInputCodec),
};
constexpr TProperty kNumberRows[] = {
    Carried<&Input::kind>(kNoCode),
    Carried<&Input::width>(kNoCode),
    Carried<&Input::height>(kNoCode),
    Carried<&Input::max_length>(kNoCode),
    Carried<&Input::fixed>(kNoCode, kFixedInputCodec),
};

constexpr FourCharCode kDropDownList = Code("drop");
constexpr FourCharCode kPickList = Code("pick");
constexpr FourCharCode kRadioCluster = Code("radi");

constexpr std::int32_t Number(FourCharCode code) { return static_cast<std::int32_t>(code); }

constexpr TChoice kInputKinds[] = {
    {Number(Code("text")), "InputText", kTextRows},
    {Number(kDropDownList), "InputDropDownList"},
    {Number(kPickList), "InputPickList", kPickListRows},
    {Number(kRadioCluster), "InputRadioCluster"},
    {Number(Code("chek")), "InputCheckBox", kCheckBoxRows, "InputCheckbox"},
    {Number(Code("fixd")), "InputFixed", kFixedRows},
};

}  // namespace

constexpr TChoiceCodec kInputOptionsCodec{kInputKinds, kNumberRows};

bool TFixedInput::HasText() const {
  return kFixedKinds.KeywordOf(kind).empty() || kind <= kLastFixedKindWithText;
}

bool TInputOptions::HasList() const {
  return kind == kDropDownList || kind == kPickList || kind == kRadioCluster;
}

}  // namespace zaf
