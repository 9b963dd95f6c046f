// Every row of the table of functions makes sense, and no name is missing.

#include <gtest/gtest.h>

#include <QSet>

#include "embedded/formula/function.h"

namespace lens::formula {
namespace {

// The names of the language, by the families that users know.
constexpr const char* kNames =
    // Text
    "Abstract AbstractSimple Ascii Begins Char Compare Contains Ends HashPassword Implode Left LeftBack "
    "ValidateInternetAddress Right RightBack Length Like LowerCase UpperCase Matches Middle MiddleBack Name "
    "Narrow Wide NewLine "
    "Password PasswordQuality ProperCase Repeat Replace ReplaceSubstring Soundex Text TextToNumber ToNumber "
    "Trim URLEncode URLDecode VerifyPassword Word "
    // Lists
    "Count Elements Explode IsMember IsNotMember Keywords Member Nothing Select Sort Subset Transform Unique "
    // Numbers
    "Abs Sign ACos ASin ATan ATan2 Cos Sin Tan Exp Ln Log FloatEq Integer Max Min Modulo Pi Power Random "
    "Round Sqrt Sum "
    // Times
    "Accessed Created Modified Adjust BusinessDays Date Time Day Month Year Hour Minute Second "
    "GetCurrentTimeZone Now TextToTime ToTime TimeMerge TimeToTextInZone TimeZoneToText Today Tomorrow "
    "Yesterday Weekday Zone "
    // Logic
    "All True Yes Success False No CheckFormulaSyntax Do DoWhile Error Eval Failure For If IfError "
    "IsAvailable IsUnavailable IsError IsNull IsNumber IsText IsTime IsValid Return Set Unavailable "
    "DeleteField V2If While "
    // Documents
    "AllChildren AllDescendants AttachmentNames AttachmentLengths AttachmentModifiedTimes Attachments Author "
    "DeleteDocument HardDeleteDocument UndeleteDocument DocChildren DocDescendants DocSiblings DocLevel "
    "DocNumber DocParentNumber Responses DocFields DocLength DocMark DocLock DocOmittedLength "
    "DocOmmittedLength DocumentUniqueID GetDocField GetField GetProfileField InheritedDocumentUniqueID "
    "IsCategory IsExpandable IsDocBeingEdited IsDocBeingLoaded IsDocBeingMailed IsDocBeingRecalculated "
    "IsDocBeingSaved IsDocTruncated IsNewDoc IsResponseDoc NoteID SetDocField SetProfileField SetField "
    "ThisName ThisValue "
    // Databases, users, machines
    "DbName DbTitle ReplicaID TemplateVersion DbColumn DbLookup DbExists DbManager Domain MailDbName "
    "ServerName IsSoftDeleteEnabled Environment SetEnvironment ConfigFile FileDir GetAddressBooks WebDbName "
    "Locale "
    "LanguagePreference OptimizeMailAddress Platform ClientType Version RegQueryValue UserName V3UserName "
    "UserNameLanguage UserNamesList UserRoles UserPrivileges UserAccess ViewTitle "
    // Clients and servers
    "AddToFolder AdminECLIsLocked BrowserInfo Certificate CheckAlarms Command DB2Schema DbCommand DDEExecute "
    "DDEInitiate DDEPoke DDETerminate DialogBox EditECL EditUserECL EnableAlarms FontList FormLanguage "
    "GetFocusTable GetHTTPHeader GetIMContactListGroupNames GetMachineInfo GetPortsList GetViewInfo "
    "IsAgentEnabled IsAppInstalled IsDB2 IsEmbeddedInsideWCT IsInCompositeApp IsModalHelp IsUsingJavaElement "
    "IsVirtualizedDirectory LaunchApp LDAPServer LocationGetInfo MailEncryptSavedPreference "
    "MailEncryptSentPreference MailSavePreference MailSend MailSignPreference NameLookup OrgDir PickList "
    "PolicyIsFieldLocked PostedCommand Prompt RefreshECL ServerAccess SetHTTPHeader SetTargetFrame "
    "SetViewInfo ShowParentPreview StatusBar UpdateFormulaContext URLGetHeader URLHistory URLOpen "
    "URLQueryString V4UserAccess ViewShowThisUnread HasFeature X509Certificates whichfolders";

QStringList expectedNames() {
  QStringList names;
  for (const QString& name : QString::fromLatin1(kNames).split(u' ')) names.append(u'@' + name);
  return names;
}

TEST(FunctionTable, HoldsEveryName) {
  for (const QString& name : expectedNames()) EXPECT_NE(findFunction(name), nullptr) << name.toStdString();
}

TEST(FunctionTable, HoldsNothingElse) {
  const QStringList names = expectedNames();
  const QSet<QString> known(names.begin(), names.end());
  for (const Function* function : allFunctions())
    EXPECT_TRUE(known.contains(QString::fromUtf8(function->name))) << function->name;
}

TEST(FunctionTable, NamesAreUniqueAndFoundInAnyCase) {
  QSet<QString> seen;
  for (const Function* function : allFunctions()) {
    const QString name = QString::fromUtf8(function->name);
    EXPECT_TRUE(name.size() > 1 && name.startsWith(u'@')) << function->name;
    EXPECT_FALSE(seen.contains(name.toLower())) << function->name;
    seen.insert(name.toLower());
    EXPECT_EQ(findFunction(name.toUpper()), function) << function->name;
    EXPECT_EQ(findFunction(name.toLower()), function) << function->name;
  }
}

TEST(FunctionTable, CountsTypesAndArgumentsFit) {
  for (const Function* function : allFunctions()) {
    const QString types = QString::fromUtf8(function->types);
    EXPECT_GE(function->least, 0) << function->name;
    EXPECT_LE(function->least, function->most) << function->name;
    EXPECT_LE(function->most, kAnyCount) << function->name;
    EXPECT_EQ(types.isEmpty(), function->most == 0) << function->name;
    EXPECT_EQ(*function->arguments == 0, function->most == 0) << function->name;
    EXPECT_LE(types.size(), function->most) << function->name;
    for (QChar letter : types) EXPECT_TRUE(QStringView(u"tndkv").contains(letter)) << function->name;
  }
}

TEST(FunctionTable, HelpIsAFewSentences) {
  for (const Function* function : allFunctions()) {
    const QString help = QString::fromUtf8(function->help);
    EXPECT_GT(help.size(), 10) << function->name;
    EXPECT_LT(help.size(), 600) << function->name;
    EXPECT_TRUE(help.endsWith(u'.')) << function->name;
    EXPECT_FALSE(help.contains(u'\n')) << function->name;
    EXPECT_TRUE(!function->note || QString::fromUtf8(function->note).endsWith(u'.')) << function->name;
  }
}

TEST(FunctionTable, ARowEitherRunsOrHasAForm) {
  // @Sort has both: without an expression it is an ordinary call.
  for (const Function* function : allFunctions())
    EXPECT_EQ(function->form == Form::Call || function->form == Form::Sort, function->run != nullptr)
        << function->name;
}

// Keywords are compared in upper case.
TEST(FunctionTable, KeywordsAreUpperCaseWords) {
  for (const Function* function : allFunctions()) {
    if (!function->keywords) continue;
    for (const QString& word : QString::fromUtf8(function->keywords).split(u' ')) {
      EXPECT_FALSE(word.isEmpty()) << function->name;
      EXPECT_EQ(word, word.toUpper()) << function->name;
    }
    EXPECT_TRUE(QString::fromUtf8(function->types).contains(u'k')) << function->name;
  }
}

TEST(FunctionTable, CommandsKnowTheMenusOfTheClient) {
  const QStringList commands = QString::fromUtf8(findFunction(u"@Command")->keywords).split(u' ');
  EXPECT_GT(commands.size(), 300);
  EXPECT_EQ(QSet<QString>(commands.begin(), commands.end()).size(), commands.size());
  for (const char* name : {"FILESAVE", "EDITDOCUMENT", "COMPOSE", "TOOLSRUNMACRO", "VIEWREFRESHFIELDS"})
    EXPECT_TRUE(commands.contains(QString::fromLatin1(name))) << name;
}

}  // namespace
}  // namespace lens::formula
