#include "inspector/database_flags.h"

#include "notes/literals.h"

namespace lens {
namespace {

struct Line {
  const char16_t* text;
  bool blankLineAfter = false;
};

// A line that explains a flag begins with the flag and " = ". The order decides which line a flag finds.
constexpr Line kLegend[] = {
    {u"The content below details the majority of Database Properties that are recorded in the $Flags "
     u"item in the icon design element. Note that not all database property settings are recorded in "
     u"the $Flags item.",
     true},
    {u"Basics tab"},
    {u"J = Use JavaScript when generating pages."},
    {u"X = Require SSL Connection."},
    {u"8 = Don't allow a URL to open."},
    {u"f = (disables) Allows use of Stored Forms in this database. Remove 'f' to enable the setting."},
    {u"i = Display images after loading. Note: Makes database inaccessible to Notes 4.6 and earlier."},
    {u"5 = Allow document locking."},
    {u"g = Type: Library."},
    {u"j = Type: Personal Journal."},
    {u"b = Type: Domino Directory."},
    {u"B = Type: Directory Catalog."},
    {u"m = Type: Multi DB Search."},
    {u"u = Type: Portfolio."},
    {u"A = Type: Mailbox."},
    {u"r = Type: MailFile.", true},
    {u"Advanced tab"},
    {u"2 = Optimize document table bitmap."},
    {u"Z = Don't maintain unread marks."},
    {u"Q = Replicate Unread Marks: Clustered Servers Only. Note: $FlagsNoRefresh should also be set to "
     u"include Q and remove 'v' if present."},
    {u"QU = Replicate Unread Marks: All Servers. Note: $FlagsNoRefresh should also be set to include "
     u"QU and remove 'v' if present."},
    {u"(neither Q or QU) = Replicate Unread Marks: Never. Note: $FlagsNoRefresh should also be set to "
     u"include 'v' and remove Q or U if present."},
    {u"3 = Maintain LastAccessed property."},
    {u"1 = Don't support specialized response hierarchy."},
    {u"Z = Use LZ1 compression for attachments."},
    {u"7 = Allow more fields in database (expanded UNK Table)."},
    {u"4 = Allow soft deletes.", true},
    {u"    The following Advanced tab settings were introduced in Notes 8.0:", true},
    {u"q = Compress database design."},
    {u"N = Compress document data."},
    {u"H = Support response thread history."},
    {u"-C = Copy-style compaction."},
    {u"-N = Disable 'Compress database design' database property. Use -C with -N to uncompress current "
     u"database design documents."},
    {u"-n = Enable 'Compress database design' database property. Use -C with -n to compress current "
     u"database design documents."},
    {u"-V = Disable 'Compress document data' database property. Use -C with -V to uncompress current "
     u"document data."},
    {u"-v = Enable 'Compress document data' database property. Use -C with -v to compress current "
     u"document data.",
     true},
    {u"Launch tab"},
    {u"n = disables Show 'About Database' document when database is opened for first time. Note: Must "
     u"remove 'c' if present from $Flags."},
    {u"C = Show 'About Database' document if modified AND Show 'About database' document when database "
     u"is opened for first time. Note: Must remove 'n' if present from $Flags."},
    {u"F = When opened in Notes: Open designated Frameset. Note: Requires $DefaultFrameset be set to "
     u"desired frameset."},
    {u"l = When opened in Notes: Launch designated navigator. Note: Requires $DefaultNavigator be set "
     u"to desired navigator."},
    {u"ls = When opened in Notes: Launch designated navigator in its own window. Note: Requires "
     u"$DefaultNavigator be set to desired navigator."},
    {u"p = When opened in Notes: Open 'About Database' document."},
    {u"a = When opened in Notes: Launch first attachment in 'About database'."},
    {u"d = When opened in Notes: Launch first doclink 'About database'. Note: The options 'a', 'd', "
     u"'p' above can also be set with K to additionally enable 'Restore as lasted viewed by user'."},
    {u"P = When opened in a browser: Open 'About database' document."},
    {u"S = When opened in a browser: Open designated frameset. Note: Requires $DefaultWebFrameset be "
     u"set to desired frameset."},
    {u"E = When opened in a browser: Open designated page. Note: Requires $DefaultWebLaunchPage be set "
     u"to desired page."},
    {u"L = When opened in a browser: Open designated navigator in its own window. Note: Requires "
     u"$DefaultWebNavigator be set to desired navigator."},
    {u"D = When opened in a browser: Launch first doclink 'About database'."},
    {u"T = When opened in a browser: Open designated docLink. Note: Requires setting $LaunchWebDoclink "
     u"field to the doclink value. The field must be of the DocLink type Reference List. This field "
     u"value should be created manually via the user interface."},
    {u"V = When opened in a browser: Launch first document in view. Note: Requires setting "
     u"$LaunchWebViewName to the desired view name."},
    {u"w = Preview pane default: Bottom right."},
    {u"x = Preview pane default: Right."},
    {u"Note: When neither 'w' or 'x' is specified, the Preview pane default is Bottom."},
    {u"y = Maximize document preview on database open. Note: May be used alone or combined enabled "
     u"with w or x.",
     true},
    {u"Design tab"},
    {u"6 = Allow design locking."},
    {u"h = Mark parent document on reply or forward."},
    {u"G = Copy profile documents with design. Note: Database must be specified as a template and have "
     u"an .ntf extension."},
    {u"M = Multilingual database. Note: Requires additional settings: Requires $DefaultLanguage be set "
     u"to default language/default region value. Optional: $DefaultCollation to set default sort "
     u"order. Optional: $CollationType set to '@UCA' to additionally enable Unicode standard sorting."},
};

const QString kMeans = u" = "_s;

struct Key {
  QString text;
  qsizetype letters;  // of the flags that it is made of
};

Key keyAt(QStringView flags, qsizetype at) {
  // The length of a minus key grows with its place.
  if (flags[at] == u'-') return {flags.mid(at, at + 2) + kMeans, 2};
  if (flags.mid(at, 2) == u"QU") return {u"QU" + kMeans, 2};
  return {flags[at] + kMeans, 1};
}

// -1 when there is none.
qsizetype placeOf(const QString& key, QStringView legend) {
  const qsizetype place = legend.indexOf(key);
  const bool tailOfMinusLine = place > 0 && legend[place - 1] == u'-' && !key.contains(u'-');
  return tailOfMinusLine ? legend.indexOf(key, legend.indexOf(u'\r', place) + 1) : place;
}

}  // namespace

QString databaseLegend() {
  QString legend;
  for (const Line& line : kLegend) {
    legend += QStringView(line.text);
    legend += line.blankLineAfter ? QStringView(u"\r\r") : QStringView(u"\r");
  }
  return legend;
}

QVector<Stretch> flagStretches(QStringView flags, QStringView legend) {
  QVector<Stretch> stretches;
  for (qsizetype at = 0; at < flags.size();) {
    const Key key = keyAt(flags, at);
    at += key.letters;
    const qsizetype place = placeOf(key.text, legend);
    if (place >= 0) stretches.push_back({place, legend.indexOf(u'\r', place) - place});
  }
  return stretches;
}

}  // namespace lens
