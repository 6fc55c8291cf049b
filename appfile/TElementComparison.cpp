#include "appfile/TElementComparison.h"

#include <algorithm>
#include <cstddef>
#include <map>

#include "appfile/CommonSubsequence.h"

// The recursion depth of the functions below is bounded by the nesting of elements inside an
// action, which does not depend on the input.

namespace zaf {
namespace {

constexpr std::string_view kListElements[] = {
    "Criteria",       "DataDictionary",    "DetailsPageColumns", "GroupColumns",
    "HavingCriteria", "InputDropDownList", "InputPickList",      "InputRadioCluster",
    "InsertColumns",  "JoinCriteria",      "ListPageColumns",    "OrderColumns",
    "ParameterList",  "SearchColumns",     "SearchPageColumns",  "Tables",
    "ValueList",      "VariableList",
};
constexpr std::string_view kItemElements[] = {
    "AssignItem",
    "Cookie",
    "ExpressionInfo",
    "Variable",
};

/// Attributes that contain an action's name or are derived from it.
constexpr std::string_view kReferences[] = {"ID", "Sig", "Ref", "DSID", "DeploymentDSID"};

bool Has(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

bool IsReference(dom::Attr attribute) { return Has(kReferences, attribute.getName()); }

/// The output block with this ID in the element's document; null if not found.
dom::Element FindOutput(dom::Element element, std::string_view id) {
  while (const dom::Element parent = dom::Element(element.getParentNode())) element = parent;
  dom::Element output = element.getFirstChildElement("Outputs").getFirstChildElement();
  while (output && output.getAttribute("ID") != id) output = output.getNextSiblingElement();
  return output;
}

/// The text that is read back from an element, or from the output block to which it refers.
std::string TextOf(dom::Element element) {
  if (const dom::Attr reference = element.getAttributeNode("Ref"); reference)
    element = FindOutput(element, reference.getValue());
  std::string scratch;
  return WithReadLineEnds(element.getTextContent(scratch));
}

bool HasChildren(dom::Element element) { return bool(element.getFirstChildElement()); }

/// Appends the whole content of an element. The separators do not occur in texts of documents.
void AppendContent(dom::Element element, std::string& content) {
  content.append(1, '\1').append(element.getTagName());
  for (const dom::Attr attribute : element.getAttributes())
    if (!IsReference(attribute))
      content.append(1, '\2')
          .append(attribute.getName())
          .append(1, '\3')
          .append(attribute.getValue());
  content.append(1, '\4').append(TextOf(element));
  for (dom::Element child = element.getFirstChildElement(); child;
       child = child.getNextSiblingElement())
    AppendContent(child, content);
  content += '\5';
}

/// Appends the attributes and texts of an element that are not empty, each with its name.
void AppendFields(dom::Element element, std::string& fields) {
  const auto append = [&](std::string_view name, std::string_view value) {
    if (value.empty()) return;
    if (!fields.empty()) fields += ", ";
    fields.append(name).append(": ").append(value);
  };
  for (const dom::Attr attribute : element.getAttributes())
    if (!IsReference(attribute)) append(attribute.getName(), attribute.getValue());
  for (dom::Element child = element.getFirstChildElement(); child;
       child = child.getNextSiblingElement())
    AppendFields(child, fields);
  if (!HasChildren(element)) append(element.getTagName(), TextOf(element));
}

/// The value of an element: its text, or its fields if it has any.
std::string ValueOf(dom::Element element) {
  const dom::NamedNodeMap attributes = element.getAttributes();
  if (!HasChildren(element) && std::all_of(attributes.begin(), attributes.end(), IsReference))
    return TextOf(element);
  std::string fields;
  AppendFields(element, fields);
  return fields;
}

/// The children of an element that are list items, or all of them.
std::vector<dom::Element> ItemsOf(dom::Element element, bool is_list) {
  std::vector<dom::Element> items;
  for (dom::Element child = element.getFirstChildElement(); child;
       child = child.getNextSiblingElement())
    if (is_list || IsItemElement(child.getTagName())) items.push_back(child);
  return items;
}

}  // namespace

std::string WithReadLineEnds(std::string_view text) {
  std::string read;
  for (std::size_t end = text.find('\r'); end != std::string_view::npos; end = text.find('\r')) {
    read.append(text.substr(0, end)).append(1, '\n');
    text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
  }
  return read.append(text);
}

bool IsListElement(std::string_view name) { return Has(kListElements, name); }

bool IsItemElement(std::string_view name) { return Has(kItemElements, name); }

void TElementComparison::Compare(std::string_view path, dom::Element one, dom::Element two) {
  path_ = path;
  CompareContent(one, two);
}

void TElementComparison::CompareContent(dom::Element one, dom::Element two) {
  CompareAttributes(one, two);
  if (one && two && !HasChildren(one) && !HasChildren(two)) CompareValues(TextOf(one), TextOf(two));
  const bool is_list = IsListElement((one ? one : two).getTagName());
  if (!is_list) CompareChildren(one, two);
  CompareItems(ItemsOf(one, is_list), ItemsOf(two, is_list));
}

void TElementComparison::CompareAttributes(dom::Element one, dom::Element two) {
  const auto value = [](dom::Attr attribute) {
    return attribute ? std::optional(attribute.getValue()) : std::nullopt;
  };
  const std::size_t size = path_.size();
  const auto compare = [&](std::string_view name) {
    path_.append(size > 0 ? "." : "").append(name);
    CompareValues(value(one.getAttributeNode(name)), value(two.getAttributeNode(name)));
    path_.resize(size);
  };
  for (const dom::Attr attribute : one.getAttributes())
    if (!IsReference(attribute)) compare(attribute.getName());
  for (const dom::Attr attribute : two.getAttributes())
    if (!IsReference(attribute) && !one.hasAttribute(attribute.getName()))
      compare(attribute.getName());
}

void TElementComparison::CompareChildren(dom::Element one, dom::Element two) {
  for (dom::Element child = one.getFirstChildElement(); child;
       child = child.getNextSiblingElement())
    if (!IsItemElement(child.getTagName()))
      CompareChild(child, two.getFirstChildElement(child.getTagName()));
  for (dom::Element child = two.getFirstChildElement(); child;
       child = child.getNextSiblingElement())
    if (!IsItemElement(child.getTagName()) && !one.getFirstChildElement(child.getTagName()))
      CompareChild({}, child);
}

/// Pairs equal items first. Between two pairs, remaining items at the same distance are compared
/// with each other; the rest are added or removed.
void TElementComparison::CompareItems(const TElements& one, const TElements& two) {
  std::map<std::string, std::uint32_t> numbers;
  const auto number = [&](const TElements& items) {
    std::vector<std::uint32_t> result;
    for (const dom::Element item : items) {
      std::string content;
      AppendContent(item, content);
      const auto next = static_cast<std::uint32_t>(numbers.size());
      result.push_back(numbers.try_emplace(std::move(content), next).first->second);
    }
    return result;
  };
  const std::vector<std::uint32_t> numbers_one = number(one);
  std::vector<TIndexPair> pairs = FindCommonSubsequence(numbers_one, number(two));
  pairs.push_back({static_cast<std::uint32_t>(one.size()), static_cast<std::uint32_t>(two.size())});
  std::size_t i = 0;
  std::size_t j = 0;
  for (const TIndexPair& pair : pairs) {
    for (; i < pair.one && j < pair.two; ++i, ++j) CompareItem(one[i], two[j], i);
    for (; i < pair.one; ++i) CompareItem(one[i], {}, i);
    for (; j < pair.two; ++j) CompareItem({}, two[j], j);
    i = pair.one + std::size_t{1};
    j = pair.two + std::size_t{1};
  }
}

void TElementComparison::CompareValues(std::optional<std::string_view> from,
                                       std::optional<std::string_view> to) {
  if (from != to) report_(path_, from, to);
}

void TElementComparison::CompareChild(dom::Element one, dom::Element two) {
  const std::size_t size = path_.size();
  path_.append(size > 0 ? "." : "").append((one ? one : two).getTagName());
  CompareFoundElements(one, two);
  path_.resize(size);
}

void TElementComparison::CompareItem(dom::Element one, dom::Element two, std::size_t index) {
  if (one && two && one.getTagName() != two.getTagName()) {
    CompareItem(one, {}, index);
    CompareItem({}, two, index);
    return;
  }
  const std::size_t size = path_.size();
  const std::string_view name = (one ? one : two).getTagName();
  if (IsItemElement(name)) path_.append(size > 0 ? "." : "").append(name);
  path_.append("[").append(std::to_string(index + 1)).append("]");
  CompareFoundElements(one, two);
  path_.resize(size);
}

void TElementComparison::CompareFoundElements(dom::Element one, dom::Element two) {
  if ((one && two) || IsListElement((one ? one : two).getTagName()))
    CompareContent(one, two);
  else
    CompareValues(one ? std::optional(ValueOf(one)) : std::nullopt,
                  two ? std::optional(ValueOf(two)) : std::nullopt);
}

}  // namespace zaf
