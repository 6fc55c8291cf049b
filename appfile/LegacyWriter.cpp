#include "appfile/LegacyWriter.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "fields/SectionMap.h"
#include "foundation/CaseFolding.h"

namespace zaf {
namespace {

/// The application's sections, in the order in which they are written.
constexpr FourCharCode kSections[] = {
    Code("dsrc"), Code("host"), Code("htyp"), Code("data"), Code("user"),
    Code("pass"), Code("dbms"), Code("form"), Code("asts"), Code("athr"),
    Code("titl"), Code("vers"), Code("cmnt"), Code("dbug"),
};

/// An action whose name in the file is also a parent's, or a parent without one; null if there is
/// none.
const TActionEntry* FindAmbiguousName(const TActionTree& tree) {
  std::map<std::string, bool> parents;  // By name, whether it is a parent's.
  for (const TActionEntry* entry = tree.GetRoot(); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    const bool is_parent = entry->first_child != nullptr;
    std::string name(ToRecordName(entry->action->GetName().View()).View());
    if (is_parent && name.empty()) return entry;
    std::transform(name.begin(), name.end(), name.begin(), ToUpper);
    const auto [known, is_new] = parents.try_emplace(std::move(name), is_parent);
    if (!is_new && (is_parent || known->second)) return entry;
  }
  return nullptr;
}

Status WriteSections(const TApplication& application, TSectionWriter& out) {
  for (const FourCharCode code : kSections) {
    const Status status = WriteLegacyRow(TApplication::Properties(), &application, code, out);
    if (status != Status::kOk) return status;
  }
  return Status::kOk;
}

/// Writes an action's record at `offset`, header first, and adds it to the file's map.
Status WriteAction(const TQuerySpecification& action, TDataFile& file, std::uint32_t& offset,
                   TSectionWriter& out) {
  const std::uint32_t header_offset = offset;
  TLossReporter* const losses = out.GetLosses();
  if (losses != nullptr) losses->BeginWriting(action.GetName().View(), action.GetRecordNumber());
  if (const Status status = out.Skip(kRecordHeaderSize); status != Status::kOk) return status;
  TRecordHeader header;
  header.losses = losses;
  // The sections follow the header, so space for the header is reserved first.
  if (const Status status = WriteRecordHeader(file, header_offset, header); status != Status::kOk)
    return status;
  if (const Status status = action.WriteLegacy(file, offset, header); status != Status::kOk)
    return status;
  if (const Status status = WriteRecordHeader(file, header_offset, header); status != Status::kOk)
    return status;
  return out.AddEntry(kRecordHeaderCode, header_offset, kRecordHeaderSize);
}

}  // namespace

Status WriteLegacyApplication(const TApplication& application, TDataFile& file, TErrorPlace& place,
                              TLossReporter* losses) {
  if (const TActionEntry* const entry = FindAmbiguousName(application.actions)) {
    place.reason =
        "An action with children has no name, or its first 31 characters are also another action's";
    place.action = entry->action->GetName().View();
    return Status::kFailure;
  }
  TRecordHeader header;
  header.format = kWrittenFormat;
  header.type = application.is_run_only ? Code("rdoc") : Code("appl");
  file.SetScrambled(false);
  if (const Status status = WriteRecordHeader(file, 0, header); status != Status::kOk)
    return status;
  file.SetScrambled(application.is_run_only);
  std::uint32_t offset = kRecordHeaderSize;
  if (losses != nullptr) losses->BeginWriting();
  TSectionWriter out(file, offset, losses);
  if (const Status status = WriteSections(application, out); status != Status::kOk) return status;
  for (const TActionEntry* entry = application.actions.GetRoot(); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    const Status status = WriteAction(*entry->action, file, offset, out);
    if (status != Status::kOk) return status;
  }
  if (const Status status = out.WriteMap(header.map_offset, header.map_count);
      status != Status::kOk)
    return status;
  file.SetScrambled(false);
  return WriteRecordHeader(file, 0, header);
}

}  // namespace zaf
