#include "host/profile_file.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>
#include <optional>
#include <ostream>
#include <vector>

#include "notes/runtime_error.h"

namespace lens {
namespace {

QByteArray valueIn(QByteArrayView file, QByteArrayView key, qsizetype size = 255) {
  return profileValue(file, "Prog", key, size);
}
QByteArray afterSetting(QByteArray file, QByteArrayView key, QByteArrayView value) {
  setProfileValue(file, "Prog", key, value);
  return file;
}
QByteArray afterDeleting(QByteArray file, QByteArrayView section) {
  deleteProfileSection(file, section);
  return file;
}

// --- Lines ---------------------------------------------------------------------------------------------

std::vector<QByteArray> linesOf(QByteArrayView file) {
  std::vector<QByteArray> texts;
  for (TextLines lines(file); !lines.atEnd();) texts.push_back(lines.next().toByteArray());
  return texts;
}

TEST(TextLinesOfAFile, EndAtAnyLineEnd) {
  EXPECT_EQ(linesOf("a\r\nb\rc\nd"), std::vector<QByteArray>({"a", "b", "c", "d"}));
  EXPECT_EQ(linesOf("a\n\r\n\r\r"), std::vector<QByteArray>({"a", "", "", ""}));
  EXPECT_EQ(linesOf("\r\n"), std::vector<QByteArray>({""}));
  EXPECT_EQ(linesOf(""), std::vector<QByteArray>());
}

TEST(TextLinesOfAFile, RaiseBehindTheLast) {
  TextLines lines("a\r\n");
  EXPECT_EQ(lines.next(), "a");
  EXPECT_TRUE(lines.atEnd());
  for (int turn = 0; turn < 2; ++turn) try {
      lines.next();
      FAIL();
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), err::InputPastEnd);
    }
}

// --- Reading -------------------------------------------------------------------------------------------

TEST(ProfileValue, IsFoundWithoutRegardToCase) {
  const QByteArray file = "[other]\r\nSource=no\r\n[PROG]\r\n;x\r\nsOURCE=Hub\r\nSource=later\r\n";
  EXPECT_EQ(valueIn(file, "Source"), "Hub");
  EXPECT_EQ(valueIn(file, "Sourc"), "");
  EXPECT_EQ(valueIn("[pr\xF6g]\nk=v\n", "k"), "");
  EXPECT_EQ(profileValue("[PR\xD6G]\nk=v\n", "pr\xF6g", "K", 255), "v") << "letters of the code page";
}

TEST(ProfileValue, IsThatOfTheFirstSectionOfTheName) {
  EXPECT_EQ(valueIn("[Prog]\na=1\n[Prog]\nb=2\na=3\n", "b"), "");
  EXPECT_EQ(valueIn("[Prog]\na=1\n[Prog]\nb=2\na=3\n", "a"), "1");
}

TEST(ProfileValue, IsThereOnlyBehindAHeader) {
  const struct {
    const char* header;
    bool counts;
  } table[] = {{"[Prog]", true},   {" \t[Prog] \t", true}, {"[Prog] ; remark", true},
               {"[Prog", false},   {"Prog]", false},       {"x[Prog]", false},
               {"[Prog]]", false}, {"[ Prog]", false},     {"\xEF\xBB\xBF[Prog]", false},
               {"", false}};
  for (const auto& row : table)
    EXPECT_EQ(valueIn(QByteArray(row.header) + "\r\nk=v\r\n", "k"), row.counts ? "v" : "") << row.header;
  EXPECT_EQ(profileValue("[a]b]\nk=v", "a]b", "k", 255), "v") << "to the last bracket";
}

TEST(ProfileValue, LosesOuterBlanksAndOnePairOfQuotes) {
  const struct {
    const char *written, *read;
  } table[] = {{" \tx y \t", "x y"}, {"\" x \"", " x "},     {"'x'", "x"},
               {"\"x'", "\"x'"},     {"\"\"x\"\"", "\"x\""}, {"\"", "\""},
               {"\"\"", ""},         {"a;b=c", "a;b=c"},     {"", ""},
               {";", ";"},           {"\"a\" b", "\"a\" b"}};
  for (const auto& row : table)
    EXPECT_EQ(valueIn("[Prog]\n k\t=" + QByteArray(row.written) + "\n", "k"), row.read) << row.written;
}

TEST(ProfileValue, IsCutToItsBuffer) {
  for (const int length : {0, 1, 253, 254, 255, 1000}) {
    const QByteArray file = "[Prog]\nk=" + QByteArray(length, 'x');
    EXPECT_EQ(valueIn(file, "k").size(), qMin(length, 254));
  }
  EXPECT_EQ(valueIn("[Prog]\nk=abc", "k", 1), "");
  EXPECT_EQ(valueIn("[Prog]\nk=abc", "k", 0), "");
}

TEST(ProfileValue, EndsAtANul) {
  EXPECT_EQ(valueIn(QByteArray("[Prog]\nk=a\0b\n", 13), "k"), "a");
}

// --- Writing -------------------------------------------------------------------------------------------

TEST(SetProfileValue, MakesTheSectionAtTheEnd) {
  EXPECT_EQ(afterSetting("", "k", "v"), "[Prog]\r\nk=v\r\n");
  EXPECT_EQ(afterSetting("x", "k", "v"), "x\r\n[Prog]\r\nk=v\r\n") << "an unended line gets its end";
  EXPECT_EQ(afterSetting("[a]\rb=c\r", "k", "v"), "[a]\rb=c\r[Prog]\r\nk=v\r\n");
}

TEST(SetProfileValue, ReplacesAKnownKeyWhereItStands) {
  EXPECT_EQ(afterSetting("[prog]\n;r\n K = old\nz=1\n\n[b]\nk=2", "k", "v"),
            "[prog]\n;r\nk=v\r\nz=1\n\n[b]\nk=2\r\n");
  EXPECT_EQ(afterSetting("[Prog]\rk=1\rk=2", "k", ""), "[Prog]\rk=\r\nk=2\r\n");
  EXPECT_EQ(afterSetting("[Prog]\nk\n", "k", "v"), "[Prog]\nk\nk=v\r\n") << "a bare line is no key";
}

TEST(SetProfileValue, PutsANewKeyBehindTheLastLineThatIsNotEmpty) {
  EXPECT_EQ(afterSetting("[Prog]\r\n\r\n[b]\r\n", "k", "v"), "[Prog]\r\nk=v\r\n\r\n[b]\r\n");
  EXPECT_EQ(afterSetting("[Prog]\r\na=1\r\n;r\r\n \t\r\n\r\n[b]\r\n", "k", "v"),
            "[Prog]\r\na=1\r\n;r\r\nk=v\r\n \t\r\n\r\n[b]\r\n");
  EXPECT_EQ(afterSetting("[Prog]", "k", "v"), "[Prog]\r\nk=v\r\n");
}

TEST(SetProfileValue, NeverForgesALine) {
  const QByteArray value("a\r\n[SourceDB]\nb\rc\0d", 19);
  EXPECT_EQ(afterSetting("", "k", value), "[Prog]\r\nk=a [SourceDB] b c d\r\n");
}

TEST(OneLine, HasABlankForEachLineEndAndNul) {
  EXPECT_EQ(asOneLine("a\r\nb\rc\nd\n\re"), "a b c d  e");
  EXPECT_EQ(asOneLine(QByteArray("\0x\r\n", 4)), " x ");
}

// --- Deleting ------------------------------------------------------------------------------------------

TEST(DeleteProfileSection, TakesEveryLineToTheNextHeader) {
  EXPECT_EQ(afterDeleting("[a]\r\nx=1\r\n[SOURCEDB] remark\r\nbare\r\n;c\r\n\r\n[no header\r\n[b]\r\ny",
                          "SourceDB"),
            "[a]\r\nx=1\r\n[b]\r\ny");
  EXPECT_EQ(afterDeleting("top\r\n[SourceDB]\r\nbare", "SourceDB"), "top\r\n");
}

TEST(DeleteProfileSection, TakesTheFirstOfItsNameOnly) {
  EXPECT_EQ(afterDeleting("[s]\n1\n[s]\n2\n", "S"), "[s]\n2\n");
}

TEST(DeleteProfileSection, LeavesAFileWithoutItAlone) {
  for (const QByteArray& file : {QByteArray(), QByteArray("s\r[s\ns]"), QByteArray("\xEF\xBB\xBF[s]\nx\n")})
    EXPECT_EQ(afterDeleting(file, "s"), file);
}

// --- Beside a model ------------------------------------------------------------------------------------

// The same rules over a list of lines, as one would tell them.
struct Model {
  struct Row {
    QByteArray text, end;
  };
  std::vector<Row> rows;

  explicit Model(const QByteArray& file) {
    Row row;
    bool open = false;
    for (qsizetype at = 0; at < file.size(); ++at) {
      const char c = file[at];
      if (c == '\r' || c == '\n') {
        row.end = c == '\r' && at + 1 < file.size() && file[at + 1] == '\n' ? "\r\n" : QByteArray(1, c);
        at += row.end.size() - 1;
        rows.push_back(row);
        row = {};
        open = false;
      } else {
        row.text += c;
        open = true;
      }
    }
    if (open) rows.push_back(row);
  }
  QByteArray bytes() const {
    QByteArray file;
    for (const Row& row : rows) file += row.text + row.end;
    return file;
  }
  static QByteArray bare(QByteArray text) {
    while (text.startsWith(' ') || text.startsWith('\t')) text.remove(0, 1);
    while (text.endsWith(' ') || text.endsWith('\t')) text.chop(1);
    return text;
  }
  static std::optional<QByteArray> headerOf(const QByteArray& text) {
    const QByteArray line = bare(text);
    if (!line.startsWith('[') || !line.contains(']')) return {};
    return line.mid(1, line.lastIndexOf(']') - 1).toLower();
  }
  // First and one behind the last row of the section, header included.
  std::optional<std::pair<size_t, size_t>> sectionAt(const QByteArray& name) const {
    for (size_t first = 0; first < rows.size(); ++first) {
      if (headerOf(rows[first].text) != name.toLower()) continue;
      size_t end = first + 1;
      while (end < rows.size() && !headerOf(rows[end].text)) ++end;
      return std::pair(first, end);
    }
    return {};
  }
  std::optional<size_t> keyAt(const QByteArray& section, const QByteArray& key) const {
    const auto place = sectionAt(section);
    for (size_t at = place ? place->first + 1 : 0; place && at < place->second; ++at) {
      const QByteArray& text = rows[at].text;
      if (text.contains('=') && bare(text.left(text.indexOf('='))).toLower() == key.toLower()) return at;
    }
    return {};
  }
  void erase(const QByteArray& section) {
    if (const auto place = sectionAt(section))
      rows.erase(rows.begin() + qptrdiff(place->first), rows.begin() + qptrdiff(place->second));
  }
  void set(const QByteArray& section, const QByteArray& key, const QByteArray& value) {
    if (!rows.empty() && rows.back().end.isEmpty()) rows.back().end = "\r\n";
    const Row row{key + '=' + value, "\r\n"};
    if (const auto at = keyAt(section, key)) {
      rows[*at] = row;
    } else if (const auto place = sectionAt(section)) {
      size_t behind = place->second;
      while (behind > place->first + 1 && bare(rows[behind - 1].text).isEmpty()) --behind;
      rows.insert(rows.begin() + qptrdiff(behind), row);
    } else {
      rows.push_back({'[' + section + ']', "\r\n"});
      rows.push_back(row);
    }
  }
  QByteArray value(const QByteArray& section, const QByteArray& key, qsizetype size) const {
    const auto at = keyAt(section, key);
    if (!at) return {};
    const QByteArray& text = rows[*at].text;
    QByteArray value = bare(text.mid(text.indexOf('=') + 1));
    for (const char quote : {'"', '\''})
      if (value.size() > 1 && value.front() == quote && value.back() == quote) {
        value = value.mid(1, value.size() - 2);
        break;
      }
    value = value.left(size - 1);
    return value.contains('\0') ? value.left(value.indexOf('\0')) : value;
  }
};

// Pieces of which files are made that have every odd thing.
QByteArray randomFile(QRandomGenerator& random, int pieces) {
  static const std::vector<QByteArray> words = {"[s]",
                                                "[S]",
                                                "[t]",
                                                "[",
                                                "]",
                                                "[]",
                                                "s",
                                                "k=",
                                                "K = ",
                                                "k",
                                                "=",
                                                "x",
                                                " ",
                                                "\t",
                                                "\r\n",
                                                "\r",
                                                "\n",
                                                "\r",
                                                "\n",
                                                ";",
                                                "\"x\"",
                                                "'",
                                                "[t",
                                                "t]k",
                                                "k=\"",
                                                "k=",
                                                "\x80",
                                                "\xEF\xBB\xBF",
                                                QByteArray(1, '\0')};
  QByteArray file;
  for (int piece = 0; piece < pieces; ++piece) file += words[random.bounded(quint32(words.size()))];
  return file;
}

TEST(ProfileFileBesideAModel, DoesTheSameWithAnyBytes) {
  QRandomGenerator random(4711);
  for (int turn = 0; turn < 10'000; ++turn) {
    const QByteArray file = randomFile(random, random.bounded(30));
    SCOPED_TRACE(file.toPercentEncoding().toStdString());
    const Model model(file);
    ASSERT_EQ(model.bytes(), file);
    for (const QByteArray& section : {QByteArray("s"), QByteArray("T")}) {
      ASSERT_EQ(profileValue(file, section, "k", 5), model.value(section, "k", 5));
      QByteArray ours = file;
      Model theirs = model;
      deleteProfileSection(ours, section);
      theirs.erase(section);
      ASSERT_EQ(ours, theirs.bytes());
      setProfileValue(ours, section, "k", "new");
      theirs.set(section, "k", "new");
      ASSERT_EQ(ours, theirs.bytes());
      ours = file;
      theirs = model;
      setProfileValue(ours, section, "k", "[s]");
      theirs.set(section, "k", "[s]");
      ASSERT_EQ(ours, theirs.bytes());
      ASSERT_EQ(profileValue(ours, section, "K", 255), "[s]") << "what was written is read";
    }
  }
}

TEST(ProfileFileBesideAModel, KeepsEveryByteOfOtherLines) {
  QByteArray all;
  for (int byte = 0; byte < 256; ++byte) all += char(byte);
  const QByteArray file = "[s]\r\nk=1\r\n[t]\r\n" + all;
  QByteArray ours = file;
  setProfileValue(ours, "s", "k", "2");
  EXPECT_EQ(ours, "[s]\r\nk=2\r\n[t]\r\n" + all + "\r\n");
  for (int byte = 0; byte < 256; ++byte) {
    QByteArray changed;
    setProfileValue(changed, "s", "k", 'a' + QByteArray(1, char(byte)) + 'b');
    const bool kept = byte != 0 && byte != '\r' && byte != '\n';
    EXPECT_EQ(profileValue(changed, "s", "k", 255), 'a' + QByteArray(1, kept ? char(byte) : ' ') + 'b')
        << byte;
  }
}

TEST(ProfileFile, OfTenMegabytesIsWorkedOver) {
  for (const QByteArray& line : {QByteArray("C:\\data\\mail\\one.nsf\r\n"), QByteArray("x"), QByteArray("\r"),
                                 QByteArray("[\n"), QByteArray(1, '\0')}) {
    QByteArray file =
        "[s]\r\n" + line.repeated(((line.size() > 2 ? 10 : 1) << 20) / line.size()) + "\r\n[t]\r\nk=v\r\n";
    EXPECT_EQ(profileValue(file, "t", "k", 255), "v");
    setProfileValue(file, "s", "k", "w");
    EXPECT_EQ(profileValue(file, "s", "k", 255), "w");
    deleteProfileSection(file, "s");
    EXPECT_EQ(file, "[t]\r\nk=v\r\n");
  }
}

}  // namespace
}  // namespace lens
