#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "appfile/TZanfoFile.h"
#include "foundation/Status.h"

namespace zaf::test {

/// Loads a file, legacy or XML, from its bytes.
Status LoadBytes(std::string_view bytes, TZanfoFile& file);

/// A file loaded from its bytes. Throws, which ends a test, if they are refused.
class TLoadedFile final : public TZanfoFile {
 public:
  explicit TLoadedFile(std::string_view bytes);
};

/// Saves a file and returns what was written, or "save failed". Plain documents are validated with
/// the project's document type definition; "is not valid" is appended to one that is not.
std::string SaveToXml(TZanfoFile& file, Protection protection = Protection::kPlain);
std::string SaveToLegacy(TZanfoFile& file);

/// Reads one section, made of `payload`, into an action.
Status ReadSection(TQuerySpecification& action, std::string_view code, std::string_view payload);

/// Loads a file from its bytes and saves it as XML; "status 0x...." when it does not load.
std::string ToXml(std::string_view bytes);

/// The content of a file.
std::string ReadFile(const std::filesystem::path& path);

/// That of tests/documents/NAME.xml.
std::string Expected(std::string_view name);

/// The element `name` of a document, from its first start tag to its last end tag, without the
/// indentation of its first line; empty if not found.
std::string ElementOf(std::string_view document, std::string_view name);

/// An element without the line ends and indentation between its nodes.
std::string Compact(std::string element);

/// A document with these actions, program references and data sources.
std::string DocumentWith(std::string_view actions, std::string_view program,
                         std::string_view data_sources = {}, std::string_view outputs = {});

}  // namespace zaf::test
