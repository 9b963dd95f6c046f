// The working part of the replacement, on documents of the engine and on doubles.
#include "bulk/field_replacement.h"

#include "bulk/operations_fixture.h"

namespace lens {
namespace {

TEST(FieldRows, NameTheItemBeforeTheFirstColon) {
  EXPECT_EQ(itemNameOfRow(u"Subject: a: b"_s), u"Subject"_s);
  EXPECT_EQ(itemNameOfRow(u" Subject : x"_s), u" Subject "_s) << "blanks belong to the name";
  EXPECT_EQ(itemNameOfRow(u": x"_s), u""_s);
  EXPECT_EQ(itemNameOfRow(u"no colon"_s), std::nullopt);
  EXPECT_EQ(itemNameOfRow(QString()), std::nullopt);
  EXPECT_EQ(requiredItemNameOfRow(u"A:"_s), u"A"_s);
  for (const QString& row : {u"no colon"_s, QString()}) {
    try {
      requiredItemNameOfRow(row);
      ADD_FAILURE() << "nothing was raised";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), err::InvalidCall);
    }
  }
}

// A document that gives one value and keeps what is written.
class OneItem : public Dispatch {
 public:
  explicit OneItem(Value value) : value_(std::move(value)) {}
  Value get(const QString&) override { return {}; }
  void set(const QString&, const Value&) override {}
  Value call(const QString& name, const QVector<Value>& arguments) override {
    if (name == u"GETITEMVALUE") return value_;
    written.push_back(arguments.at(1));
    return {};
  }
  QVector<Value> written;

 private:
  Value value_;
};

class ValuesOfACopy : public testing::Test {
 protected:
  // What is written to a copy with these values whose source has those.
  QVector<Value> written(const Value& copied, const Value& original) {
    const auto copy = std::make_shared<OneItem>(copied);
    replaceInCopiedItem(NotesDocument(Object(copy)),
                        NotesDocument(Object(std::make_shared<OneItem>(original))), u"A"_s, {u"x"_s, u"y"_s},
                        regional);
    return copy->written;
  }
  QVector<Value> written(const Value& own) {
    const auto document = std::make_shared<OneItem>(own);
    replaceInOwnItem(NotesDocument(Object(document)), u"A"_s, {u"x"_s, u"y"_s}, regional);
    return document->written;
  }
  template <class Action>
  static int raised(Action action) {
    try {
      action();
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  }
  static Value texts(const QStringList& list) {
    QVector<Value> values;
    for (const QString& text : list) values.push_back(text);
    return Value::array(values);
  }
  const Regional regional{QLocale(QLocale::German, QLocale::Germany)};
};

TEST_F(ValuesOfACopy, AreAsManyAsTheSourceHas) {
  const Value three = texts({u"x"_s, u"ax"_s, u"b"_s});
  EXPECT_EQ(written(three, three), QVector<Value>({texts({u"y"_s, u"ay"_s, u"b"_s})}));
  EXPECT_EQ(written(three, texts({u"x"_s, u"x"_s})), QVector<Value>({texts({u"y"_s, u"ay"_s})}));
  EXPECT_EQ(raised([&] { written(texts({u"x"_s, u"x"_s}), three); }), err::SubscriptOutOfRange);
  EXPECT_EQ(raised([&] { written(three, Value()); }), err::TypeMismatch);
}

TEST_F(ValuesOfACopy, OneIsWrittenAsATextAndNoneNotAtAll) {
  EXPECT_EQ(written(texts({u"xx"_s}), Value()), QVector<Value>({Value(u"yy"_s)}));
  EXPECT_EQ(written(texts({}), texts({})), QVector<Value>());
  EXPECT_EQ(written(Value(), Value()), QVector<Value>());
  EXPECT_EQ(raised([&] { written(Value(u"x"_s), Value()); }), err::TypeMismatch) << "a text is no array";
}

TEST_F(ValuesOfACopy, AreTextsOfTheRegion) {
  const DateTime moment{QDate(2024, 3, 11), QTime(14, 5, 9)};
  EXPECT_EQ(written(Value::array({Value(moment)}), Value()),
            QVector<Value>({Value(u"11.03.2024 14:05:09"_s)}));
  EXPECT_EQ(written(Value::array({Value(1.5)}), Value()), QVector<Value>({Value(u"1.5"_s)}));
}

TEST_F(ValuesOfACopy, InTheSourceItselfHaveToBeThere) {
  EXPECT_EQ(written(texts({u"x"_s, u"b"_s})), QVector<Value>({texts({u"y"_s, u"b"_s})}));
  EXPECT_EQ(written(texts({u"x"_s})), QVector<Value>({Value(u"y"_s)}));
  EXPECT_EQ(raised([&] { written(Value()); }), err::TypeMismatch);
  EXPECT_EQ(raised([&] { written(texts({})); }), err::SubscriptOutOfRange);
}

}  // namespace
}  // namespace lens
