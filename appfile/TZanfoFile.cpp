#include "appfile/TZanfoFile.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "appfile/LegacyWriter.h"
#include "appfile/ProtectedDocument.h"
#include "appfile/XmlDocumentReader.h"
#include "appfile/XmlDocumentWriter.h"
#include "dom/Serializer.h"
#include "foundation/Attempt.h"
#include "foundation/TSpares.h"

namespace zaf {
namespace {

constexpr std::string_view kRunOnlyLine = "<?zanfo run-only ?>";
constexpr std::string_view kXmlLine = "<?xml ";

/// Byte order marks at the beginning of a document: of UTF-8, UTF-16 and UTF-32 (whose
/// little-endian mark begins with that of UTF-16). No legacy file begins like that.
constexpr std::string_view kByteOrderMarks[] = {"\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE",
                                                std::string_view("\0\0\xFE\xFF", 4)};

bool IsProtectedDocument(std::string_view content) {
  return content.starts_with(kProtectedLine) || content.starts_with(kRunOnlyLine);
}

bool IsPlainDocument(std::string_view content) {
  return content.starts_with(kXmlLine) ||
         std::any_of(std::begin(kByteOrderMarks), std::end(kByteOrderMarks),
                     [&](std::string_view mark) { return content.starts_with(mark); });
}

/// The size of the first line in bytes, including its end: LF, CR or CR LF.
std::size_t FirstLineSize(std::string_view content) {
  const std::size_t end = content.find_first_of("\r\n");
  if (end == std::string_view::npos) return content.size();
  return end + (content.substr(end).starts_with("\r\n") ? 2 : 1);
}

/// Empty buffers of documents that were saved.
TSpares<dom::OutputBuffer> spare_outputs;

/// Writes a document to a file while it is serialised. Fails if it has 4 GiB or more.
class TFileSink final : public dom::OutputSink {
 public:
  explicit TFileSink(TDataFile& file) : file_(file) {}

  bool Take(std::span<char> bytes) override {
    if (bytes.size() > room_) return false;
    const auto count = static_cast<std::uint32_t>(bytes.size());
    room_ -= count;
    const Status status = file_.Write(count, bytes.data());
    if (status != Status::kOk) failure_ = status;
    return status == Status::kOk;
  }

  /// The status of the write that failed; kFailure if none did.
  [[nodiscard]] Status GetFailure() const { return failure_; }

 private:
  TDataFile& file_;
  std::uint32_t room_ = std::numeric_limits<std::uint32_t>::max();
  Status failure_ = Status::kFailure;
};

}  // namespace

bool TZanfoFile::IsEqual(const TZanfoFile& other) const {
  return application_.IsEqual(other.application_);
}

DocumentForm TZanfoFile::GetForm() const {
  if (application_.is_legacy) return DocumentForm::kLegacy;
  return application_.is_run_only ? DocumentForm::kProtected : DocumentForm::kXml;
}

Status TZanfoFile::Load(TDataFile& file, const TQuerySpecificationServer* server,
                        RunOnlyFiles run_only, TLoadProgress* progress) {
  static const TQuerySpecificationServer usual_server;
  if (server == nullptr) server = &usual_server;
  return Attempt([&] { return LoadContent(file, *server, run_only, progress); }, Status::kFailure);
}

Status TZanfoFile::LoadContent(TDataFile& file, const TQuerySpecificationServer& server,
                               RunOnlyFiles run_only, TLoadProgress* progress) {
  const std::string_view content = AsText(file.GetImage());
  std::span<std::byte> text = file.GetMutableImage();
  if (IsProtectedDocument(content)) {
    application_.is_run_only = true;
    const Status status = ReadProtected(text.subspan(FirstLineSize(content)), text);
    if (status != Status::kOk) return status;
  } else if (!IsPlainDocument(content)) {
    return ReadLegacyApplication(file, server, run_only, application_, error_place_, progress,
                                 Losses());
  }
  return ReadXmlDocument(text, server, application_, error_place_, progress, Losses());
}

Status TZanfoFile::Save(TDataFile& file, const TQuerySpecificationServer*, Protection protection) {
  return Attempt([&] { return SaveDocument(file, protection); }, Status::kFailure);
}

Status TZanfoFile::SaveDocument(TDataFile& file, Protection protection) {
  TLossReporter* const losses = Losses();
  if (losses != nullptr) losses->ReportPending();
  const dom::Document document = dom::DOMImplementation::createDocument();
  const bool is_protected = protection == Protection::kProtected;
  const RunOnlyMark mark = is_protected ? RunOnlyMark::kWritten : RunOnlyMark::kNone;
  if (const Status status = WriteXmlDocument(application_, mark, document, losses);
      status != Status::kOk)
    return status;
  file.SetScrambled(false);  // It is if a run-only file was loaded with it before.
  TFileSink sink(file);
  dom::OutputBuffer output = spare_outputs.Take();
  if (is_protected) {
    if (const Status status = WriteProtected(document, output); status != Status::kOk)
      return status;
    output.SetSink(sink);
  } else {
    output.SetSink(sink);
    if (!dom::Serialize(document, output)) return sink.GetFailure();
  }
  if (!output.Flush()) return sink.GetFailure();
  output.Clear();
  // Only enciphered documents, which are written in one piece, need more.
  if (output.Capacity() <= dom::OutputBuffer::kMostHeld) spare_outputs.Keep(std::move(output));
  return Status::kOk;
}

Status TZanfoFile::SaveLegacy(TDataFile& file, DocumentKind kind) {
  const auto save = [&] {
    TLossReporter* const losses = Losses();
    if (losses != nullptr) losses->SetLegacyTarget();
    if (losses != nullptr && kind != application_.kind) losses->Report(LossReason::kOtherKind);
    return WriteLegacyApplication(application_, file, error_place_, losses);
  };
  return Attempt(save, Status::kFailure);
}

}  // namespace zaf
