#pragma once

#include "actions/TTableSpecification.h"
#include "foundation/CTextPtrArray.h"

namespace zaf {

/// The mail action: sends an e-mail message. Every field is a text, since any may be an expression.
/// Owns its texts. The parameters have no legacy form.
class TEmailSpecification final
    : public TTableSpecification<TEmailSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("mail");
  static constexpr std::string_view kElement = "MailAction";
  static constexpr std::string_view kLabel = "[Mail Action] ";
  static std::span<const TProperty> Properties();

  Status WriteLegacyProperties(TSectionWriter& out) const override;

 private:
  CText server_;
  CText port_;
  CText from_;
  CText to_;
  CText cc_;
  CText bcc_;
  CText subject_;
  CText body_;
  CText content_type_{"text/plain"};
  CText character_set_{"iso-8859-1"};
  CText custom_header_;
  CText wrap_;
  CTextPtrArray parameters_;
};

}  // namespace zaf
