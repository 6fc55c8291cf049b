#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "dom/dom.h"
#include "foundation/CaseFolding.h"

namespace zaf::test {

// The changes by design when a document that the program wrote is read and written again. A
// document to which none of these applies is written again with the same bytes.

/// An element that is changed when it is read back.
struct TElementChange {
  std::string_view name;     ///< Of the change.
  std::string_view element;  ///< Empty: any.
  bool (*applies)(dom::Element element);
};

inline std::string TextOf(dom::Element element) {
  std::string joined;
  return std::string(element.getTextContent(joined));
}

inline bool HasChild(dom::Element element, std::string_view name) {
  return static_cast<bool>(element.getFirstChildElement(name));
}

inline bool HasText(dom::Element element, std::string_view text) {
  return EqualsIgnoringCase(TextOf(element), text);
}

/// Whether a text may fill a slot of a record; it is then cut by one character when it is read.
inline bool FillsSlot(std::string_view text) {
  return text.size() == 12 || text.size() == 32 || text.size() == 128 || text.size() == 256;
}

inline constexpr std::string_view kNamelessJoin = "a join without all of its names is refused";

inline constexpr TElementChange kElementChanges[] = {
    {"a text of dropped characters is empty", "",
     [](dom::Element element) {
       const bool is_empty_section =
           element.getFirstChild().getNodeType() == dom::NodeType::kCDATASection &&
           TextOf(element).empty();
       const auto is_empty = [&](std::string_view name) {
         return element.hasAttribute(name) && element.getAttribute(name).empty();
       };
       return is_empty_section || is_empty("Title") || is_empty("Author") || is_empty("Revision");
     }},
    {"a text that fills its slot is cut", "",
     [](dom::Element element) {
       dom::NamedNodeMap attributes = element.getAttributes();
       for (std::size_t i = 0; i < attributes.getLength(); ++i)
         if (FillsSlot(attributes.item(i).getValue())) return true;
       std::string joined;
       return !element.getFirstChildElement() && FillsSlot(element.getTextContent(joined));
     }},
    {"the development data source is read as not in use", "",
     [](dom::Element element) { return element.hasAttribute("UseDevelopmentDataSource"); }},
    {"a check box is read under another spelling", "InputCheckBox",
     [](dom::Element) { return true; }},
    {"an event without its codes gets blank ones", "AppleEventAction",
     [](dom::Element element) {
       return !HasChild(element, "EventClass") || !HasChild(element, "EventCode");
     }},
    {"a transaction without isolation is exclusive", "BeginTransactionAction",
     [](dom::Element element) { return !HasChild(element, "Isolation"); }},
    {"an assign action without results gets its tags", "AssignAction",
     [](dom::Element element) { return !HasChild(element, "ResultsOutput"); }},
    {"a default scope becomes an empty one, a cookie's makes a cookie", "AssignItem",
     [](dom::Element element) {
       const dom::Element scope = element.getFirstChildElement("Scope");
       return !scope || HasText(scope, "Default") || HasText(scope, "cookie");
     }},
    {"a script's default scope becomes an empty one", "ScriptAction",
     [](dom::Element element) {
       return HasText(element.getFirstChildElement("Scope"), "Default");
     }},
    {kNamelessJoin, "JoinItem",
     [](dom::Element element) {
       for (const char* const name : {"FirstTable", "FirstColumn", "SecondTable", "SecondColumn"})
         if (TextOf(element.getFirstChildElement(name)).empty()) return true;
       return false;
     }},
    {"an application's data source of an unknown kind alone vanishes", "DataSource",
     [](dom::Element element) {
       if (!HasChild(element, "DataSourceInfo") || element.hasAttribute("Type")) return false;
       const dom::Element info = element.getFirstChildElement("DataSourceInfo");
       std::string texts;
       for (const char* const name : {"DSN", "DBMS", "Host", "Database"})
         texts += TextOf(element.getFirstChildElement(name));
       for (const char* const name : {"UserName", "Password"})
         texts += TextOf(info.getFirstChildElement(name));
       return texts.empty();
     }},
};

/// The next element in document order; a null one at the end.
inline dom::Element NextElement(dom::Element element) {
  if (const dom::Element child = element.getFirstChildElement(); child) return child;
  while (element) {
    if (const dom::Element next = element.getNextSiblingElement(); next) return next;
    element = dom::Element(element.getParentNode());
  }
  return {};
}

/// The references of a program, each with the element name of its action.
using TReferences = std::map<const void*, std::string_view>;

inline bool MatchReferences(dom::Element root, TReferences& references) {
  const dom::Element program = root.getFirstChildElement("Program");
  dom::Element action = root.getFirstChildElement("Actions").getFirstChildElement();
  for (dom::Element at = program.getFirstChildElement(); at && at.getTagName() == "ActionRef";
       at = NextElement(at)) {
    if (at.getAttribute("Ref") != action.getAttribute("ID")) return false;
    references[at.GetIdentity()] = action.getTagName();
    action = action.getNextSiblingElement();
  }
  return true;
}

/// Whether an else-if or else is a child of an if or else-if without following one there: it is
/// read as a branch of its parent.
inline bool HasMisplacedBranch(dom::Element root, const TReferences& references) {
  const auto is_if = [&](dom::Node reference) {
    const auto found = references.find(reference.GetIdentity());
    return found != references.end() &&
           (found->second == "IfAction" || found->second == "ElseIfAction");
  };
  const dom::Element program = root.getFirstChildElement("Program");
  for (dom::Element at = program.getFirstChildElement(); at && at.getTagName() == "ActionRef";
       at = NextElement(at)) {
    const std::string_view action = references.at(at.GetIdentity());
    const bool is_branch = action == "ElseIfAction" || action == "ElseAction";
    if (is_branch && is_if(at.getParentNode()) && !is_if(at.getPreviousSibling())) return true;
  }
  return false;
}

inline bool HasOutputsOfOneName(dom::Element root) {
  std::set<std::string_view> ids;
  for (dom::Element output = root.getFirstChildElement("Outputs").getFirstChildElement(); output;
       output = output.getNextSiblingElement())
    if (!ids.insert(output.getAttribute("ID")).second) return true;
  return false;
}

inline bool HasEqualDataSources(dom::Element root) {
  std::set<std::vector<std::string>> sources;
  for (dom::Element source = root.getFirstChildElement("DataSources").getFirstChildElement();
       source; source = source.getNextSiblingElement()) {
    const dom::Element info = source.getFirstChildElement("UserInfo");
    if (!info) continue;
    std::vector<std::string> texts;
    for (const char* const name : {"DSType", "DSN", "DBMS", "Host", "Database"})
      texts.push_back(TextOf(source.getFirstChildElement(name)));
    for (const char* const name : {"UserName", "Password"})
      texts.push_back(TextOf(info.getFirstChildElement(name)));
    if (!sources.insert(texts).second) return true;
  }
  return false;
}

/// The names of the changes that apply to a document. Stops when there are `most`.
inline std::set<std::string_view> FindNamedChanges(std::string_view document,
                                                   std::size_t most = SIZE_MAX) {
  std::set<std::string_view> changes;
  if (document.find('\r') != document.npos) changes.insert("a return in a text is a line feed");
  std::string copy(document);
  const dom::Document parsed =
      dom::DOMImplementation::createDocument(std::as_writable_bytes(std::span(copy)));
  const dom::Element root = parsed.getDocumentElement();
  for (dom::Element element = root; element; element = NextElement(element)) {
    for (const TElementChange& change : kElementChanges) {
      const bool is_meant = change.element.empty() || change.element == element.getTagName();
      if (is_meant && change.applies(element)) changes.insert(change.name);
    }
    if (changes.size() >= most) return changes;
  }
  TReferences references;
  if (!MatchReferences(root, references)) {
    changes.insert("else-ifs and elses go behind their siblings");
  } else if (HasMisplacedBranch(root, references)) {
    changes.insert("a second else leaves the else-if that it stands in");
  }
  if (HasOutputsOfOneName(root)) changes.insert("of outputs of one name the first counts");
  if (HasEqualDataSources(root)) changes.insert("data sources that were made equal are one");
  return changes;
}

/// The number of occurrences of a tag in a document.
inline std::size_t Count(std::string_view document, std::string_view tag) {
  std::size_t count = 0;
  for (std::size_t at = document.find(tag); at != document.npos; at = document.find(tag, at + 1))
    ++count;
  return count;
}

/// The maximum number of changes of a document. One change can cause the next: an empty output is
/// lost, so the text of an assign action is generated again, so an action of the same name refers
/// to two outputs with one ID. In nested branches, one reference after another can move out of its
/// parent.
inline std::size_t FindMostChanges(std::string_view document) {
  return 4 + Count(document, "<ActionRef ");
}

/// A document with the signatures of its actions blanked out. They depend on the class of an action
/// and the bytes of its name, even where the element and the ID do not (containers and jumps,
/// control characters), and are not read.
inline std::string WithoutSignatures(std::string document) {
  constexpr std::string_view kSignature = " Sig=\"";
  constexpr std::size_t kDigits = 8;
  for (std::size_t at = document.find(kSignature); at != std::string::npos;
       at = document.find(kSignature, at + 1))
    document.replace(at + kSignature.size(), kDigits, kDigits, '-');
  return document;
}

}  // namespace zaf::test
