#include "actions/builders/TBuilderJoin.h"

#include "foundation/CaseFolding.h"

namespace zaf {

void TBuilderJoin::WriteXml(const TXmlWriteScope& scope) const {
  WriteXmlRows(Properties(), this, scope);
  if (EqualsIgnoringCase(first_table.View(), second_table.View()))
    scope.element.appendAttribute("SelfJoin", "True");
}

}  // namespace zaf
