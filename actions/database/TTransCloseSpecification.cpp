#include "actions/database/TTransCloseSpecification.h"

namespace zaf {
namespace {

constexpr std::int32_t kCommit = 1;
constexpr std::int32_t kRollback = 2;

constexpr TKeyword kEndKeywords[] = {
    {kCommit, "Commit"},
    {kRollback, "Rollback"},
};
constexpr TVocabulary kEndTypes{kEndKeywords, TVocabulary::Fallback::kRefuse};
constexpr TKeywordCodec kEndTypeCodec{kEndTypes};

}  // namespace

std::span<const TProperty> TTransCloseSpecification::Properties() {
  static constexpr TProperty kRows[] = {
      Child<&TTransCloseSpecification::end_type_>(Code("eact"), "EndType", kEndTypeCodec),
  };
  return kRows;
}

bool TTransCloseSpecification::IsCommit() const { return end_type_ != kRollback; }

Status TTransCloseSpecification::ReadLegacyProperty(const TLegacySection& section) {
  if (section.losses != nullptr && TSourceSpecification::IsDataSource(section.code))
    section.losses->ReportDropped(section);
  if (section.code != Code("plat")) return TTableSpecification::ReadLegacyProperty(section);
  std::int32_t platform = 0;
  const Status status = section.Read(platform);
  if (status != Status::kOk) return status;
  const bool was_commit = IsCommit();
  end_type_ = platform == static_cast<std::int32_t>(Code("mac ")) ? kCommit : kRollback;
  section.ReportUnread(sizeof platform);
  section.NoteField(Code("eact"), IsCommit() == was_commit);
  return Status::kOk;
}

void TTransCloseSpecification::GetDisplayName(CText& name) const {
  name = kLabel;
  name.Append(IsCommit() ? " with commit " : " with rollback ");
  name.Append(GetName().View());
}

Status TTransCloseSpecification::WriteXml(TXmlWriteContext& context, dom::Element element,
                                          dom::Element parent) const {
  const auto write = [&] {
    if (!element) element = parent.appendElement(kElement);
    WriteXmlRows(Properties(), this, {context, element, GetName().View()});
    // Omits the data source, as reading does.
    WriteCommonXml(context, element);
    return Status::kOk;
  };
  return Attempt(write, Status::kFailure);
}

Status TTransCloseSpecification::ReadXml(const TXmlReadContext& context, dom::Element element) {
  const auto read = [&] {
    const Status status = ReadXmlRows(Properties(), this, {context, element});
    return status == Status::kOk ? ReadCommonXml(context, element) : status;
  };
  return Attempt(read, Status::kFailure);
}

}  // namespace zaf
