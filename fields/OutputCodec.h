#pragma once

#include <string_view>

#include "fields/TProperty.h"
#include "fields/ValueCodecs.h"

namespace zaf {

/// Whether the returns of an output block get line feeds when a legacy section is read.
enum class LineFeeds : bool { kNotAdded, kAdded };

/// An output block of an action. Its HTML goes into an `Output` element of the document's list,
/// under the ID "<action name><suffix>", and the row's child element refers to it. An empty block
/// has neither. Read, a reference to an output that is not there leaves the text as it was.
class TOutputCodec final : public TTextCodecBase {
 public:
  constexpr explicit TOutputCodec(LineFeeds line_feeds) : line_feeds_(line_feeds) {}

  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override;
  void WriteXml(const TProperty& row, const void* field,
                const TXmlWriteScope& scope) const override;
  Status ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const override;

 private:
  LineFeeds line_feeds_;
};

inline constexpr TOutputCodec kOutputCodec{LineFeeds::kNotAdded};
inline constexpr TOutputCodec kFedOutputCodec{LineFeeds::kAdded};

/// An output block: its reference element and the suffix of its ID.
template <auto Member>
constexpr TProperty Output(FourCharCode code, std::string_view name, std::string_view suffix,
                           const TOutputCodec& codec = kOutputCodec) {
  return Row<Member>(code, name, XmlForm::kChildIfSet, codec, suffix);
}

}  // namespace zaf
