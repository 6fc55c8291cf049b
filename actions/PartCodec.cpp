#include "actions/PartCodec.h"

namespace zaf {

void TPartCodec::WriteXml(const TProperty& row, const void* field,
                          const TXmlWriteScope& scope) const {
  const dom::Element part = scope.element.appendElement(row.name);
  WriteXmlRows(properties_(), field, {scope.context, part, scope.action_name});
}

Status TPartCodec::ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const {
  const dom::Element part = scope.element.getFirstChildElement(row.name);
  return ReadXmlRows(properties_(), field, {scope.context, part});
}

bool TPartCodec::IsEqual(const void* field, const void* other) const {
  return AreRowsEqual(properties_(), field, other);
}

void TPartCodec::SwapByteOrder(void* field) const { SwapRowsByteOrder(properties_(), field); }

}  // namespace zaf
