// The name of an item: kept as it is written, matched without regard to case (format/case_key.h). Fields,
// variables of formulas and fields of the full-text index are names of items too.
#pragma once

#include <QByteArrayView>
#include <QHashFunctions>
#include <QString>
#include <QStringView>
#include <cstring>

namespace lens {

// For one comparison. A name that is looked up often is made an ItemName first.
bool sameItemName(QStringView a, QStringView b);
// Whether a name as it is packed (UTF-8) is that item name; plain ones are compared where they lie.
bool isPackedName(QByteArrayView utf8, QStringView name);

// A name prepared once, for look-ups that happen often: key of sets and tables.
class ItemName {
 public:
  ItemName() = default;
  explicit ItemName(const QString& written);
  static ItemName fromPacked(QByteArrayView utf8) { return ItemName(QString::fromUtf8(utf8)); }

  const QString& text() const { return text_; }  // as written
  const QString& key() const { return key_; }    // the same for all that match
  size_t hash() const { return hash_; }

  bool operator==(const ItemName& other) const {
    return hash_ == other.hash_ && key_.size() == other.key_.size() &&
           std::memcmp(key_.utf16(), other.key_.utf16(), size_t(key_.size()) * 2) == 0;
  }
  friend size_t qHash(const ItemName& name, size_t seed = 0) noexcept { return name.hash_ ^ seed; }

 private:
  QString text_, key_;
  size_t hash_ = 0;
};

}  // namespace lens
