#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "appfile/ProtectedDocument.h"
#include "appfile/TZanfoFile.h"
#include "appfile/XmlDocumentWriter.h"
#include "dom/Serializer.h"
#include "fuzz/Require.h"

namespace zaf::fuzz {

/// Loads a file from its bytes. The result must be one of four statuses.
inline Status LoadBytes(std::string_view bytes, TZanfoFile& file) {
  TDataFile data(AsBytes(bytes));
  const Status status = file.Load(data, nullptr);
  Require(status == Status::kOk || status == Status::kMalformed || status == Status::kFailure ||
              status == Status::kUnsupportedFormat,
          "a load ends with a status of its own");
  return status;
}

/// Saves a file in memory, since files and streams would take most of the time. Everything that was
/// loaded must be saved without an error.
inline std::string SaveToXml(const TZanfoFile& file, Protection protection = Protection::kPlain) {
  const dom::Document document = dom::DOMImplementation::createDocument();
  const bool is_protected = protection == Protection::kProtected;
  const Status status = WriteXmlDocument(
      file.GetApplication(), is_protected ? RunOnlyMark::kWritten : RunOnlyMark::kNone, document);
  Require(status == Status::kOk, "what was loaded can be written");
  dom::OutputBuffer output;
  const bool is_saved = is_protected ? WriteProtected(document, output) == Status::kOk
                                     : dom::Serialize(document, output);
  Require(is_saved, "what was written can be saved");
  return std::string(output.View());
}

/// Whether the same document was checked recently, in the same round. Half of the inputs produce a
/// document that was produced before and need not be checked again.
inline bool IsKnown(std::string_view document, std::size_t round = 0) {
  static std::array<std::size_t, std::size_t{1} << 16> known;
  const std::size_t hash = std::hash<std::string_view>()(document) + round;
  return std::exchange(known[hash % known.size()], hash) == hash;
}

}  // namespace zaf::fuzz
