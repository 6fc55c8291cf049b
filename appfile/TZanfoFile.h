#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "appfile/LegacyReader.h"
#include "appfile/TApplication.h"
#include "appfile/TErrorPlace.h"
#include "appfile/TQuerySpecificationServer.h"
#include "fields/TLossReporter.h"
#include "foundation/Status.h"
#include "foundation/TDataFile.h"

namespace zaf {

/// The form in which an application is saved.
enum class Protection : bool { kPlain, kProtected };

/// The form in which a file is stored.
enum class DocumentForm : std::uint8_t { kLegacy, kXml, kProtected };

/// One application file, or class file, in memory. It is loaded once, from the legacy or the XML
/// form, plain or protected, and saved as XML or in the legacy form.
class TZanfoFile {
 public:
  TZanfoFile() = default;
  TZanfoFile(const TZanfoFile&) = delete;
  TZanfoFile& operator=(const TZanfoFile&) = delete;
  virtual ~TZanfoFile() = default;

  /// Whether both have the same content. The form in which the files were stored does not matter.
  [[nodiscard]] virtual bool IsEqual(const TZanfoFile& other) const;

  /// Reads a file that is open in memory. The first line determines the form: a protected or plain
  /// XML document; anything else is a legacy file. XML is parsed in place, which overwrites the
  /// file's image. `server` creates the actions; null for the default one. `progress`, if not null,
  /// is called once for each action. The statuses are those of ReadLegacyApplication and
  /// ReadXmlDocument; kMalformed for a protected document that is damaged; kFailure when memory
  /// runs out. After a failure the object has what was read before.
  virtual Status Load(TDataFile& file, const TQuerySpecificationServer* server,
                      RunOnlyFiles run_only = RunOnlyFiles::kAllowed,
                      TLoadProgress* progress = nullptr);

  /// Writes the XML document to a file opened for writing: a small one with one write, a large one
  /// while it is serialised. kFailure when it cannot be built or is too long (4 GiB and more); else
  /// the status of the write that failed. The file is then incomplete.
  virtual Status Save(TDataFile& file, const TQuerySpecificationServer* server,
                      Protection protection);

  /// Writes the legacy form into an empty file opened for reading and writing. kFailure, with
  /// nothing written, when the names of the actions, cut to 31 bytes, do not identify the parents.
  /// `kind`: the kind of document that the file's name indicates.
  Status SaveLegacy(TDataFile& file, DocumentKind kind);
  Status SaveLegacy(TDataFile& file) { return SaveLegacy(file, application_.kind); }

  /// The form of the loaded file, also after a failed load.
  [[nodiscard]] DocumentForm GetForm() const;
  /// Where the load failed, or writing the legacy form.
  [[nodiscard]] const TErrorPlace& GetErrorPlace() const { return error_place_; }

  /// Sets, before a file is loaded, what it contains. An XML document with the root of a class file
  /// is one in any case.
  void SetKind(DocumentKind kind) { application_.kind = kind; }
  /// Sets the observer of losses while this file is loaded and saved; it must outlive the file.
  /// Null, the initial value: none.
  void SetObserver(TLossObserver* observer) {
    losses_.reset();
    if (observer != nullptr) losses_.emplace(*observer);
  }
  /// Sets whether the application is saved in a form that can be run but not edited.
  void SetRunOnly(bool is_run_only) { application_.is_run_only = is_run_only; }
  [[nodiscard]] bool IsRunOnly() const { return application_.is_run_only; }
  [[nodiscard]] const TApplication& GetApplication() const { return application_; }

 private:
  /// Null without an observer.
  [[nodiscard]] TLossReporter* Losses() { return losses_ ? &*losses_ : nullptr; }

  // Implement Load and Save, which convert std::bad_alloc to a status.

  Status LoadContent(TDataFile& file, const TQuerySpecificationServer& server,
                     RunOnlyFiles run_only, TLoadProgress* progress);
  Status SaveDocument(TDataFile& file, Protection protection);

  TApplication application_;
  TErrorPlace error_place_;
  std::optional<TLossReporter> losses_;
};

}  // namespace zaf
