#pragma once

#include "actions/TTableSpecification.h"
#include "foundation/TOwningArray.h"

namespace zaf {

/// A parameter of an external call, or an environment variable of a command. Owns its texts.
struct TExternalParameter {
  CText name;
  CText value;

  friend bool operator==(const TExternalParameter& one, const TExternalParameter& two) {
    return one.name.View() == two.name.View() && one.value.View() == two.value.View();
  }
};
using CExternalParameterArray = TOwningArray<TExternalParameter>;

/// The base of the actions that call something outside the server: a command line, an event to
/// another application, a function of an external library. The platform determines which one and
/// the name of the element. Owns its texts and parameters.
class TExternalQuerySpecification
    : public TTableSpecification<TExternalQuerySpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("aevt");
  static constexpr std::string_view kElement = {};  ///< One of the next three, by the platform.
  static constexpr std::string_view kCommandElement = "CommandLineAction";
  static constexpr std::string_view kEventElement = "AppleEventAction";
  static constexpr std::string_view kLibraryElement = "ExternalDLLAction";
  static constexpr std::string_view kLabel = "[External Action] ";
  static std::span<const TProperty> Properties();

  /// The three sections of parameters are tried in turn; each one replaces target and parameters.
  Status ReadLegacyProperty(const TLegacySection& section) override;
  Status WriteLegacyProperties(TSectionWriter& out) const override;
  [[nodiscard]] bool IsEqual(const TQuerySpecification& other) const override;
  /// Whether the variables are valid as the environment of a command line: kFailure, with the
  /// reason in `error`, when one has a value but no name.
  Status CheckEnvironment(CText& error) const;
  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override;
  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;

 protected:
  static constexpr FourCharCode kCommandPlatform = Code("aevx");
  static constexpr FourCharCode kEventPlatform = Code("aevt");
  static constexpr FourCharCode kOldEventPlatform = Code("mac ");
  static constexpr FourCharCode kLibraryPlatform = Code("exev");
  static constexpr FourCharCode kReadByHand[] = {kLibraryPlatform, kEventPlatform,
                                                 kCommandPlatform};

  /// Read and write the parameter section of one kind: for an event its class and code; then, for
  /// every kind, the target and a count of names and values, each text with its NUL. A section that
  /// ends early yields its complete items.
  virtual Status ReadParameters(const TLegacySection& section);
  /// Sets `is_whole` to whether the section had all parts.
  Status ReadParts(const TLegacySection& section, TByteReader& reader, bool& is_whole);
  virtual Status WriteParameters(FourCharCode code, TSectionWriter& out) const;

  void SetPlatform(FourCharCode platform) { platform_ = platform; }

 private:
  [[nodiscard]] bool HasEvent() const;
  Status WriteElement(TXmlWriteContext& context, dom::Element parent) const;
  Status ReadElement(const TXmlReadContext& context, dom::Element element);

  FourCharCode event_class_ = Code("????");
  FourCharCode event_code_ = Code("????");
  CText target_;  ///< The command line, or the application or library.
  FourCharCode platform_ = kOldEventPlatform;
  CExternalParameterArray parameters_;
};

}  // namespace zaf
