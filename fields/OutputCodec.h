#pragma once

#include <string_view>

#include "fields/TProperty.h"
#include "fields/ValueCodecs.h"

namespace zaf {

/// Whether reading the legacy section of an output block inserts an LF after every CR, and writing
/// it removes one.
enum class LineFeeds : bool { kNotAdded, kAdded };

/// An output block of an action: HTML, which is written as an `Output` element in the document's
/// list of outputs. Its ID is "<action name><suffix>", and the row's child element refers to it. An
/// empty block has neither element. Reading a reference to a missing output leaves the text
/// unchanged.
class TOutputCodec final : public TTextCodecBase {
 public:
  constexpr explicit TOutputCodec(LineFeeds line_feeds) : line_feeds_(line_feeds) {}

  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override;
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;

 private:
  LineFeeds line_feeds_;
};

inline constexpr TOutputCodec kOutputCodec{LineFeeds::kNotAdded};
inline constexpr TOutputCodec kFedOutputCodec{LineFeeds::kAdded};

/// An output block. `name` is the element that refers to it, `suffix` the end of its ID.
template <auto Member>
constexpr TProperty Output(FourCharCode code, std::string_view name, std::string_view suffix,
                           const TOutputCodec& codec = kOutputCodec) {
  return Row<Member>(code, name, XmlForm::kChildIfSet, codec, suffix);
}

}  // namespace zaf
