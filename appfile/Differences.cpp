#include "appfile/Differences.h"

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "actions/database/TDataSourceWriter.h"
#include "actions/flow/TContainerSpecification.h"
#include "appfile/CommonSubsequence.h"
#include "appfile/ProgramTree.h"
#include "appfile/TElementComparison.h"
#include "appfile/TLegacyRecord.h"
#include "appfile/TQuerySpecificationServer.h"
#include "fields/TextTraits.h"

namespace zaf {
namespace {

constexpr std::uint32_t kNone = static_cast<std::uint32_t>(-1);
/// Replaces passwords, which legacy files have in clear and reports must not have.
constexpr std::string_view kHidden = "(hidden)";
constexpr std::string_view kOtherHidden = "(another one, hidden)";
/// The section with the name of an action's parent.
constexpr FourCharCode kParentSection = Code("pare");

/// Whether differences between objects are visible in their XML form.
enum class HasXml : bool { kNo, kYes };

using TOptionalText = std::optional<std::string_view>;

/// A document with one action, or with the properties of an application as a whole.
class TScratchDocument {
 public:
  /// Returns the element of the action, valid until the next call.
  dom::Element Write(const TQuerySpecification& action) {
    const auto write = [&](TXmlWriteContext& context) {
      return action.WriteXml(context, dom::Element(), context.actions) == Status::kOk;
    };
    return Write(write).getFirstChildElement("Actions").getFirstChildElement();
  }

  /// Returns an element with the attributes and texts of the root, and the data source.
  dom::Element Write(const TApplication& application) {
    const auto write = [&](TXmlWriteContext& context) {
      WriteXmlRows(TApplication::Properties(), &application, {context, context.actions, {}});
      if (!application.HasDataSource()) return true;
      const dom::Element source = context.actions.appendElement("DataSource");
      WriteXmlRows(TApplication::DataSourceProperties(), &application, {context, source, {}});
      const dom::Element info = source.appendElement("DataSourceInfo");
      WriteXmlRows(TApplication::DataSourceInfoProperties(), &application, {context, info, {}});
      return true;
    };
    return Write(write).getFirstChildElement("Actions");
  }

 private:
  template <class Function>
  dom::Element Write(Function write) {
    document_.Clear();
    const dom::Element root = document_.createElement("ZAF");
    document_.appendChild(root);
    TDataSourceWriter data_sources;
    TXmlWriteContext context{root.appendElement("Actions"), root.appendElement("Outputs"),
                             data_sources};
    data_sources.SetList(root.appendElement("DataSources"));
    if (!write(context) || !document_.IsComplete()) throw std::bad_alloc();
    return root;
  }

  dom::Document document_ = dom::DOMImplementation::createDocument();
};

/// The data source to which an attribute of an action's element refers; null if not found.
dom::Element FindDataSource(dom::Element action, std::string_view attribute) {
  const dom::Element root(action.getParentNode().getParentNode());
  dom::Element source = root.getFirstChildElement("DataSources").getFirstChildElement();
  const std::string_view id = action.getAttribute(attribute);
  while (source && source.getAttribute("ID") != id) source = source.getNextSiblingElement();
  return source;
}

/// Compares the elements of two actions, or of two applications, without references to data
/// sources. The two data sources of one action differ only in their logins.
void CompareElements(TElementComparison& comparison, dom::Element one, dom::Element two) {
  comparison.Compare({}, one, two);
  const auto compare_sources = [&](std::string_view attribute, std::string_view part) {
    const dom::Element source_one = FindDataSource(one, attribute);
    const dom::Element source_two = FindDataSource(two, attribute);
    if (part.empty())
      comparison.Compare(attribute, source_one, source_two);
    else
      comparison.Compare(std::string(attribute).append(1, '.').append(part),
                         source_one.getFirstChildElement(part),
                         source_two.getFirstChildElement(part));
  };
  compare_sources("DSID", {});
  compare_sources("DeploymentDSID", "UserInfo");
}

/// An action in a list of all actions of a tree.
struct TNode {
  const TQuerySpecification* action;
  std::string key;              ///< Name by which corresponding actions are found.
  std::uint32_t parent;         ///< Index of its parent; that of the root is its own.
  std::uint32_t before;         ///< Index of the sibling before it; kNone for the first one.
  std::uint32_t match = kNone;  ///< Index of the corresponding action in the other list.
  bool is_reordered = false;
};

/// Keys are names as written in documents. For kCompared they are also cut as in legacy files.
TNode MakeNode(const TQuerySpecification& action, std::uint32_t parent, std::uint32_t before,
               DifferenceScope scope) {
  std::string_view name = action.GetName().View();
  if (scope == DifferenceScope::kCompared) name = name.substr(0, kRecordNameWidth - 1);
  TNode node{&action, std::string(name), parent, before};
  std::erase_if(node.key, IsDroppedCharacter);
  return node;
}

/// The actions of a tree in its order, the root first, which also represents a missing one. In the
/// scope of the XML form an else-if or else is a sibling of the if that it continues.
std::vector<TNode> ListActions(const TActionTree& tree, DifferenceScope scope) {
  static const TContainerSpecification no_root;
  const TActionEntry* const root = tree.GetRoot();
  const TQuerySpecification* const top = root == nullptr ? &no_root : root->action.get();
  std::vector<TNode> nodes{MakeNode(*top, 0, kNone, scope)};
  if (root == nullptr) return nodes;
  std::vector<std::uint32_t> last_child{kNone};
  // The path from the root to the current action.
  std::vector<std::pair<const TActionEntry*, std::uint32_t>> path{{root, 0}};
  for (const TActionEntry* entry = TActionTree::GetNext(*root); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    while (path.back().first != entry->parent) path.pop_back();
    std::uint32_t parent = path.back().second;
    if (scope == DifferenceScope::kXmlForm && IsBranchOf(*entry->action, *entry->parent->action))
      parent = nodes[parent].parent;
    const auto index = static_cast<std::uint32_t>(nodes.size());
    path.emplace_back(entry, index);
    const std::uint32_t before = std::exchange(last_child[parent], index);
    nodes.push_back(MakeNode(*entry->action, parent, before, scope));
    last_child.push_back(kNone);
  }
  return nodes;
}

class TApplicationComparison {
 public:
  TApplicationComparison(const TApplication& one, const TApplication& two, DifferenceScope scope,
                         TDifferenceObserver& observer)
      : one_(one),
        two_(two),
        scope_(scope),
        observer_(observer),
        nodes_one_(ListActions(one.actions, scope)),
        nodes_two_(ListActions(two.actions, scope)) {}

  void Run() {
    CompareApplications();
    is_of_action_ = true;
    Match();
    FindReordered();
    for (const TNode& node : nodes_one_) {
      subject_ = node.action->GetName().View();
      if (node.match == kNone) {
        ReportValues({}, documents_[0].Write(*node.action).getTagName(), {});
        continue;
      }
      const TNode& other = nodes_two_[node.match];
      ReportPlaces(node, other);
      CompareActionPair(*node.action, *other.action, node.match == 0 ? HasXml::kNo : HasXml::kYes);
      ReportAdded(node.match);
    }
  }

 private:
  void Report(DifferenceKind kind, std::string_view field, TOptionalText from, TOptionalText to) {
    ++count_;
    observer_.OnDifference({kind, is_of_action_, subject_, field, from, to});
  }

  /// Reports two values if they differ.
  void ReportValues(std::string_view field, TOptionalText from, TOptionalText to) {
    if (from == to) return;
    const DifferenceKind kind = !from ? DifferenceKind::kAdded
                                : !to ? DifferenceKind::kRemoved
                                      : DifferenceKind::kChanged;
    Report(kind, field, from, to);
  }

  TElementComparison MakeComparison() {
    return TElementComparison([this](std::string_view field, TOptionalText from, TOptionalText to) {
      ReportValues(field, from, to);
    });
  }

  void CompareApplications() {
    subject_ = one_.GetRootElement();
    if (!observer_.LooksInto({})) return;
    ReportValues({}, one_.GetRootElement(), two_.GetRootElement());
    TElementComparison comparison = MakeComparison();
    comparison.Compare({}, documents_[0].Write(one_), documents_[1].Write(two_));
    if (scope_ != DifferenceScope::kXmlForm) CompareSections(one_, two_, HasXml::kYes);
  }

  /// Pairs the actions of each name, first those below the same parent.
  void Match() {
    std::map<std::pair<std::uint32_t, std::string_view>, std::vector<std::uint32_t>> left;
    const auto match = [&](TNode& node, std::uint32_t parent) {
      const auto found = left.find({parent, node.key});
      if (found == left.end() || found->second.empty()) return;
      node.match = found->second.back();
      nodes_two_[node.match].match = static_cast<std::uint32_t>(&node - nodes_one_.data());
      found->second.pop_back();
    };
    for (auto i = static_cast<std::uint32_t>(nodes_two_.size()); --i > 0;)
      left[{nodes_two_[i].parent, nodes_two_[i].key}].push_back(i);
    nodes_one_.front().match = nodes_two_.front().match = 0;
    for (TNode& node : std::span(nodes_one_).subspan(1))
      if (const std::uint32_t parent = nodes_one_[node.parent].match; parent != kNone)
        match(node, parent);
    left.clear();
    for (auto i = static_cast<std::uint32_t>(nodes_two_.size()); --i > 0;)
      if (nodes_two_[i].match == kNone) left[{kNone, nodes_two_[i].key}].push_back(i);
    for (TNode& node : nodes_one_)
      if (node.match == kNone) match(node, kNone);
  }

  [[nodiscard]] bool IsMoved(const TNode& node) const {
    return nodes_one_[node.parent].match != nodes_two_[node.match].parent;
  }

  /// Of the actions that are still below the same parent, marks the smallest set of reordered ones:
  /// without them, the others are in the same order.
  void FindReordered() {
    std::vector<std::uint32_t> stayed;
    for (std::uint32_t i = 1; i < nodes_one_.size(); ++i)
      if (nodes_one_[i].match != kNone && !IsMoved(nodes_one_[i])) stayed.push_back(i);
    std::ranges::stable_sort(stayed, {}, [&](std::uint32_t i) { return nodes_one_[i].parent; });
    std::vector<std::uint32_t> places;
    for (std::size_t begin = 0; begin < stayed.size(); begin += places.size()) {
      const std::uint32_t parent = nodes_one_[stayed[begin]].parent;
      places.clear();
      for (std::size_t k = begin; k < stayed.size() && nodes_one_[stayed[k]].parent == parent;
           ++k) {
        places.push_back(nodes_one_[stayed[k]].match);
        nodes_one_[stayed[k]].is_reordered = true;
      }
      for (const std::uint32_t k : FindLongestIncreasing(places))
        nodes_one_[stayed[begin + k]].is_reordered = false;
    }
  }

  /// Reports the actions that are only in `two` and have this index there.
  void ReportAdded(std::uint32_t index) {
    while (++index < nodes_two_.size() && nodes_two_[index].match == kNone) {
      subject_ = nodes_two_[index].action->GetName().View();
      ReportValues({}, {}, documents_[1].Write(*nodes_two_[index].action).getTagName());
    }
  }

  void ReportPlaces(const TNode& one, const TNode& two) {
    const auto name = [](const std::vector<TNode>& nodes, std::uint32_t index, std::uint32_t none) {
      return index == none ? std::nullopt : TOptionalText(nodes[index].action->GetName().View());
    };
    if (IsMoved(one))
      Report(DifferenceKind::kMoved, {}, name(nodes_one_, one.parent, 0),
             name(nodes_two_, two.parent, 0));
    else if (one.is_reordered)
      Report(DifferenceKind::kReordered, {}, name(nodes_one_, one.before, kNone),
             name(nodes_two_, two.before, kNone));
  }

  /// `has_xml`: kNo for the roots.
  void CompareActionPair(const TQuerySpecification& one, const TQuerySpecification& two,
                         HasXml has_xml) {
    const bool is_equal = one.IsEqual(two);
    if (is_equal && scope_ != DifferenceScope::kEverything) return;
    if (!observer_.LooksInto(subject_)) return;
    const std::uint64_t count = count_;
    if (!is_equal && has_xml == HasXml::kYes) {
      const dom::Element element_one = documents_[0].Write(one);
      const dom::Element element_two = documents_[1].Write(two);
      ReportValues({}, element_one.getTagName(), element_two.getTagName());
      TElementComparison comparison = MakeComparison();
      CompareElements(comparison, element_one, element_two);
    }
    if (scope_ == DifferenceScope::kXmlForm) return;
    CompareSections(one, two, count_ == count ? HasXml::kNo : HasXml::kYes);
    if (!is_equal && count_ == count)
      ReportValues({}, TextOf(one.GetTypeCode()), TextOf(two.GetTypeCode()));
    if (!is_equal && count_ == count)
      Report(DifferenceKind::kChanged, {}, std::nullopt, std::nullopt);
    if (scope_ == DifferenceScope::kEverything && has_xml == HasXml::kYes)
      ReportValues("ID", one.GetName().View(), two.GetName().View());
  }

  // Differences of the legacy sections of actions and applications, and of their effect on a new
  // object.

  static TLegacyRecord RecordOf(const TQuerySpecification& action) {
    return TLegacyRecord([&](TSectionWriter& out) { return action.WriteLegacyProperties(out); });
  }
  static TLegacyRecord RecordOf(const TApplication& application) {
    return TLegacyRecord([&](TSectionWriter& out) {
      return WriteLegacyRows(TApplication::Properties(), &application, out);
    });
  }
  std::unique_ptr<TQuerySpecification> MakeLike(const TQuerySpecification& action) {
    return server_.CreateByType(action.GetTypeCode());
  }
  std::unique_ptr<TApplication> MakeLike(const TApplication&) {
    return std::make_unique<TApplication>();
  }
  static void ReadSection(TQuerySpecification& action, TLegacySection section) {
    section.converter = &action;
    static_cast<void>(action.ReadLegacyProperty(section));
  }
  static void ReadSection(TApplication& application, const TLegacySection& section) {
    static const TCodeIndex index(TApplication::Properties(), &application);
    static_cast<void>(index.Find(section.code).Read(&application, section));
  }

  /// Reports the sections that differ, for kYes only those that do not affect the XML form.
  template <class Object>
  void CompareSections(const Object& one, const Object& two, HasXml has_xml) {
    const TLegacyRecord record_one = RecordOf(one);
    const TLegacyRecord record_two = RecordOf(two);
    std::vector<FourCharCode> codes = record_one.GetCodes();
    for (const FourCharCode code : record_two.GetCodes())
      if (!record_one.Find(code)) codes.push_back(code);
    for (const FourCharCode code : codes) {
      const TOptionalText from = record_one.Find(code);
      const TOptionalText to = record_two.Find(code);
      if (from == to || code == kParentSection) continue;
      const bool is_read_alike = from && to && WithReadLineEnds(*from) == WithReadLineEnds(*to);
      if (has_xml == HasXml::kYes && !is_read_alike &&
          ChangesXml(one, record_one, record_two, code))
        continue;
      const bool is_password = code == Code("pass") || code == Code("dpas");
      ReportValues("'" + TextOf(code) + "'", from && is_password ? kHidden : from,
                   to && is_password ? kOtherHidden : to);
    }
  }

  /// Whether replacing the section of this code by that of `other` changes the XML form of an
  /// object.
  template <class Object>
  bool ChangesXml(const Object& object, const TLegacyRecord& record, const TLegacyRecord& other,
                  FourCharCode code) {
    const auto unchanged = MakeLike(object);
    const auto changed = MakeLike(object);
    if (unchanged == nullptr || changed == nullptr) throw std::bad_alloc();
    record.Read([&](const TLegacySection& section) { ReadSection(*unchanged, section); });
    record.Read([&](const TLegacySection& section) { ReadSection(*changed, section); }, &other,
                code);
    bool differs = false;
    TElementComparison comparison(
        [&](std::string_view, TOptionalText, TOptionalText) { differs = true; });
    CompareElements(comparison, documents_[0].Write(*unchanged), documents_[1].Write(*changed));
    return differs;
  }

  const TApplication& one_;
  const TApplication& two_;
  const DifferenceScope scope_;
  TDifferenceObserver& observer_;
  const TQuerySpecificationServer server_{};
  TScratchDocument documents_[2];
  std::vector<TNode> nodes_one_;
  std::vector<TNode> nodes_two_;
  bool is_of_action_ = false;
  std::string_view subject_;
  std::uint64_t count_ = 0;  ///< The number of differences so far.
};

}  // namespace

void FindDifferences(const TApplication& one, const TApplication& two, DifferenceScope scope,
                     TDifferenceObserver& observer) {
  TApplicationComparison(one, two, scope, observer).Run();
}

}  // namespace zaf
