// Names of people and servers: hierarchical ("CN=Ada Byron/OU=East/O=Acme/C=US", abbreviated "Ada
// Byron/East/Acme/US"), Internet addresses ("Ada" <ada@acme.example>), and flat ones. Views into a text
// that must outlive them.
#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

namespace lens::formula {

struct NamePart {
  QStringView label;  // as written; of an abbreviated name what the place says: CN, OU, O, C
  QStringView value;
};

class HierarchicalName {
 public:
  // A name without "/" and without a label has no parts: it is flat.
  explicit HierarchicalName(QStringView name);

  bool isFlat() const { return parts_.isEmpty(); }
  // The value with that label; "" without one.
  QStringView part(QStringView label) const;
  // Organizational units counted from the right, from 1.
  QStringView unit(int fromRight) const;
  // Labels and values; without the common name if so wanted.
  QString canonical(bool withCommonName = true) const;
  QString abbreviated() const;
  // Country, organization, then units from the largest down, with backslashes between.
  QString keyword() const;
  // Takes what is missing at the end of the name from the end of another: the organization and the
  // country, and the units when the name has none of its own.
  QString completedFrom(const HierarchicalName& user) const;

 private:
  void readLabelled(QStringView name);
  void readAbbreviated(QStringView name);
  QVarLengthArray<NamePart, 8> parts_;
};

struct InternetName {
  QStringView phrase;   // in front of <...>, or the comment in parentheses behind; without its quotes
  QStringView address;  // "" when the name is no Internet address
  QStringView local;    // in front of the @
};
InternetName readInternetName(QStringView name);

}  // namespace lens::formula
