#include "driver/FileConversion.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "appfile/Differences.h"
#include "foundation/Attempt.h"
#include "foundation/CaseFolding.h"
#include "foundation/FileSystem.h"
#include "foundation/Paths.h"
#include "foundation/TMemoryFile.h"

namespace zaf {
namespace {

/// The kind of file, by its path: a class file if its name ends in ".zcf", case ignored.
DocumentKind KindOfName(std::string_view path) {
  constexpr std::string_view kClassFileExtension = ".zcf";
  const std::size_t size = std::min(path.size(), kClassFileExtension.size());
  return EqualsIgnoringCase(path.substr(path.size() - size), kClassFileExtension)
             ? DocumentKind::kClassFile
             : DocumentKind::kApplication;
}

/// A data file that counts the bytes written.
class TCountingFile final : public TDataFile {
 public:
  Status Write(std::uint32_t count, void* buffer) override {
    written_ += count;
    return TDataFile::Write(count, buffer);
  }
  [[nodiscard]] std::uint32_t GetWritten() const { return written_; }

 private:
  std::uint32_t written_ = 0;
};

class TFileConversion {
 public:
  explicit TFileConversion(const TFileRequest& request) : request_(request) {}

  TFileResult Run() {
    if (request_.place == OutputPlace::kFile && !FindPresence())
      return Failed(FileOutcome::kSkipped, Status::kOk);
    if (request_.is_dry_run) return PlanOutput();
    TDataFile input;
    TZanfoFile document;
    document_ = &document;
    document.SetObserver(request_.observer);
    if (!LoadInput(request_.input, input, document, result_)) return std::move(result_);
    input.Close();
    return request_.place == OutputPlace::kFile ? ConvertToFile() : ConvertInMemory();
  }

  /// Verifies the output file.
  TFileResult ReadBack() {
    // A new object, since that of the input remains scrambled if the input was.
    TDataFile output;
    if (const Status status = output.Open(request_.output, TOpenMode::kRead); status != Status::kOk)
      return Failed(FileOutcome::kOutputNotOpened, status);
    Verify(output);
    return std::move(result_);
  }

 private:
  TFileResult Failed(FileOutcome outcome, Status status) {
    result_.outcome = outcome;
    result_.status = status;
    return std::move(result_);
  }

  /// Examines the output's path if that decides whether there is anything to do. False if there is
  /// not.
  bool FindPresence() {
    if (request_.existing == ExistingOutput::kFail) return true;
    result_.is_replaced = ProbeFile(request_.output) != TPresence::kAbsent;
    if (!result_.is_replaced) return true;
    return request_.existing == ExistingOutput::kOverwrite ||
           (request_.existing == ExistingOutput::kNewer &&
            IsNewer(request_.input.View(), request_.output.View()));
  }

  TFileResult PlanOutput() {
    const bool exists = request_.place == OutputPlace::kFile && !result_.is_replaced &&
                        ProbeFile(request_.output) != TPresence::kAbsent;
    if (exists) return Failed(FileOutcome::kOutputExists, Status::kFailure);
    return std::move(result_);
  }

  [[nodiscard]] Status SaveTo(TDataFile& file) {
    if (request_.target == TargetForm::kLegacy) {
      const Status status = request_.place == OutputPlace::kFile
                                ? document_->SaveLegacy(file, KindOfName(request_.output.View()))
                                : document_->SaveLegacy(file);
      result_.error_place = document_->GetErrorPlace();
      return status;
    }
    const Protection protection =
        document_->IsRunOnly() ? Protection::kProtected : Protection::kPlain;
    return document_->Save(file, nullptr, protection);
  }

  TFileResult ConvertToFile() {
    if (result_.is_replaced) {
      if (LookAt(request_.output.View()).kind != PathKind::kFile)
        return Failed(FileOutcome::kOutputNotCreated, Status::kFailure);
      if (AreSame(request_.input.View(), request_.output.View()))
        return Failed(FileOutcome::kOutputExists, Status::kFailure);
      WriteOutput();
    } else {
      const TPresence presence = ProbeFile(request_.output);
      if (presence == TPresence::kFile) return Failed(FileOutcome::kOutputExists, Status::kFailure);
      result_.outcome = FileOutcome::kOutputNotCreated;
      result_.status = Status::kFailure;
      if (presence == TPresence::kAbsent) WriteOutput();
    }
    if (result_.outcome != FileOutcome::kConverted || request_.verification == Verification::kOff)
      return std::move(result_);
    return ReadBack();
  }

  /// Writes the document to a new file, which replaces an old one. An incomplete file is removed.
  void WriteOutput() {
    TCountingFile output;
    Status status = Status::kFailure;
    const auto save = [&] {
      TMemoryFile image;  // The legacy form is not written sequentially.
      if (request_.target == TargetForm::kLegacy) {
        status = SaveTo(image);
        if (status != Status::kOk) return FileOutcome::kOutputNotWritten;
      }
      status = output.OpenNew(request_.output);
      if (status != Status::kOk)
        return output.HasWriteFailed() ? FileOutcome::kOutputRefused
                                       : FileOutcome::kOutputNotCreated;
      if (request_.target == TargetForm::kLegacy) {
        output.SetScrambled(false);
        const std::span<std::byte> bytes = image.GetBytes();
        status = output.Write(static_cast<std::uint32_t>(bytes.size()), bytes.data());
      } else {
        status = SaveTo(output);
      }
      return status == Status::kOk ? FileOutcome::kConverted : FileOutcome::kOutputNotWritten;
    };
    const auto publish = [&] {
      status = output.Publish(result_.is_replaced ? TakenName::kReplaced : TakenName::kKept);
      if (status == Status::kOk) return FileOutcome::kConverted;
      return output.HasWriteFailed() ? FileOutcome::kOutputNotWritten
                                     : FileOutcome::kOutputNotCreated;
    };
    FileOutcome outcome = Attempt(save, FileOutcome::kOutputNotWritten);
    if (outcome == FileOutcome::kConverted)
      outcome = Attempt(publish, FileOutcome::kOutputNotWritten);
    result_.outcome = outcome;
    result_.status = status;
    if (outcome == FileOutcome::kOutputNotWritten)
      result_.is_disk_failure = output.HasWriteFailed();
    output.Close();
    if (outcome != FileOutcome::kConverted) return;
    result_.bytes_out = output.GetWritten();
    if (request_.keep_time && !CopyTime(request_.input.View(), request_.output.View()))
      result_.outcome = FileOutcome::kTimeNotKept;
  }

  TFileResult ConvertInMemory() {
    TMemoryFile image;
    if (const Status status = SaveTo(image); status != Status::kOk)
      return Failed(FileOutcome::kOutputNotWritten, status);
    const std::span<std::byte> bytes = image.GetBytes();
    result_.bytes_out = static_cast<std::uint32_t>(bytes.size());
    if (request_.place == OutputPlace::kStandardOutput &&
        (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() ||
         std::fflush(stdout) != 0)) {
      result_.is_disk_failure = true;
      return Failed(FileOutcome::kOutputNotWritten, Status::kFailure);
    }
    if (request_.verification == Verification::kOff) return std::move(result_);
    TDataFile copy{bytes};
    Verify(copy);
    return std::move(result_);
  }

  /// Loads the output and compares it with the document, if there is one.
  void Verify(TDataFile& output) {
    TZanfoFile written;
    if (const Status status = written.Load(output, nullptr); status != Status::kOk) {
      result_.outcome = FileOutcome::kOutputNotRead;
      result_.status = status;
      // The rest is a place in the output.
      result_.error_place.reason = written.GetErrorPlace().reason;
      result_.error_place.action = written.GetErrorPlace().action;
      return;
    }
    if (document_ == nullptr) return;
    result_.is_restored = Attempt([&] { return document_->IsEqual(written); }, false);
    if (result_.is_restored || request_.differences == nullptr) return;
    FindDifferences(document_->GetApplication(), written.GetApplication(),
                    DifferenceScope::kCompared, *request_.differences);
  }

  const TFileRequest& request_;
  TZanfoFile* document_ = nullptr;
  TFileResult result_;
};

}  // namespace

bool LoadInput(const CText& path, TDataFile& file, TZanfoFile& document, TFileResult& result) {
  result.outcome = FileOutcome::kInputNotOpened;
  result.status = file.Open(path, TOpenMode::kRead);
  if (result.status != Status::kOk) return false;
  result.bytes_in = file.GetSize();
  document.SetKind(KindOfName(path.View()));
  result.status = document.Load(file, nullptr);
  const TApplication& application = document.GetApplication();
  result.form = document.GetForm();
  result.is_class_file = application.kind == DocumentKind::kClassFile;
  result.actions = application.actions.GetActionCount();
  result.error_place = document.GetErrorPlace();
  const bool is_loaded = result.status == Status::kOk;
  result.outcome = is_loaded ? FileOutcome::kConverted : FileOutcome::kInputNotRead;
  return is_loaded;
}

TFileResult ConvertFile(const TFileRequest& request) { return TFileConversion(request).Run(); }

TFileResult ReadBack(const TFileRequest& request) { return TFileConversion(request).ReadBack(); }

}  // namespace zaf
