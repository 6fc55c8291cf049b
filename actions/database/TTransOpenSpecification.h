#pragma once

#include "actions/database/TSourceSpecification.h"

namespace zaf {

/// The begin-transaction action: opens a transaction on its data source. kMalformed when the
/// isolation in a document has an unknown keyword.
class TTransOpenSpecification final
    : public TTableSpecification<TTransOpenSpecification, TSourceSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("bgnt");
  static constexpr std::string_view kElement = "BeginTransactionAction";
  static constexpr std::string_view kLabel = "[Open Transaction] ";
  static std::span<const TProperty> Properties();

  // Operations of the server's run time. The end-transaction action has the last one as well.
  virtual void PrepareConnection() {}
  virtual void SetIsolation() {}
  virtual void BeginTransaction() {}
  virtual void ReleaseConnection() {}

 private:
  std::int32_t isolation_ = 0;      ///< 0: none given. Missing in a document: exclusive.
  std::int32_t second_switch_ = 0;  ///< Only carried.
};

}  // namespace zaf
