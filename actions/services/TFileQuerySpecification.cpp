#include "actions/services/TFileQuerySpecification.h"

#include <algorithm>
#include <string>

namespace zaf {
namespace {

/// The range that covers a whole file.
constexpr std::string_view kWholeFile = "%0.$";
constexpr std::string_view kRuleAttribute = "FileExistsRule";

/// How writing treats a file that exists. The first one is used for an unknown keyword.
constexpr TKeyword kRuleKeywords[] = {
    {'w', "Overwrite"},
    {'a', "Append"},
    {'e', "Error"},
};
constexpr TVocabulary kRules{kRuleKeywords, TVocabulary::Fallback::kFirstKeyword};

/// The mode: one character; older files hold it as the last byte of a number.
class TModeCodec final : public TFieldCodec {
 public:
  Status ReadLegacy(const TProperty&, void* field, const TLegacySection& section) const override {
    ByteView bytes;
    if (const Status status = section.View(bytes); status != Status::kOk) return status;
    if (bytes.empty()) return Status::kOk;
    const bool is_number = bytes.size() == 4 && bytes.front() == std::byte{0};
    *static_cast<char*>(field) = std::to_integer<char>(is_number ? bytes.back() : bytes.front());
    section.ReportUnread(is_number ? bytes.size() : 1);
    return Status::kOk;
  }
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override {
    return out.Write(row.code, AsBytes({static_cast<const char*>(field), 1}));
  }
  bool IsEqual(const void* field, const void* other) const override {
    return *static_cast<const char*>(field) == *static_cast<const char*>(other);
  }
};

/// The range to read: an empty one is written as that of the whole file.
class TRangeCodec final : public TTextCodecBase {
 protected:
  std::string_view Spell(const void* field, TScratch&) const override {
    const auto& range = *static_cast<const CText*>(field);
    return range.IsEmpty() ? kWholeFile : range.View();
  }
  Status Parse(void* field, std::string_view text) const override {
    return TTextCodecBase::Parse(field, text == kWholeFile ? std::string_view() : text);
  }
};

/// The variables that are read into, as children of the element. An empty list is written as one
/// empty variable, which is read back as an empty list.
class TVariablesCodec final : public TFieldCodec {
 public:
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override {
    kTextListCodec.WriteXml(row, field, scope);
    if (static_cast<const CTextPtrArray*>(field)->IsEmpty()) scope.element.appendElement(row.name);
  }
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override {
    const Status status = kTextListCodec.ReadXml(row, field, scope);
    auto& variables = *static_cast<CTextPtrArray*>(field);
    if (variables.GetCount() == 1 && variables[0].IsEmpty()) variables.DeleteAll();
    return status;
  }
  bool IsEqual(const void* field, const void* other) const override {
    return kTextListCodec.IsEqual(field, other);
  }
};

constexpr TModeCodec kModeCodec;
constexpr TRangeCodec kRangeCodec;
constexpr TVariablesCodec kVariablesCodec;

}  // namespace

/// An operation and the element for its fields.
struct TFileQuerySpecification::TOperation {
  std::string_view element;
  std::string_view modes;  ///< The modes that select it; empty: all others. Reading sets the first.
  std::span<const TProperty> rows;
};

std::span<const TProperty> TFileQuerySpecification::Properties() {
  using File = TFileQuerySpecification;
  static constexpr TProperty kRows[] = {
      ByHand<&File::file_name_>(Code("flnm")),
      ByHand<&File::mode_>(Code("flmd"), kModeCodec),
      ByHand<&File::range_or_data_>(Code("acsg")),
      ByHand<&File::variables_>(Code("vbls")),
      ByHand<&File::file_name_variable_>(Code("fnvr")),
      ByHand<&File::file_type_>(Code("mctp")),
      ByHand<&File::file_creator_>(Code("mccr")),
  };
  return kRows;
}

/// In the order in which the elements are searched for.
std::span<const TFileQuerySpecification::TOperation> TFileQuerySpecification::Operations() {
  using File = TFileQuerySpecification;
  static constexpr TProperty kDeleteRows[] = {
      Child<&File::file_name_>(kNoCode, "Name"),
  };
  static constexpr TProperty kWriteRows[] = {
      Child<&File::file_name_>(kNoCode, "Name"),
      Child<&File::range_or_data_>(kNoCode, "Data"),
      Child<&File::file_type_>(kNoCode, "MacFileType"),
      Child<&File::file_creator_>(kNoCode, "MacFileCreator"),
      Child<&File::file_name_variable_>(kNoCode, "FilenameVariable"),
  };
  static constexpr TProperty kReadRows[] = {
      Child<&File::file_name_>(kNoCode, "Name"),
      Child<&File::range_or_data_>(kNoCode, "Range", kRangeCodec),
      Items<&File::variables_>(kNoCode, "Variable", kVariablesCodec),
  };
  static constexpr TOperation kOperations[] = {
      {"DeleteFile", "d", kDeleteRows},
      {"WriteFile", "wae", kWriteRows},
      {"ReadFile", "", kReadRows},
  };
  return kOperations;
}

Status TFileQuerySpecification::WriteXml(TXmlWriteContext& context, dom::Element,
                                         dom::Element parent) const {
  return Attempt([&] { return WriteElement(context, parent); }, Status::kFailure);
}

Status TFileQuerySpecification::WriteElement(TXmlWriteContext& context, dom::Element parent) const {
  const dom::Element element = parent.appendElement(kElement);
  const auto operations = Operations();
  const TOperation& operation =
      *std::find_if(operations.begin(), operations.end(), [&](const TOperation& known) {
        return known.modes.empty() || known.modes.find(mode_) != std::string_view::npos;
      });
  if (context.losses != nullptr) ReportUnused(operation, *context.losses);
  const dom::Element part = element.appendElement(operation.element);
  if (const std::string_view rule = kRules.KeywordOf(mode_); !rule.empty())
    part.appendAttribute(kRuleAttribute, rule);
  WriteXmlRows(operation.rows, this, {context, part, GetName().View()});
  return TTableSpecification::WriteXml(context, element, parent);
}

void TFileQuerySpecification::ReportUnused(const TOperation& operation,
                                           TLossReporter& losses) const {
  const TFileQuerySpecification empty;
  for (const TProperty& row : Properties()) {
    const bool is_used =
        row.codec == &kModeCodec || std::ranges::any_of(operation.rows, [&](const TProperty& used) {
          return used.locate.find == row.locate.find;
        });
    if (!is_used && !row.codec->IsEqual(row.locate(this), row.locate(&empty)))
      losses.ReportIn(row.code, LossReason::kUnusedSection, {});
  }
}

Status TFileQuerySpecification::ReadXml(const TXmlReadContext& context, dom::Element element) {
  return Attempt([&] { return ReadElement(context, element); }, Status::kFailure);
}

Status TFileQuerySpecification::ReadElement(const TXmlReadContext& context, dom::Element element) {
  constexpr char kReadMode = 'r';
  mode_ = kReadMode;
  for (const TOperation& operation : Operations()) {
    const dom::Element part = element.getFirstChildElement(operation.element);
    if (!part) continue;
    if (!operation.modes.empty()) mode_ = operation.modes.front();
    std::int32_t rule = 0;
    const std::string_view word = part.getAttribute(kRuleAttribute);
    if (operation.modes.size() > 1 && kRules.Find(word, rule))
      mode_ = static_cast<char>(rule);
    else if (operation.modes.size() > 1 && !word.empty() && context.losses != nullptr)
      context.losses->ReportAt(part, LossReason::kUnknownWord, kRuleAttribute);
    if (const Status status = ReadXmlRows(operation.rows, this, {context, part});
        status != Status::kOk)
      return status;
    break;
  }
  return TTableSpecification::ReadXml(context, element);
}

}  // namespace zaf
