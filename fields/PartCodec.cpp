#include "fields/PartCodec.h"

#include "fields/ListCodecs.h"

namespace zaf {

void TPartCodec::WriteXml(const TProperty& row, const void* field,
                          const TXmlWriteScope& scope) const {
  const dom::Element part = MakeListElement(row, scope.element);
  WriteXmlRows(properties_(), field, {scope.context, part, scope.action_name});
}

Status TPartCodec::ReadXml(const TProperty& row, void* field, const TXmlReadScope& scope) const {
  const dom::Element part = FindListElement(row, scope);
  return ReadXmlRows(properties_(), field, {scope.context, part});
}

bool TPartCodec::IsEqual(const void* field, const void* other) const {
  return AreRowsEqual(properties_(), field, other);
}

}  // namespace zaf
