// Nothing of DXL is lost in silence: each element in each place where it may stand, and each value of each
// attribute, is imported beside the same without it, and must make the difference that the table tells. What
// came of it is the same after an export and a second import.
#include <iostream>

#include "embedded/dxl/export/element_table.h"
#include "embedded/dxl/export/export_fixture.h"

namespace lens {
namespace {

// What an import made of one variant.
struct Outcome {
  QString stored, kept;
};

// One element of the table with what belongs around it.
struct Variant {
  QString what;  // the element, then its attribute and value or the element around it
  QByteArray note;
};

class ElementTableTest : public DxlExport {
 protected:
  ElementTableTest() : table_(readElementTable()) {}

  QByteArray wrapped(const QStringList& path, QByteArray content) const {
    for (qsizetype i = path.size() - 1; i >= 1; --i) {
      const TableElement& around = table_[path[i]];
      content = around.startTag(around.needed) + content + around.endTag();
    }
    return content;
  }
  QByteArray withAttributes(const TableElement& element, const QMap<QString, QString>& attributes,
                            const QByteArray& content) const {
    return wrapped(element.path, element.startTag(attributes) + content + element.endTag());
  }
  static QByteArray file(const QByteArray& notes) {
    if (notes.startsWith("<database>") || notes.startsWith("<database ")) return notes;
    return "<database xmlns='http://www.lotus.com/dxl'>" + notes + "</database>";
  }

  // A pair is read with both its times or refused.
  static bool standsAlone(const QString& parent) { return parent != u"datetimepair"; }
  // Values of one kind of note that a database has once, or of the database itself, need one each.
  static bool needsDatabaseOfItsOwn(const TableElement& element) {
    static const QStringList notes = {
        u"database"_s,          u"acl"_s, u"databaseinfo"_s, u"fulltextsettings"_s, u"launchsettings"_s,
        u"helpaboutdocument"_s, u"note"_s};
    return notes.contains(element.name) || notes.contains(element.path.value(1));
  }

  static QString itemText(const Database& database, const Item& item) {
    QByteArray value = item.value;
    if (item.type() == itemtype::Object && value.size() >= 8 &&
        database.objects().size(objectIdOf(item)) >= 0) {
      value += objectBytes(database, objectIdOf(item));
      value.replace(4, 4, QByteArray(4, '\0'));
    }
    return u"%1 %2 %3\n"_s.arg(item.name, QString::number(item.flags, 16),
                               QString::fromLatin1(value.toHex()));
  }
  void import(const QByteArray& dxl) {
    const QString path = folder_.filePath(u"in.dxl"_s);
    QFile in(path);
    ASSERT_TRUE(in.open(QIODevice::WriteOnly));
    in.write(dxl);
    in.close();
    ImportReport report;
    DxlImporter(*source_).importFile(path, report);
    ASSERT_EQ(report.failed.join(u'\n').toStdString(), "") << dxl.left(1000).toStdString();
    told_ += report.ignored + report.keptRaw + report.origin;
  }

  // Each variant alone in the database.
  void importApart() {
    const DatabaseInfo untouched = source_->info();
    for (const Variant& variant : std::as_const(apart_)) {
      for (const NoteSummary& note : source_->notes().list(0xFFFF)) source_->notes().remove(note.id, false);
      source_->setInfo(untouched);
      import(file(variant.note));
      Outcome whole;
      whole.stored = infoText(source_->info());
      for (const NoteSummary& summary : source_->notes().list(0xFFFF)) addOutcome(summary.id, variant, whole);
      made_[variant.what] = whole;
    }
  }
  // All variants are notes of one file.
  void importTogether() {
    QByteArray notes;
    for (const Variant& variant : std::as_const(together_)) notes += variant.note + "\n";
    import(file(notes));
    const QVector<NoteSummary> list = source_->notes().list(0xFFFF);
    // The icon note comes last.
    ASSERT_EQ(list.size(), together_.size() + 1);
    for (qsizetype i = 0; i < together_.size(); ++i)
      addOutcome(list[i].id, together_[i], made_[together_[i].what]);
  }
  void addOutcome(NoteId id, const Variant& variant, Outcome& outcome) const {
    Note note;
    ASSERT_TRUE(source_->notes().read(id, note));
    outcome.stored +=
        u"class %1 parent %2\n"_s.arg(note.header.noteClass, 0, 16).arg(note.header.parent.text());
    // Without them the numbers and times are new ones.
    if (variant.note.contains("<noteinfo")) outcome.stored += headerText(note.header);
    for (const Item& item : note.items)
      (item.name.startsWith(u"$DXL_") ? outcome.kept : outcome.stored) += itemText(*source_, item);
  }

  // Whether the report names the attribute, or an element around it that is left out as a whole.
  bool told(const TableElement& element, const QString& attribute, const QString& value) const {
    for (const QString& line : told_) {
      if (line == attribute ||
          (attribute == u"#text" && line.contains(u"text in \"%1\""_s.arg(element.name))))
        return true;
      if (line.contains(u"\"%1\""_s.arg(attribute)) && line.contains(u"\"%1\""_s.arg(element.name)))
        return true;
      // "text color "#123456"".
      if (line.contains(u" %1 \"%2\""_s.arg(attribute, value))) return true;
    }
    return toldAsAWhole(element, element.path);
  }
  bool toldAsAWhole(const TableElement& element, QStringList around) const {
    around.push_back(element.name);
    for (const QString& line : told_) {
      for (const QString& name : std::as_const(around)) {
        if (line.contains(u": %1: "_s.arg(name)) || line.contains(u": element \"%1\""_s.arg(name)))
          return true;
      }
    }
    return false;
  }

  // The weaker of two fates.
  static QString weaker(const QString& a, const QString& b) {
    const QStringList order = {u"lost"_s, u"reported"_s, u"kept"_s, u"stored"_s, QString()};
    return order.indexOf(a) < order.indexOf(b) ? a : b;
  }
  static QString difference(const Outcome& with, const Outcome& without) {
    return with.stored != without.stored ? u"stored"_s : with.kept != without.kept ? u"kept"_s : u"lost"_s;
  }

  void expectFate(const QString& what, const QString& expected, const QString& found) {
    EXPECT_EQ(found.toStdString(), expected.toStdString())
        << "TABLE " << what.toStdString() << " = " << found.toStdString();
  }

  void addValues(const TableElement& element, const TableAttribute& attribute);
  void addVariants(const TableElement& element);
  Outcome made(const TableElement& element, const QString& what) const {
    const QString key = element.name + u' ' + what;
    EXPECT_TRUE(made_.contains(key)) << key.toStdString();
    return made_.value(key);
  }
  QString fate(const TableElement& element, const TableAttribute& attribute) const;
  QString fate(const TableElement& element, const TableElement& parent) const;

  const ElementTable table_;
  QVector<Variant> together_, apart_;
  QMap<QString, Outcome> made_;
  QStringList told_;
};

QString baseOf(const TableElement& element, const TableAttribute& attribute) {
  if (attribute.name == u"#text") return attribute.values.first();
  return element.needed.value(attribute.name);
}

void ElementTableTest::addValues(const TableElement& element, const TableAttribute& attribute) {
  for (const QString& value : attribute.values) {
    QMap<QString, QString> attributes = element.needed;
    QByteArray content = element.inner;
    if (attribute.name == u"#text")
      content = value.toUtf8();
    else
      attributes[attribute.name] = value;
    (needsDatabaseOfItsOwn(element) ? apart_ : together_)
        .push_back({element.name + u' ' + attribute.name + u'=' + value,
                    withAttributes(element, attributes, content)});
  }
}

// The element, it with each value of each attribute, and each element around it with and without it.
void ElementTableTest::addVariants(const TableElement& element) {
  (needsDatabaseOfItsOwn(element) ? apart_ : together_)
      .push_back({element.name + u' ', withAttributes(element, element.needed, element.inner)});
  for (const TableAttribute& attribute : element.attributes) addValues(element, attribute);
  const QByteArray self = element.startTag(element.needed) + element.inner + element.endTag();
  for (auto it = element.parents.cbegin(); it != element.parents.cend(); ++it) {
    if (!standsAlone(it.key())) continue;
    const TableElement& parent = table_[it.key()];
    QVector<Variant>& variants = needsDatabaseOfItsOwn(parent) ? apart_ : together_;
    const QByteArray text = parent.inner.contains('<') ? QByteArray() : parent.inner;
    const QString with = element.name + QStringLiteral(" in ") + parent.name;
    variants.push_back({with, withAttributes(parent, parent.needed, self + text)});
    variants.push_back({with + u'-', withAttributes(parent, parent.needed, text)});
  }
}

// Against the base and against each other.
QString ElementTableTest::fate(const TableElement& element, const TableAttribute& attribute) const {
  QString weakest;
  const QString base = baseOf(element, attribute);
  const auto found = [&](const QString& value) { return made(element, attribute.name + u'=' + value); };
  for (const QString& value : attribute.values) {
    if (value == base || value == attribute.otherwise) continue;
    QString one = difference(found(value), made(element, QString()));
    for (const QString& other : attribute.values) {
      if (other != value) one = weaker(one, difference(found(value), found(other)));
    }
    if (one == u"lost" && told(element, attribute.name, value)) one = u"reported"_s;
    weakest = weaker(one, weakest);
  }
  return weakest;
}

QString ElementTableTest::fate(const TableElement& element, const TableElement& parent) const {
  const QString with = QStringLiteral("in ") + parent.name;
  const QString found = difference(made(element, with), made(element, with + u'-'));
  if (found != u"lost" || !toldAsAWhole(element, parent.path + QStringList{parent.name})) return found;
  return u"reported"_s;
}

TEST_F(ElementTableTest, ElementsAndAttributesMakeTheDifferenceThatTheTableTells) {
  ASSERT_GT(table_.size(), 200);
  for (const TableElement& element : table_) addVariants(element);
  importApart();
  source_ = create();
  importTogether();
  told_.removeDuplicates();
  for (const TableElement& element : table_) {
    for (const TableAttribute& attribute : element.attributes) {
      const QString found = fate(element, attribute);
      if (!found.isEmpty())
        expectFate(element.name + QStringLiteral(" @") + attribute.name, attribute.becomes, found);
    }
    for (auto it = element.parents.cbegin(); it != element.parents.cend(); ++it) {
      if (!standsAlone(it.key())) continue;
      expectFate(element.name + QStringLiteral(" <") + it.key(), it.value(), fate(element, table_[it.key()]));
    }
  }
  roundTrip();
}

}  // namespace
}  // namespace lens
