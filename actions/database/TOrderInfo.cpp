#include "actions/database/TOrderInfo.h"

#include <string>

#include "fields/ValueCodecs.h"
#include "foundation/CaseFolding.h"

namespace zaf {
namespace {

constexpr std::string_view kAscendingElement = "Ascending";
constexpr std::string_view kOwnerElement = "TableOwner";

/// The direction, without XML form of its own. Compared ignoring case.
class TAscendingCodec final : public TFieldCodec {
 public:
  bool IsEqual(const void* field, const void* other) const override {
    const auto text = [](const void* direction) {
      return static_cast<const decltype(TOrderInfo::ascending)*>(direction)->View();
    };
    return EqualsIgnoringCase(text(field), text(other));
  }
  void NoteUse(const TProperty& row, const void* field, const TRecordUse& use) const override {
    TCodecOf<decltype(TOrderInfo::ascending)>::kCodec.NoteUse(row, field, use);
  }
};

constexpr TAscendingCodec kAscendingCodec;

}  // namespace

std::span<const TProperty> TOrderInfo::Properties() {
  using Order = TOrderInfo;
  static constexpr TProperty kRows[] = {
      Child<&Order::table>(kNoCode, "TableName"),
      Child<&Order::column>(kNoCode, "ColumnName"),
      ByHand<&Order::ascending>(kNoCode, kAscendingCodec),
  };
  return kRows;
}

/// The owner remains part of the table's name: its own element is always empty.
void TOrderInfo::WriteXml(const TXmlWriteScope& scope) const {
  if (EqualsIgnoringCase(ascending.View(), "true"))
    scope.element.appendPlainElement(kAscendingElement, "True");
  else if (scope.context.losses != nullptr && !ascending.View().empty() &&
           !EqualsIgnoringCase(ascending.View(), "false"))
    scope.context.losses->ReportIn(kNoCode, LossReason::kUnknownWord, kAscendingElement);
  scope.element.appendElement(kOwnerElement);
  WriteXmlRows(Properties(), this, scope);
}

Status TOrderInfo::ReadXml(const TXmlReadScope& scope) {
  const dom::Element direction = scope.FindChild(kAscendingElement);
  const dom::Element owner_element = scope.FindChild(kOwnerElement);
  const Status status = ReadXmlRows(Properties(), this, scope);
  if (status != Status::kOk) return status;
  std::string joined;
  ascending.Set(direction ? direction.getTextContent(joined) : "false");
  const std::string_view owner = owner_element.getTextContent(joined);
  if (owner.empty()) return Status::kOk;
  const std::string name = std::string(owner).append(1, '.').append(table.View());
  table.Set(name);
  if (scope.context.losses != nullptr && table.View() != UntilNul(name))
    scope.context.losses->ReportAt(owner_element, LossReason::kCutText, kOwnerElement);
  return Status::kOk;
}

}  // namespace zaf
