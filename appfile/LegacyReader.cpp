#include "appfile/LegacyReader.h"

#include <utility>

#include "fields/SectionMap.h"

namespace zaf {
namespace {

constexpr FourCharCode kRunOnlyDocument = Code("rdoc");
/// Another type of results actions.
constexpr FourCharCode kResultsType = Code("glob");

/// Reads the action whose record header is at `offset` and places it in the tree. An action with a
/// format that is too new ends the load: then sets `is_too_new` and returns kOk.
Status ReadAction(TDataFile& file, std::uint32_t offset, const TQuerySpecificationServer& server,
                  TApplication& application, TLoadProgress* progress, bool& is_too_new,
                  TErrorPlace& place, TLossReporter* losses) {
  TRecordHeader header;
  header.losses = losses;
  if (const Status status = ReadRecordHeader(file, offset, header); status != Status::kOk)
    return status;
  is_too_new = header.format > kNewestFormat;
  if (is_too_new) return Status::kOk;
  std::unique_ptr<TQuerySpecification> action = server.CreateByType(header.type);
  if (action == nullptr) return Status::kFailure;
  action->SetName(header.name.View());
  action->SetOwner(&application);
  const TQuerySpecification& read = *action;
  if (losses != nullptr) {
    losses->BeginAction(header);
    if (action->GetTypeCode() != header.type && header.type != kResultsType)
      losses->ReportBytes(LossReason::kUnknownType, offset + sizeof header.format,
                          sizeof header.type);
  }
  Status status = action->ReadLegacy(&file, header);
  if (losses != nullptr) losses->EndAction();
  if (status == Status::kOk) {
    application.total_record_size += action->GetRecordSize();
    status = application.actions.Place(std::move(action));
    if (losses != nullptr && status == Status::kOk &&
        application.actions.GetRoot()->action.get() == &read) {
      losses->ReportDroppedAction(header.name.View());
      losses->RetractDropped(Code("pare"));  // It is below no other.
      if (TByteAccount* const account = losses->GetAccount()) account->DropRecord();
    }
    if (status != Status::kOk)
      place.reason = "The parent that the action names is none of the actions that lead to it";
  }
  if (status != Status::kOk)
    place.action = header.name.View();
  else if (progress != nullptr)
    progress->OnAction(read);
  return status;
}

}  // namespace

Status ReadLegacyApplication(TDataFile& file, const TQuerySpecificationServer& server,
                             RunOnlyFiles run_only, TApplication& application, TErrorPlace& place,
                             TLoadProgress* progress, TLossReporter* losses) {
  application.is_legacy = true;
  file.SetScrambled(false);
  TRecordHeader header;
  if (const Status status = ReadRecordHeader(file, 0, header); status != Status::kOk) return status;
  if (header.format < kOldestFormat || header.format > kNewestFormat) {
    place.reason =
        "The file begins neither with an XML declaration nor with the number of a known format";
    place.offset = 0;
    return Status::kUnsupportedFormat;
  }
  application.format_version = header.format;
  if (header.type == kRunOnlyDocument) {
    application.is_run_only = true;
    if (run_only == RunOnlyFiles::kRefused) return Status::kRunOnlyNotAllowed;
    file.SetScrambled(true);
  }
  if (losses != nullptr) losses->BeginFile(file.GetImage(), header);
  TSectionMap map;
  if (const Status status = map.Open(file, header); status != Status::kOk) return status;
  if (!map.IsComplete()) {
    place.reason = "The section map of the file has fewer entries than its header counts";
    place.offset = header.map_offset;
    return Status::kMalformed;
  }
  static const TCodeIndex index(TApplication::Properties(), &application);
  TSectionMapEntry entry;
  bool is_too_new = false;
  while (!is_too_new && map.Next(entry)) {
    Status status = Status::kOk;
    if (losses != nullptr) losses->BeginSection(entry.code, entry.offset, entry.length);
    if (entry.code == kRecordHeaderCode) {
      status =
          ReadAction(file, entry.offset, server, application, progress, is_too_new, place, losses);
    } else if (const TCodeIndex::TField& field = index.Find(entry.code); field.row != nullptr) {
      status = field.Read(&application,
                          {&file, entry.code, entry.offset, entry.length, nullptr, losses});
    } else if (losses != nullptr) {
      losses->Report(LossReason::kUnknownSection,
                     {&file, entry.code, entry.offset, entry.length, nullptr, losses});
    }
    if (status != Status::kOk) {
      file.NoteFailure({entry.code, entry.offset});
      place.section = file.GetFailure()->code;
      place.offset = file.GetFailure()->offset;
      return status;
    }
  }
  if (losses == nullptr) return Status::kOk;
  if (is_too_new) {
    losses->Cover(0, file.GetSize());
    losses->Report(LossReason::kTooNew,
                   {&file, entry.code, entry.offset, entry.length, nullptr, losses});
  }
  losses->EndFile();
  return Status::kOk;
}

}  // namespace zaf
