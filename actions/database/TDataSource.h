#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "fields/TProperty.h"
#include "foundation/CText.h"

namespace zaf {

/// The data source of an action: the kind and location of a database, and in clear two logins for
/// it, for development and for deployment. Owns its texts.
///
/// In a document it is written as two `DataSource` elements of the document's list, which differ in
/// the user and password. Actions whose elements would be equal share one.
struct TDataSource {
  FourCharCode host_type = kNoCode;
  CText type_name;  ///< The type name of the last host type with one.
  CText data_source;
  CText host;
  CText database;
  CText user_name;
  CText password;
  CText dbms;
  CText deployment_user_name;
  CText deployment_password;

  /// The legacy sections and, in the order of the element, its children up to `UserInfo`.
  static std::span<const TProperty> Properties();

  /// Sets the type name from the host type; keeps it if that has no name.
  void UpdateTypeName();

  /// Sets the numbers of the two elements of this data source, which are appended to the document's
  /// list unless elements of another action have equal content.
  void WriteXml(TXmlWriteContext& context, std::uint32_t& development,
                std::uint32_t& deployment) const;

  /// Reads everything but the deployment login from the element with the ID `development`, and that
  /// from the element `deployment`. An ID that does not exist leaves its fields empty. kMalformed
  /// when all references together copy too much text.
  Status ReadXml(const TXmlReadContext& context, std::string_view development,
                 std::string_view deployment);

 private:
  friend class TDataSourceIndex;

  /// Returns the number of the element with this login.
  std::uint32_t WriteElement(TXmlWriteContext& context, const CText& login_name,
                             const CText& login_password) const;

  /// Reads one element: everything but the deployment login. A null element leaves it empty.
  void ReadElement(const TXmlReadContext& context, dom::Element element);
  static void ReadLogin(const TXmlReadContext& context, dom::Element element, CText& user_name,
                        CText& password);
};

}  // namespace zaf
