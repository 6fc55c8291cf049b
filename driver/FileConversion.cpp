#include "driver/FileConversion.h"

#include <string_view>

#include "appfile/TQuerySpecificationServer.h"
#include "appfile/TZanfoFile.h"
#include "foundation/Attempt.h"
#include "foundation/CaseFolding.h"
#include "foundation/FileSystem.h"
#include "foundation/TDataFile.h"

namespace zaf {
namespace {

/// Inputs whose names end in this, case ignored, are class files.
constexpr std::string_view kClassFileExtension = ".zcf";

bool IsClassFileName(std::string_view name) {
  return name.size() >= kClassFileExtension.size() &&
         EqualsIgnoringCase(name.substr(name.size() - kClassFileExtension.size()),
                            kClassFileExtension);
}

/// Writes the document to a new file at the path. What was written is removed when it is not whole.
TFileResult WriteOutput(TZanfoFile& document, const TQuerySpecificationServer& server,
                        const CText& path, TDataFile& file) {
  const Protection protection = document.IsRunOnly() ? Protection::kProtected : Protection::kPlain;
  Status status = Status::kFailure;
  const auto failure = [&] {
    return file.HasWriteFailed() ? FileOutcome::kOutputNotWritten : FileOutcome::kOutputNotCreated;
  };
  const auto save = [&] {
    status = file.OpenNew(path);
    if (status != Status::kOk) return failure();
    status = document.Save(file, &server, protection);
    return status == Status::kOk ? FileOutcome::kConverted : FileOutcome::kOutputNotWritten;
  };
  const auto publish = [&] {
    status = file.Publish();
    return status == Status::kOk ? FileOutcome::kConverted : failure();
  };
  FileOutcome outcome = Attempt(save, FileOutcome::kOutputNotWritten);
  if (outcome == FileOutcome::kConverted)
    outcome = Attempt(publish, FileOutcome::kOutputNotWritten);
  file.Close();
  return {outcome, status};
}

/// Reads the output again.
TFileResult VerifyOutput(const TZanfoFile& document, const CText& path, TDataFile& file) {
  if (const Status status = file.Open(path, TOpenMode::kRead); status != Status::kOk)
    return {FileOutcome::kOutputNotOpened, status};
  TZanfoFile written;
  if (const Status status = written.Load(file, nullptr); status != Status::kOk)
    return {FileOutcome::kOutputNotRead, status};
  file.Close();
  // The result does not count: verification finds files that cannot be read.
  static_cast<void>(Attempt([&] { return document.IsEqual(written); }, false));
  return {};
}

}  // namespace

TFileResult ConvertFile(const CText& input_path, const CText& output_path,
                        Verification verification) {
  TDataFile file;
  const TQuerySpecificationServer server;
  if (const Status status = file.Open(input_path, TOpenMode::kRead); status != Status::kOk)
    return {FileOutcome::kInputNotOpened, status};
  TZanfoFile document;
  if (IsClassFileName(input_path)) document.SetKind(DocumentKind::kClassFile);
  if (const Status status = document.Load(file, &server); status != Status::kOk)
    return {FileOutcome::kInputNotRead, status};
  file.Close();
  TFileResult result{FileOutcome::kOutputNotCreated, Status::kFailure};
  const TPresence presence = ProbeFile(output_path);
  if (presence == TPresence::kFile) return {FileOutcome::kOutputExists, Status::kFailure};
  if (presence == TPresence::kAbsent) result = WriteOutput(document, server, output_path, file);
  if (result.outcome == FileOutcome::kOutputNotWritten || verification == Verification::kOff)
    return result;
  return VerifyOutput(document, output_path, file);
}

}  // namespace zaf
