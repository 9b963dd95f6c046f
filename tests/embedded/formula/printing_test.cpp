// How trees are written back as formulas, and when two trees are the same.
#include "embedded/formula/syntax_fixture.h"

namespace lens::formula {
namespace {

class Printing : public Syntax {};

TEST_F(Printing, PrintsOneStatementALineWithOneBlankAroundOperators) {
  EXPECT_EQ(printed(u"x:=1;SELECT x+2*3;rem{a \"b\"}"), u"x := 1;\nSELECT x + 2 * 3;\nREM \"a \\\"b\\\"\"");
  EXPECT_EQ(printed(u"@if( a>1 ;field b:=\"\\\\\";[cn])"), u"@If(a > 1; FIELD b := \"\\\\\"; [CN])");
  EXPECT_EQ(printed(u"a<>b=!c><d *<> e"), u"a != b != c != d *!= e");
}

TEST_F(Printing, PrintsParenthesesWhereTheyAreNeededOnly) {
  EXPECT_EQ(printed(u"(((1)))"), u"1");
  EXPECT_EQ(printed(u"(1*2)+(3:4)"), u"1 * 2 + 3 : 4");
  EXPECT_EQ(printed(u"(1+2)*(3+4)"), u"(1 + 2) * (3 + 4)");
  EXPECT_EQ(printed(u"(1+2)+3"), u"(1 + 2) + 3");
  EXPECT_EQ(printed(u"-(1:2)"), u"-1 : 2");
  EXPECT_EQ(printed(u"(-1):2"), u"(-1) : 2");
  EXPECT_EQ(printed(u"(-1)*2"), u"-1 * 2");
  EXPECT_EQ(printed(u"-(1*2)"), u"-(1 * 2)");
  EXPECT_EQ(printed(u"!(a=b)"), u"!a = b");
  EXPECT_EQ(printed(u"(!a)=b"), u"(!a) = b");
  EXPECT_EQ(printed(u"(1 + !2) = 3"), u"1 + (!2) = 3");
  EXPECT_EQ(printed(u"(1 + !2) & 3"), u"1 + !2 & 3");
  EXPECT_EQ(printed(u"(-!2) = 3"), u"-(!2) = 3");
  EXPECT_EQ(printed(u"a * (-3)"), u"a * -3");
  EXPECT_EQ(printed(u"(1:2)[1]"), u"(1 : 2)[1]");
  EXPECT_EQ(printed(u"(\"a\")[1]"), u"(\"a\")[1]");
  EXPECT_EQ(printed(u"(a)[1]"), u"a[1]");
  EXPECT_EQ(printed(u"(x := 1) + 2"), u"(x := 1) + 2");
  EXPECT_EQ(printed(u"SELECT (x := 1)"), u"SELECT (x := 1)");
  EXPECT_EQ(printed(u"@Do((x := 1); y := (z := 2))"), u"@Do(x := 1; y := z := 2)");
}

TEST_F(Printing, PrintedFormulasReadBackAsTheSameTree) {
  const QStringView formulas[] = {
      u"1",
      u"0.1",
      u".1E-7",
      u"1E300 + 123456789012345678",
      u"4.9E-324 : 1.7976931348623157E308",
      u"\"a\"",
      u"{he said \"no\\\\\" \\} and left}",
      u"\"line\nbreak\"",
      u"[CN] : [O-1] : [File_Save]",
      u"[03/15/2024]",
      u"[10:30]",
      u"[10:30:45 PM]",
      u"[12:00 AM]",
      u"[07/15/2024 10:30:45]",
      u"[01/02/1950]",
      u"[11:59 12/31/2049]",
      u"[03/15/2024 17:30 GMT]",
      u"[03/01/2024 - 03/05/2024]",
      u"[03/01/2024 10:00 - 03/05/2024 11:30]",
      u"[10:00 - 11:30]",
      u"[Today] + 1",
      u"a : -b : c",
      u"(-a) : b",
      u"--a - -b",
      u"3*-2 + 3 * -2",
      u"-(a + b) * !(c & d)",
      u"a = !b = c & !(d = e) | f",
      u"(a = !b) = c",
      u"((a | b) & c) | (d & e)",
      u"a - (b - c) - d",
      u"a ** b */ c *+ d *- e *= f *!= g *< h *> i *<= j *>= k",
      u"(a *+ b) ** (c : d)",
      u"x := y := 1; x",
      u"x := (y := 1) : 2; FIELD z := x; DEFAULT w := z; ENVIRONMENT v := \"q\"; w",
      u"REM \"first\"; REM {\"}; SELECT Form = \"Memo\" & !@IsResponseDoc",
      u"SELECT (x := 1) & y",
      u"@If(a = 1; \"one\"; a = 2; FIELD b := \"two\"; @Do(c := 1; c + 1))",
      u"@Trim(Names)[2][1] + (a : b)[@Elements(a)]",
      u"@Transform(Names; \"x\"; @If(x = \"\"; @Nothing; x + \"!\"))",
      u"@Name([CN]; @UserName) + @Left(Subject; \" \")",
      u"@IsAvailable(größe) & $ref.1 = _x",
      u"(-@Pi : 2)[1] : (!a)[2]",
      u"@Pi[1]",
  };
  for (const QStringView source : formulas) {
    const Parsed first = read(source);
    ASSERT_EQ(first.error.reason, 0) << source.toString().toStdString() << " at " << first.error.offset;
    const QString text = print(first.tree, environment_);
    const Parsed second = read(text);
    EXPECT_EQ(second.error.reason, 0) << text.toStdString();
    EXPECT_TRUE(sameTree(first.tree, second.tree)) << text.toStdString();
    EXPECT_EQ(print(second.tree, environment_), text);
  }
}

TEST_F(Printing, PrintedTimesReadBackInEveryRegion) {
  for (const auto order :
       {Region::DateOrder::DayMonthYear, Region::DateOrder::YearMonthDay, Region::DateOrder::MonthDayYear}) {
    for (const bool twelve : {false, true}) {
      for (const QChar separator : {u'/', u'-', u'.'}) {
        environment_.changeable = {};
        const Parsed read1 = read(u"[11/12/2013] : [10:30 PM] : [11/12/1950 00:05:06]");
        environment_.changeable.dateOrder = order;
        environment_.changeable.twelveHours = twelve;
        environment_.changeable.dateSeparator = separator;
        const QString text = print(read1.tree, environment_);
        EXPECT_TRUE(sameTree(read1.tree, read(text).tree)) << text.toStdString();
      }
    }
  }
}

TEST_F(Printing, TreesDifferInEverythingThatCounts) {
  const QStringView formulas[] = {
      u"1",
      u"2",
      u"\"1\"",
      u"a",
      u"b",
      u"a + b",
      u"a - b",
      u"b + a",
      u"a + b + c",
      u"(a + b) + c",
      u"a + (b + c)",
      u"-a",
      u"+a",
      u"!a",
      u"a[1]",
      u"a[2]",
      u"@Trim(a)",
      u"@UpperCase(a)",
      u"SELECT a",
      u"a; a",
      u"x := a; a",
      u"y := a; a",
      u"FIELD x := a; a",
      u"DEFAULT x := a; a",
      u"REM \"a\"; a",
      u"REM \"b\"; a",
      u"[A]",
      u"[B]",
      u"@If(a)",
      u"@If(a; b; c)",
  };
  for (const QStringView left : formulas)
    for (const QStringView right : formulas)
      EXPECT_EQ(sameTree(read(left).tree, read(right).tree), left == right)
          << left.toString().toStdString() << " and " << right.toString().toStdString();
}

TEST_F(Printing, PlacesInTheSourceDoNotMakeTreesDiffer) {
  EXPECT_TRUE(sameTree(read(u"a+b").tree, read(u"  (a)\n + b ;").tree));
}

}  // namespace
}  // namespace lens::formula
