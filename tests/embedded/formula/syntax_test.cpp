// How formulas are read into trees.
#include "embedded/formula/syntax_fixture.h"

namespace lens::formula {
namespace {

TEST_F(Syntax, OperatorsOfOneLevelMakeOneFlatChain) {
  EXPECT_EQ(shapeOf(u"1 : 2 : 3 : 4"),
            QStringLiteral("{%1,%1,%1: 1 2 3 4}").arg(number(Operator::Concatenate)));
  EXPECT_EQ(shapeOf(u"1 + 2 - 3"),
            QStringLiteral("{%1,%2: 1 2 3}").arg(number(Operator::Add), number(Operator::Subtract)));
  EXPECT_EQ(shapeOf(u"a | b & c"),
            QStringLiteral("{%1,%2: a b c}").arg(number(Operator::Or), number(Operator::And)));
}

TEST_F(Syntax, ParenthesesKeepAChainOfItsOwn) {
  const QString join = number(Operator::Concatenate);
  EXPECT_EQ(shapeOf(u"(1 : 2) : 3"), QStringLiteral("{%1: {%1: 1 2} 3}").arg(join));
  EXPECT_EQ(shapeOf(u"1 : (2 : 3)"), QStringLiteral("{%1: 1 {%1: 2 3}}").arg(join));
  EXPECT_EQ(shapeOf(u"((1)) : ((2))"), QStringLiteral("{%1: 1 2}").arg(join));
}

TEST_F(Syntax, TighterOperatorsStandInsideLooserOnes) {
  EXPECT_EQ(shapeOf(u"a & 1 = 2 + 3 * 4 : 5"),
            QStringLiteral("{%1: a {%2: 1 {%3: 2 {%4: 3 {%5: 4 5}}}}}")
                .arg(number(Operator::And), number(Operator::Equal), number(Operator::Add),
                     number(Operator::Multiply), number(Operator::Concatenate)));
  EXPECT_EQ(shapeOf(u"5 : 4 * 3 + 2 = 1 & a"),
            QStringLiteral("{%1: {%2: {%3: {%4: {%5: 5 4} 3} 2} 1} a}")
                .arg(number(Operator::And), number(Operator::Equal), number(Operator::Add),
                     number(Operator::Multiply), number(Operator::Concatenate)));
}

TEST_F(Syntax, SignsCoverTheRestOfAList) {
  const QString minus = number(Operator::Minus), join = number(Operator::Concatenate);
  EXPECT_EQ(shapeOf(u"-1 : 2"), QStringLiteral("<%1: {%2: 1 2}>").arg(minus, join));
  EXPECT_EQ(shapeOf(u"1 : -2 : 3"), QStringLiteral("{%2: 1 <%1: {%2: 2 3}>}").arg(minus, join));
  EXPECT_EQ(shapeOf(u"-a * b"), QStringLiteral("{%2: <%1: a> b}").arg(minus, number(Operator::Multiply)));
  EXPECT_EQ(shapeOf(u"+-a"), QStringLiteral("<%1: <%2: a>>").arg(number(Operator::Plus), minus));
}

TEST_F(Syntax, NegationsCoverAComparison) {
  const QString no = number(Operator::Not), equal = number(Operator::Equal);
  EXPECT_EQ(shapeOf(u"!a = b"), QStringLiteral("<%1: {%2: a b}>").arg(no, equal));
  EXPECT_EQ(shapeOf(u"!a & b"), QStringLiteral("{%2: <%1: a> b}").arg(no, number(Operator::And)));
  EXPECT_EQ(shapeOf(u"a = !b = c"), QStringLiteral("{%2: a <%1: {%2: b c}>}").arg(no, equal));
}

TEST_F(Syntax, EveryWritingOfAnOperatorIsRead) {
  const std::pair<QStringView, Operator> writings[] = {
      {u":", Operator::Concatenate},
      {u"*", Operator::Multiply},
      {u"/", Operator::Divide},
      {u"**", Operator::PermutedMultiply},
      {u"*/", Operator::PermutedDivide},
      {u"+", Operator::Add},
      {u"-", Operator::Subtract},
      {u"*+", Operator::PermutedAdd},
      {u"*-", Operator::PermutedSubtract},
      {u"=", Operator::Equal},
      {u"<>", Operator::NotEqual},
      {u"!=", Operator::NotEqual},
      {u"=!", Operator::NotEqual},
      {u"><", Operator::NotEqual},
      {u"<", Operator::Less},
      {u">", Operator::Greater},
      {u"<=", Operator::LessEqual},
      {u">=", Operator::GreaterEqual},
      {u"*=", Operator::PermutedEqual},
      {u"*<>", Operator::PermutedNotEqual},
      {u"*!=", Operator::PermutedNotEqual},
      {u"*<", Operator::PermutedLess},
      {u"*>", Operator::PermutedGreater},
      {u"*<=", Operator::PermutedLessEqual},
      {u"*>=", Operator::PermutedGreaterEqual},
      {u"&", Operator::And},
      {u"|", Operator::Or},
  };
  for (const auto& [sign, op] : writings)
    EXPECT_EQ(shapeOf(u'a' + sign.toString() + u'b'), QStringLiteral("{%1: a b}").arg(number(op)))
        << sign.toString().toStdString();
}

TEST_F(Syntax, AssignmentsKeepTheirModifierAndTheirNameAsWritten) {
  EXPECT_EQ(shapeOf(u"Foo := 1; x"), u"Foo#0(1); x");
  EXPECT_EQ(shapeOf(u"field Foo := 1; x"), u"Foo#1(1); x");
  EXPECT_EQ(shapeOf(u"Default foo := 1; x"), u"foo#2(1); x");
  EXPECT_EQ(shapeOf(u"ENVIRONMENT FOO := \"1\"; x"), u"FOO#3('1'); x");
  EXPECT_EQ(shapeOf(u"a := b := 1; x"), u"a#0(b#0(1)); x");
  EXPECT_EQ(shapeOf(u"@If(1; FIELD a := 2; b := 3)"), u"@If(1 a#1(2) b#0(3))");
}

TEST_F(Syntax, SubscriptsFollowWhatHasElements) {
  EXPECT_EQ(shapeOf(u"a[1]"), u"sub(a 1)");
  EXPECT_EQ(shapeOf(u"a [b[2]] [3]"), u"sub(sub(a sub(b 2)) 3)");
  EXPECT_EQ(shapeOf(u"(a)[1]"), u"sub(a 1)");
  EXPECT_EQ(shapeOf(u"@Trim(a)[1]"), u"sub(@Trim(a) 1)");
  EXPECT_EQ(shapeOf(u"-a[1]"), QStringLiteral("<%1: sub(a 1)>").arg(number(Operator::Minus)));
  EXPECT_EQ(shapeOf(u"a[[CN]]"), u"sub(a [CN])");
}

TEST_F(Syntax, WordsForDaysAreAskedForWhenTheFormulaRuns) {
  EXPECT_EQ(shapeOf(u"[Today] - [ yesterday ]"),
            QStringLiteral("{%1: @Today() @Yesterday()}").arg(number(Operator::Subtract)));
}

TEST_F(Syntax, TimeConstantsFollowTheRegion) {
  const Parsed american = read(u"[01/02/2003]");
  environment_.changeable.dateOrder = Region::DateOrder::DayMonthYear;
  const Parsed french = read(u"[02/01/2003]");
  ASSERT_EQ(american.error.reason, 0);
  EXPECT_TRUE(sameTree(american.tree, french.tree));
  EXPECT_FALSE(sameTree(american.tree, read(u"[01/02/2003]").tree));
}

TEST_F(Syntax, NodesKnowTheirFirstToken) {
  const Tree whole = read(u"y; x := 1 +\n (a : bcd) * @Trim(e)[2]").tree;
  const Node& assignment = whole.nodes[size_t(whole.statements[1].root)];
  EXPECT_EQ(assignment.offset, 3);
  EXPECT_EQ(assignment.length, 1);
  const Node& sum = whole.nodes[size_t(assignment.children[0])];
  EXPECT_EQ(sum.offset, 8);
  const Node& product = whole.nodes[size_t(sum.children[1])];
  EXPECT_EQ(product.offset, 13);
  const Node& subscript = whole.nodes[size_t(product.children[1])];
  EXPECT_EQ(subscript.offset, 25);
  EXPECT_EQ(subscript.length, 5);
}

TEST_F(Syntax, RemarksKeepTheirText) {
  const Tree tree = read(u"REM {say \"hi\" \\} now}; 1").tree;
  ASSERT_EQ(tree.statements.size(), 2u);
  EXPECT_EQ(tree.statements[0].kind, Statement::Kind::Remark);
  EXPECT_EQ(tree.statements[0].remark, u"say \"hi\" } now");
  EXPECT_EQ(tree.statements[0].root, -1);
}

// --- Limits --------------------------------------------------------------------------------------------

TEST_F(Syntax, NestingIsBounded) {
  const auto nested = [](QStringView open, int times, QStringView close) {
    return open.toString().repeated(times) + u'1' + close.toString().repeated(times);
  };
  struct Way {
    QStringView open, close;
    int sign;  // place in the opening where the depth grows
    int length;
  };
  const Way ways[] = {{u"(", u")", 0, 1},      {u"-", u"", 0, 1},         {u"!", u"", 0, 1},
                      {u"@Trim(", u")", 0, 5}, {u"@If(1;0;", u")", 0, 3}, {u"a[", u"]", 1, 1},
                      {u"a:=", u"", 1, 2},     {u"1+2*3:(", u")", 6, 1}};
  for (const Way& way : ways) {
    const QString most = nested(way.open, kMaxDepth, way.close) + QStringLiteral(";1");
    EXPECT_EQ(read(most).error.reason, 0) << most.toStdString();
    const CompileError error = read(nested(way.open, kMaxDepth + 1, way.close) + QStringLiteral(";1")).error;
    EXPECT_EQ(error.reason, fault::TooDeep) << way.open.toString().toStdString();
    EXPECT_EQ(error.offset, kMaxDepth * way.open.size() + way.sign);
    EXPECT_EQ(error.length, way.length);
  }
}

TEST_F(Syntax, ChoicesAndLoopsHaveAMostOfArguments) {
  const auto reason = [this](const QString& name, int arguments) {
    return read(name + u'(' + QStringLiteral("1;").repeated(arguments - 1) + QStringLiteral("1)"))
        .error.reason;
  };
  EXPECT_EQ(reason(QStringLiteral("@If"), 199), 0) << "99 conditions";
  EXPECT_EQ(reason(QStringLiteral("@If"), 201), fault::TooManyArguments);
  for (const QString& loop : {QStringLiteral("@While"), QStringLiteral("@DoWhile"), QStringLiteral("@For")}) {
    EXPECT_EQ(reason(loop, 255), 0) << loop.toStdString();
    EXPECT_EQ(reason(loop, 256), fault::TooManyArguments) << loop.toStdString();
  }
  EXPECT_EQ(reason(QStringLiteral("@Do"), 1000), 0);
  EXPECT_EQ(reason(QStringLiteral("@Sum"), 1000), 0);
}

TEST_F(Syntax, DepthIsGivenBackBehindEachExpression) {
  EXPECT_EQ(read(QStringLiteral("(((1)));").repeated(200)).error.reason, 0);
  EXPECT_EQ(read(QStringLiteral("-a[1]+(2)*@Trim(-3)+").repeated(300) + u'1').error.reason, 0);
}

TEST_F(Syntax, HundredThousandOpenParenthesesAreRefusedAtTheFirstTooDeep) {
  const CompileError error = read(QString(100000, u'(')).error;
  EXPECT_EQ(error.reason, fault::TooDeep);
  EXPECT_EQ(error.offset, kMaxDepth);
}

TEST_F(Syntax, AChainOfThousandsOfTextsIsFlat) {
  const QString source = QStringLiteral("\"abcdefg\":").repeated(6000) + QStringLiteral("\"z\"");
  ASSERT_GE(source.size(), 60000);
  const Parsed parsed = read(source);
  ASSERT_EQ(parsed.error.reason, 0);
  const Node& root = parsed.tree.nodes[size_t(parsed.tree.statements[0].root)];
  EXPECT_EQ(root.kind, Node::Kind::Chain);
  EXPECT_EQ(root.children.size(), 6001u);
  EXPECT_EQ(root.operators.size(), 6000u);
  EXPECT_EQ(parsed.tree.nodes.size(), 6002u);
}

TEST_F(Syntax, NamesHave255CharactersAtMost) {
  const QString longest(255, u'n');
  EXPECT_EQ(shapeOf(longest), longest);
  const CompileError error = read(QStringLiteral("1 +\n") + longest + QStringLiteral("n * 2")).error;
  EXPECT_EQ(error.reason, fault::NameTooLong);
  EXPECT_EQ(error.line, 1);
  EXPECT_EQ(error.column, 0);
  EXPECT_EQ(error.offset, 4);
  EXPECT_EQ(error.length, 256);
}

TEST_F(Syntax, TextConstantsHave65535CharactersAtMost) {
  const QString longest(65535, u't');
  EXPECT_EQ(read(u'"' + longest + u'"').error.reason, 0);
  const CompileError error = read(QStringLiteral("1; \"") + longest + QStringLiteral("t\"")).error;
  EXPECT_EQ(error.reason, fault::ConstantTooLong);
  EXPECT_EQ(error.offset, 3);
  EXPECT_EQ(error.length, 65538);
}

TEST_F(Syntax, EscapesDoNotCountInTheLengthOfATextConstant) {
  EXPECT_EQ(read(u'"' + QStringLiteral("\\\"").repeated(65535) + u'"').error.reason, 0);
}

// --- Mistakes ------------------------------------------------------------------------------------------

TEST_F(Syntax, NothingButBlanksIsNoFormula) {
  for (const QStringView source : {u"", u" ", u" \t\r\n "}) {
    const CompileError error = read(source).error;
    EXPECT_EQ(error.reason, fault::NoFormula);
    EXPECT_EQ(error.offset, 0);
    EXPECT_EQ(error.length, 0);
  }
}

TEST_F(Syntax, BlanksAtTheEndCountBeforeTheEnd) {
  const CompileError error = read(u"1 +  \n ").error;
  EXPECT_EQ(error.reason, fault::Incomplete);
  EXPECT_EQ(error.offset, 7);
  EXPECT_EQ(error.line, 1);
  EXPECT_EQ(error.column, 1);
}

TEST_F(Syntax, EveryKindOfLineBreakEndsOneLine) {
  for (const QStringView source : {u"1;\n2;\n3 ?", u"1;\r2;\r3 ?"}) {
    const CompileError error = read(source).error;
    EXPECT_EQ(error.line, 2);
    EXPECT_EQ(error.column, 2);
    EXPECT_EQ(error.offset, 8);
  }
  const CompileError both = read(u"1;\r\n2;\r\n3 ?").error;
  EXPECT_EQ(both.line, 2);
  EXPECT_EQ(both.column, 2);
  EXPECT_EQ(both.offset, 10);
  const CompileError mixed = read(u"1;\n\r2 ?").error;
  EXPECT_EQ(mixed.line, 2);
  EXPECT_EQ(mixed.column, 2);
}

TEST_F(Syntax, FindLineBearsAPlaceBehindTheSource) {
  CompileError error;
  error.offset = 100;
  findLine(u"a\nbc", error);
  EXPECT_EQ(error.line, 1);
  EXPECT_EQ(error.column, 2);
}

TEST_F(Syntax, HalfACharacterIsNoName) {
  const char16_t half[] = {u'1', u'+', 0xD83D, u'2'};
  const CompileError error = read(QStringView(half, 4)).error;
  EXPECT_EQ(error.reason, fault::InvalidOperator);
  EXPECT_EQ(error.offset, 2);
  EXPECT_EQ(error.length, 1);
}

// A name may have been read in the wrong character set: its letters are then any signs at all.
TEST_F(Syntax, AnySignBeyondAsciiMayStandInAName) {
  EXPECT_EQ(shapeOf(u"Gr\u00F7\u00B3e"), QStringView(u"Gr\u00F7\u00B3e"));
  EXPECT_EQ(read(u"a\u00A0b").error.reason, fault::InvalidOperator) << "a fixed space is none of them";
}

TEST_F(Syntax, LettersOutsideTheBasicPlaneMakeNames) {
  EXPECT_EQ(shapeOf(u"\U00020000x"), QStringView(u"\U00020000x"));
}

TEST_F(Syntax, ZeroCharactersAreRefused) {
  const char16_t source[] = {u'1', u';', 0, u'2'};
  const CompileError error = read(QStringView(source, 4)).error;
  EXPECT_EQ(error.reason, fault::InvalidOperator);
  EXPECT_EQ(error.offset, 2);
}

// Whatever comes in, the answer is a tree that can be written back or a mistake inside the source.
TEST_F(Syntax, NoMixtureOfTokensGetsOutOfHand) {
  const QStringView pieces[] = {u"1",    u".5",     u"\"a\"",    u"{b}",   u"[CN]",  u"[Today]", u"[10:30]",
                                u"x",    u"@Pi",    u"@Trim(",   u"@If(",  u"@Left", u"(",       u")",
                                u"[",    u"]",      u";",        u":=",    u":",     u"+",       u"-",
                                u"*",    u"*-",     u"=",        u"!",     u"&",     u"|",       u"SELECT ",
                                u"REM ", u"FIELD ", u"DEFAULT ", u"\"",    u"{",     u"\\",      u"\n",
                                u"@",    u"?",      u" ",        u"y := ", u"<>"};
  quint32 state = 20240315;
  const auto next = [&state](quint32 below) {
    state = state * 1664525 + 1013904223;
    return (state >> 8) % below;
  };
  int read1 = 0;
  for (int round = 0; round < 20000; ++round) {
    QString source;
    for (quint32 count = 1 + next(9); count > 0; --count) source += pieces[next(std::size(pieces))];
    const Parsed parsed = read(source);
    if (parsed.error.reason) {
      ASSERT_GE(parsed.error.offset, 0);
      ASSERT_LE(parsed.error.offset + parsed.error.length, source.size()) << source.toStdString();
      ASSERT_FALSE(faultText(parsed.error.reason).isEmpty());
      ASSERT_TRUE(parsed.tree.nodes.empty());
      continue;
    }
    ++read1;
    const QString text = print(parsed.tree, environment_);
    ASSERT_TRUE(sameTree(parsed.tree, read(text).tree)) << source.toStdString() << "\n" << text.toStdString();
  }
  EXPECT_GT(read1, 500);
}

}  // namespace
}  // namespace lens::formula
