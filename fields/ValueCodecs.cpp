#include "fields/ValueCodecs.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "fields/WriteTextElement.h"
#include "foundation/CaseFolding.h"

namespace zaf {
namespace {

template <class Field>
const Field& Get(const void* field) {
  return *static_cast<const Field*>(field);
}

template <class Field>
Field& Get(void* field) {
  return *static_cast<Field*>(field);
}

std::string_view SpellNumber(std::int32_t value, std::array<char, 16>& scratch) {
  char* const begin = scratch.data();
  const auto result = std::to_chars(begin, begin + scratch.size(), value);
  return {begin, static_cast<std::size_t>(result.ptr - begin)};
}

std::string_view SpellCode(FourCharCode code, std::array<char, 16>& scratch) {
  const std::array<char, 4> characters = Characters(code);
  std::copy(characters.begin(), characters.end(), scratch.begin());
  return UntilNul({scratch.data(), characters.size()});
}

/// Whether the text is a number and, without leading spaces, a plus sign and leading zeros,
/// `digits`.
bool IsNumber(std::string_view text, std::string_view digits) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool is_negative = text.starts_with('-');
  if (is_negative || text.starts_with('+')) text.remove_prefix(1);
  while (text.size() > 1 && text.front() == '0') text.remove_prefix(1);
  if (is_negative && digits.starts_with('-')) digits.remove_prefix(1);
  return text == digits && !text.empty() &&
         text.find_first_not_of("0123456789") == std::string_view::npos;
}

// A field with keywords is a number or a code, both of 32 bits.

std::int32_t LoadNumber32(const void* field) {
  std::int32_t value = 0;
  std::memcpy(&value, field, sizeof value);
  return value;
}

void StoreNumber32(void* field, std::int32_t value) { std::memcpy(field, &value, sizeof value); }

}  // namespace

void TValueCodec::WriteXml(const TProperty& row, const void* field,
                           const TXmlWriteScope& scope) const {
  const bool if_set = row.form == XmlForm::kChildIfSet || row.form == XmlForm::kAttributeIfSet;
  if (if_set && !IsSet(field)) return;
  const std::string_view text = Spell(field, scope.context.scratch);
  if (row.form == XmlForm::kAttribute || row.form == XmlForm::kAttributeIfSet) {
    WriteTextAttribute(scope, row.name, text);
  } else {
    WriteTextElement(scope, row.name, text);
  }
}

Status TValueCodec::ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const {
  const bool is_attribute = row.form == XmlForm::kAttribute || row.form == XmlForm::kAttributeIfSet;
  return Parse(field,
               is_attribute ? scope.element.getAttribute(row.name) : scope.FindText(row.name));
}

std::uint64_t TValueCodec::GetUsed(const void*, const TLegacySection&) const {
  return sizeof(std::int32_t);
}

void TValueCodec::ReportReading(const TProperty& row, const void* field,
                                const TXmlReadScope& scope) const {
  const bool is_attribute = row.form == XmlForm::kAttribute || row.form == XmlForm::kAttributeIfSet;
  const std::string_view text = is_attribute
                                    ? scope.element.getAttribute(row.name)
                                    : scope.element.getFirstChildElement(row.name).getTextContent();
  TScratch scratch;
  const std::string_view spelled = Spell(field, scratch);
  if (text.empty() || EqualsIgnoringCase(text, spelled) || IsNumber(text, spelled)) return;
  const bool is_cut = text.starts_with(spelled) && !IsNumber(spelled, spelled);
  TLossReporter& losses = *scope.context.losses;
  if (!is_attribute) losses.SetElement(scope.element.getFirstChildElement(row.name));
  losses.Report(is_cut && !spelled.empty() ? LossReason::kCutText : LossReason::kUnknownWord,
                row.name);
}

Status TTextCodecBase::ReadLegacy(const TProperty&, void* field,
                                  const TLegacySection& section) const {
  std::string_view text;
  if (const Status status = section.View(text); status != Status::kOk) return status;
  if (inner_nul_ == InnerNul::kEndsText) text = UntilNul(text);
  Get<CText>(field) = text;
  return Get<CText>(field).GetCharacterCount() == text.size() ? Status::kOk : Status::kFailure;
}

std::uint64_t TTextCodecBase::GetUsed(const void* field, const TLegacySection& section) const {
  if (inner_nul_ == InnerNul::kStays) return section.length;
  return std::min(section.length, Get<CText>(field).GetCharacterCount() + 1);
}

Status TTextCodecBase::WriteLegacy(const TProperty& row, const void* field,
                                   TSectionWriter& out) const {
  const auto& text = Get<CText>(field);
  if (text.IsEmpty() && legacy_ == LegacyText::kIfNotEmpty) return Status::kOk;
  if (out.GetLosses() != nullptr && inner_nul_ == InnerNul::kEndsText &&
      UntilNul(text.View()).size() < text.GetCharacterCount())
    out.GetLosses()->ReportIn(row.code, LossReason::kCutAtNul, {});
  return out.Write(row.code, text);
}

bool TTextCodecBase::IsEqual(const void* field, const void* other) const {
  return Get<CText>(field).View() == Get<CText>(other).View();
}

std::string_view TTextCodecBase::Spell(const void* field, TScratch&) const {
  return Get<CText>(field).View();
}

Status TTextCodecBase::Parse(void* field, std::string_view text) const {
  Get<CText>(field) = text;
  return Status::kOk;
}

bool TTextCodecBase::IsSet(const void* field) const { return !Get<CText>(field).IsEmpty(); }

Status TSwitchCodec::ReadLegacy(const TProperty&, void* field,
                                const TLegacySection& section) const {
  std::int32_t value = 0;
  if (const Status status = section.Read(value); status != Status::kOk) return status;
  Get<bool>(field) = rule_ == SwitchRule::kPositive ? value > 0 : value != 0;
  return Status::kOk;
}

Status TSwitchCodec::WriteLegacy(const TProperty& row, const void* field,
                                 TSectionWriter& out) const {
  if (!Get<bool>(field) && legacy_ == LegacySwitch::kIfOn) return Status::kOk;
  return out.Write(row.code, std::int32_t{Get<bool>(field)});
}

bool TSwitchCodec::IsEqual(const void* field, const void* other) const {
  return Get<bool>(field) == Get<bool>(other);
}

std::string_view TSwitchCodec::Spell(const void* field, TScratch&) const {
  return Get<bool>(field) ? on_text_ : "False";
}

Status TSwitchCodec::Parse(void* field, std::string_view text) const {
  Get<bool>(field) = text == "True";
  return Status::kOk;
}

bool TSwitchCodec::IsSet(const void* field) const { return Get<bool>(field); }

Status TNumberCodecBase::ReadLegacy(const TProperty&, void* field,
                                    const TLegacySection& section) const {
  std::int32_t value = 0;
  if (const Status status = section.Read(value); status != Status::kOk) return status;
  StoreNumber32(field, value);
  return Status::kOk;
}

Status TNumberCodecBase::WriteLegacy(const TProperty& row, const void* field,
                                     TSectionWriter& out) const {
  return out.Write(row.code, LoadNumber32(field));
}

bool TNumberCodecBase::IsEqual(const void* field, const void* other) const {
  return LoadNumber32(field) == LoadNumber32(other);
}

std::string_view TNumberCodecBase::Spell(const void* field, TScratch& scratch) const {
  return SpellNumber(Get<std::int32_t>(field), scratch);
}

Status TNumberCodecBase::Parse(void* field, std::string_view text) const {
  Get<std::int32_t>(field) = ParseNumber(text);
  return Status::kOk;
}

bool TNumberCodecBase::IsSet(const void* field) const { return Get<std::int32_t>(field) != 0; }

std::string_view TCodeCodec::Spell(const void* field, TScratch& scratch) const {
  return SpellCode(Get<FourCharCode>(field), scratch);
}

Status TCodeCodec::Parse(void* field, std::string_view text) const {
  Get<FourCharCode>(field) = CodeOfText(text);
  return Status::kOk;
}

bool TCodeCodec::IsSet(const void* field) const {
  TScratch scratch;
  return !Spell(field, scratch).empty();
}

std::string_view TVocabulary::KeywordOf(std::int32_t value) const {
  const auto found = std::find_if(keywords.begin(), keywords.end(),
                                  [&](const TKeyword& keyword) { return keyword.value == value; });
  return found == keywords.end() ? std::string_view() : found->keyword;
}

bool TVocabulary::Find(std::string_view keyword, std::int32_t& value) const {
  const auto found = std::find_if(keywords.begin(), keywords.end(),
                                  [&](const TKeyword& known) { return known.keyword == keyword; });
  if (found == keywords.end()) return false;
  value = found->value;
  return true;
}

void TKeywordCodec::ReportWriting(const TProperty& row, const void* field,
                                  const TXmlWriteScope& scope) const {
  const bool keeps_number = vocabulary_.fallback == TVocabulary::Fallback::kNumber ||
                            vocabulary_.fallback == TVocabulary::Fallback::kCharacters;
  const bool is_conditional =
      row.form == XmlForm::kChildIfSet || row.form == XmlForm::kAttributeIfSet;
  if (keeps_number && !is_conditional) return;
  const std::int32_t value = LoadNumber32(field);
  if (value != 0 && vocabulary_.KeywordOf(value).empty()) scope.context.losses->ReportValue(row);
}

std::string_view TKeywordCodec::Spell(const void* field, TScratch& scratch) const {
  const std::int32_t value = LoadNumber32(field);
  const std::string_view keyword = vocabulary_.KeywordOf(value);
  if (!keyword.empty()) return keyword;
  switch (vocabulary_.fallback) {
    case TVocabulary::Fallback::kNumber:
      return SpellNumber(value, scratch);
    case TVocabulary::Fallback::kCharacters:
      return SpellCode(FourCharCode{static_cast<std::uint32_t>(value)}, scratch);
    case TVocabulary::Fallback::kZero:
      return {};
    case TVocabulary::Fallback::kFirstKeyword:
    case TVocabulary::Fallback::kRefuse:
      break;
  }
  return vocabulary_.keywords.front().keyword;
}

Status TKeywordCodec::Parse(void* field, std::string_view text) const {
  std::int32_t value = vocabulary_.keywords.front().value;
  if (!vocabulary_.Find(text, value)) {
    switch (vocabulary_.fallback) {
      case TVocabulary::Fallback::kNumber:
        value = ParseNumber(text);
        break;
      case TVocabulary::Fallback::kCharacters:
        value = static_cast<std::int32_t>(CodeOfText(text));
        break;
      case TVocabulary::Fallback::kRefuse:
        if (!text.empty()) return Status::kMalformed;
        break;
      case TVocabulary::Fallback::kZero:
        value = 0;
        break;
      case TVocabulary::Fallback::kFirstKeyword:
        break;
    }
  }
  StoreNumber32(field, value);
  return Status::kOk;
}

bool TKeywordCodec::IsSet(const void* field) const {
  return !vocabulary_.KeywordOf(LoadNumber32(field)).empty();
}

}  // namespace zaf
