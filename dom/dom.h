#pragma once

/// Includes the whole folder: a document model of 8-bit texts with the names of the DOM.
#include "dom/Attr.h"
#include "dom/CharacterData.h"
#include "dom/DOMImplementation.h"
#include "dom/Document.h"
#include "dom/DocumentType.h"
#include "dom/Element.h"
#include "dom/NamedNodeMap.h"
#include "dom/Node.h"
#include "dom/NodeList.h"
#include "dom/OutputBuffer.h"
#include "dom/ParseReport.h"
#include "dom/ProcessingInstruction.h"
#include "dom/Serializer.h"
