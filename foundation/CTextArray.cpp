#include "foundation/CTextArray.h"

namespace zaf {

void CTextArray::DeleteElement(void* element) { delete static_cast<CText*>(element); }

}  // namespace zaf
