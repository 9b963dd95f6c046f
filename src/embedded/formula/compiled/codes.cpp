#include "embedded/formula/compiled/codes.h"

#include <QHash>
#include <algorithm>
#include <array>

#include "embedded/format/case_key.h"

namespace lens::formula {
namespace {

constexpr OperatorCode kOperators[] = {
    {0x0A, 2, Operator::Equal, Sureness::Proven},
    {0x0B, 2, Operator::NotEqual, Sureness::Proven},
    {0x0C, 2, Operator::LessEqual, Sureness::Proven},
    {0x0D, 2, Operator::GreaterEqual, Sureness::Proven},
    {0x0E, 2, Operator::Less, Sureness::Proven},
    {0x0F, 2, Operator::Greater, Sureness::Proven},
    {0x10, 1, Operator::Minus, Sureness::Proven},
    {0x11, 1, Operator::Plus, Sureness::Context},
    {0x12, 2, Operator::PermutedAdd, Sureness::Context},
    {0x13, 2, Operator::PermutedSubtract, Sureness::Guess},
    {0x14, 2, Operator::PermutedMultiply, Sureness::Guess},
    {0x15, 2, Operator::PermutedDivide, Sureness::Guess},
    {0x16, 2, Operator::PermutedEqual, Sureness::Context},
    {0x17, 2, Operator::PermutedNotEqual, Sureness::Guess},
    {0x18, 2, Operator::PermutedLessEqual, Sureness::Guess},
    {0x19, 2, Operator::PermutedGreaterEqual, Sureness::Guess},
    {0x1A, 2, Operator::PermutedLess, Sureness::Guess},
    {0x1B, 2, Operator::PermutedGreater, Sureness::Guess},
    {0x1C, 2, Operator::And, Sureness::Proven},
    {0x1D, 2, Operator::Or, Sureness::Proven},
    {0x1E, 1, Operator::Not, Sureness::Proven},
    {0x1F, 2, Operator::Concatenate, Sureness::Proven},
    {0x22, 2, Operator::Add, Sureness::Proven},
    {0x23, 2, Operator::Subtract, Sureness::Proven},
    {0x24, 2, Operator::Multiply, Sureness::Context},
    {0x25, 2, Operator::Divide, Sureness::Proven},
};

// By code. Function names are spelled as the help spells them.
constexpr FunctionCode kFunctions[] = {
    {0x028, "@Unavailable", Sureness::Proven},
    {0x02A, "@False", Sureness::Proven},
    {0x02B, "@True", Sureness::Proven},
    {0x02C, "@Now", Sureness::Proven},
    {0x02D, "@Today", Sureness::Proven},
    {0x042, "@Round", Sureness::Context},
    {0x043, "@Min", Sureness::Context},
    {0x044, "@Max", Sureness::Context},
    {0x045, "@Modulo", Sureness::Context},
    {0x046, "@Begins", Sureness::Proven},
    {0x047, "@Contains", Sureness::Proven},
    {0x04A, "@V2If", Sureness::Proven},
    {0x04B, "@Date", Sureness::Proven},
    {0x04C, "@Time", Sureness::Proven},
    {0x04D, "@Adjust", Sureness::Proven},
    {0x04E, "@Year", Sureness::Proven},
    {0x04F, "@Month", Sureness::Proven},
    {0x050, "@Day", Sureness::Proven},
    {0x051, "@Hour", Sureness::Proven},
    {0x052, "@Minute", Sureness::Proven},
    {0x053, "@Second", Sureness::Proven},
    {0x054, "@Weekday", Sureness::Proven},
    {0x056, "@Text", Sureness::Proven},
    {0x057, "@TextToTime", Sureness::Proven},
    {0x058, "@TextToNumber", Sureness::Proven},
    {0x059, "@IsUnavailable", Sureness::Proven},
    {0x05A, "@IsError", Sureness::Proven},
    {0x05B, "@IsNumber", Sureness::Context},
    {0x05C, "@IsText", Sureness::Proven},
    {0x05D, "@IsTime", Sureness::Context},
    {0x05E, "@Trim", Sureness::Proven},
    {0x05F, "@Left", Sureness::Proven},
    {0x060, "@Right", Sureness::Proven},
    {0x061, "@LowerCase", Sureness::Proven},
    {0x062, "@UpperCase", Sureness::Proven},
    {0x063, "@ProperCase", Sureness::Proven},
    {0x064, "@Repeat", Sureness::Proven},
    {0x065, "@Middle", Sureness::Proven},
    {0x066, "@All", Sureness::Proven},
    {0x067, "@V3UserName", Sureness::Proven},
    {0x068, "@IsAvailable", Sureness::Proven},
    {0x069, "@Created", Sureness::Proven},
    {0x06A, "@Elements", Sureness::Proven},
    {0x06B, "@Subset", Sureness::Proven},
    {0x06C, "@IsResponseDoc", Sureness::Proven},
    {0x06D, "@Word", Sureness::Context},
    {0x06E, "@IsDocBeingLoaded", Sureness::Proven},
    {0x06F, "@IsDocBeingSaved", Sureness::Proven},
    {0x071, "@IsDocBeingRecalculated", Sureness::Proven},
    {0x072, "@Attachments", Sureness::Proven},
    {0x073, "@AttachmentNames", Sureness::Proven},
    {0x074, "@IsMember", Sureness::Proven},
    {0x075, "@IsNotMember", Sureness::Context},
    {0x076, "@Member", Sureness::Proven},
    {0x077, "@Select", Sureness::Context},
    {0x079, "@Author", Sureness::Proven},
    {0x07A, "@Success", Sureness::Proven},
    {0x07B, "@Failure", Sureness::Proven},
    {0x07C, "@Environment", Sureness::Proven},
    {0x07E, "@NoteID", Sureness::Context},
    {0x07F, "@Log", Sureness::Guess},
    {0x083, "@DbLookup", Sureness::Proven},
    {0x084, "@ReplaceSubstring", Sureness::Proven},
    {0x085, "@Implode", Sureness::Proven},
    {0x086, "@Explode", Sureness::Proven},
    {0x087, "@Char", Sureness::Proven},
    {0x089, "@IsNewDoc", Sureness::Proven},
    {0x08A, "@NewLine", Sureness::Proven},
    {0x08B, "@DbName", Sureness::Proven},
    {0x08D, "@Replace", Sureness::Proven},
    {0x090, "@DocumentUniqueID", Sureness::Proven},
    {0x092, "@DocNumber", Sureness::Proven},
    {0x095, "@DocDescendants", Sureness::Proven},
    {0x09A, "@IsExpandable", Sureness::Guess},
    {0x09C, "@DbTitle", Sureness::Proven},
    {0x09D, "@ViewTitle", Sureness::Proven},
    {0x09F, "@DocLength", Sureness::Proven},
    {0x0A0, "@AttachmentLengths", Sureness::Context},
    {0x0A1, "@LeftBack", Sureness::Proven},
    {0x0A2, "@RightBack", Sureness::Proven},
    {0x0A4, "@Modified", Sureness::Proven},
    {0x0A6, "@Length", Sureness::Proven},
    {0x0A7, "@Integer", Sureness::Context},
    {0x0A9, "@Password", Sureness::Guess},
    {0x0AA, "@DbColumn", Sureness::Proven},
    {0x0AB, "@Unique", Sureness::Proven},
    {0x0AC, "@MailDbName", Sureness::Proven},
    {0x0B0, "@Prompt", Sureness::Proven},
    {0x0B1, "@PostedCommand", Sureness::Proven},
    {0x0B2, "@MailSend", Sureness::Context},
    {0x0B3, "@Do", Sureness::Proven},
    {0x0B4, "@Name", Sureness::Proven},
    {0x0B5, "@If", Sureness::Proven},
    {0x0B9, "@DbCommand", Sureness::Proven},
    {0x0BB, "@Accessed", Sureness::Context},
    {0x0BC, "@Platform", Sureness::Proven},
    {0x0BD, "@DeleteDocument", Sureness::Guess},
    {0x0BE, "@DeleteField", Sureness::Proven},
    {0x0BF, "@Version", Sureness::Proven},
    {0x0C2, "@Return", Sureness::Proven},
    {0x0C3, "@Set", Sureness::Proven},
    {0x0C4, "@SetField", Sureness::Proven},
    {0x0C5, "@SetEnvironment", Sureness::Proven},
    {0x0C6, "@Like", Sureness::Context},
    {0x0C7, "@Sum", Sureness::Context},
    {0x0C8, "@PickList", Sureness::Proven},
    {0x0CA, "@AllDescendants", Sureness::Context},
    {0x0D3, "@Random", Sureness::Proven},
    {0x0DE, "@Abstract", Sureness::Proven},
    {0x0DF, "@DialogBox", Sureness::Proven},
    {0x0E0, "@URLOpen", Sureness::Proven},
    {0x0E2, "@GetDocField", Sureness::Context},
    {0x0E3, "@IsDocBeingEdited", Sureness::Proven},
    {0x0E4, "@IsValid", Sureness::Proven},
    {0x0E7, "@UserRoles", Sureness::Proven},
    {0x0E8, "@DocFields", Sureness::Context},
    {0x0E9, "@DbExists", Sureness::Context},
    {0x0EA, "@V4UserAccess", Sureness::Proven},
    {0x0ED, "@Command", Sureness::Proven},
    {0x0F4, "@UserName", Sureness::Proven},
    {0x0F7, "@GetProfileField", Sureness::Proven},
    {0x0F8, "@SetProfileField", Sureness::Proven},
    {0x104, "@LocationGetInfo", Sureness::Proven},
    {0x105, "@ClientType", Sureness::Proven},
    {0x107, "@UserNamesList", Sureness::Context},
    {0x109, "@ValidateInternetAddress", Sureness::Proven},
    {0x10A, "@X509Certificates", Sureness::Guess},
    {0x10D, "@UserNameLanguage", Sureness::Proven},
    {0x110, "@BrowserInfo", Sureness::Proven},
    {0x111, "@NameLookup", Sureness::Proven},
    {0x113, "@Locale", Sureness::Proven},
    {0x118, "@SetTargetFrame", Sureness::Proven},
    {0x11A, "@LanguagePreference", Sureness::Proven},
    {0x128, "@URLEncode", Sureness::Context},
    {0x12A, "@UserAccess", Sureness::Proven},
    {0x12D, "@GetViewInfo", Sureness::Proven},
    {0x130, "@WebDbName", Sureness::Proven},
    {0x131, "@ThisValue", Sureness::Proven},
    {0x132, "@ThisName", Sureness::Context},
    {0x133, "@GetField", Sureness::Proven},
    {0x134, "@URLQueryString", Sureness::Proven},
    {0x137, "@Transform", Sureness::Context},
    {0x138, "@Nothing", Sureness::Context},
    {0x13C, "@Sort", Sureness::Proven},
    {0x143, "@IfError", Sureness::Proven},
    {0x144, "@ReplicaID", Sureness::Context},
    {0x145, "@ServerName", Sureness::Proven},
    {0x146, "@While", Sureness::Context},
    {0x147, "@DoWhile", Sureness::Context},
    {0x148, "@For", Sureness::Proven},
    {0x149, "@StatusBar", Sureness::Proven},
    {0x14A, "@BusinessDays", Sureness::Context},
    {0x14B, "@IsSoftDeleteEnabled", Sureness::Proven},
    {0x152, "@IsNull", Sureness::Context},
    {0x154, "@ToNumber", Sureness::Proven},
    {0x155, "@Eval", Sureness::Context},
    {0x15D, "@CheckFormulaSyntax", Sureness::Context},
    {0x160, "@SetViewInfo", Sureness::Proven},
    {0x162, "@TimeZoneToText", Sureness::Proven},
    {0x164, "@TimeMerge", Sureness::Proven},
    {0x165, "@GetCurrentTimeZone", Sureness::Proven},
    {0x166, "@URLDecode", Sureness::Guess},
    {0x167, "@HasFeature", Sureness::Proven},
    {0x171, "@IsEmbeddedInsideWCT", Sureness::Proven},
    {0x174, "@IsUsingJavaElement", Sureness::Proven},
    {0x175, "@whichfolders", Sureness::Proven},
};

// By number. Those of 1000 and more are commands.
constexpr KeywordCode kKeywords[] = {
    {4, "Canonicalize", Sureness::Proven},
    {5, "Abbreviate", Sureness::Proven},
    {6, "CN", Sureness::Proven},
    {13, "Ok", Sureness::Proven},
    {14, "YesNo", Sureness::Context},
    {15, "OkCancelEdit", Sureness::Proven},
    {16, "OkCancelList", Sureness::Proven},
    {19, "OkCancelListMult", Sureness::Proven},
    {21, "NoSort", Sureness::Proven},
    {23, "YesNoCancel", Sureness::Context},
    {55, "Custom", Sureness::Context},
    {56, "Name", Sureness::Proven},
    {57, "Single", Sureness::Context},
    {66, "TextOnly", Sureness::Proven},
    {120, "AutoVertFit", Sureness::Proven},
    {121, "AutoHorzFit", Sureness::Proven},
    {122, "NoOkCancel", Sureness::Proven},
    {130, "NoFieldUpdate", Sureness::Proven},
    {131, "NoNewFields", Sureness::Proven},
    {132, "NoCancel", Sureness::Proven},
    {135, "Specific", Sureness::Proven},
    {168, "NamePreference", Sureness::Proven},
    {175, "Address821", Sureness::Proven},
    {179, "Address822", Sureness::Proven},
    {185, "SizeToTable", Sureness::Proven},
    {193, "ForceUpdate", Sureness::Proven},
    {195, "Exhaustive", Sureness::Proven},
    {198, "SetViewFilter", Sureness::Proven},
    {206, "LanguageName", Sureness::Proven},
    {214, "CalendarViewFormat", Sureness::Proven},
    {215, "IsCalViewTimeSlotOn", Sureness::Proven},
    {232, "AlternateName", Sureness::Proven},
    {234, "IsCalendarSummarized", Sureness::Proven},
    {268, "FailSilent", Sureness::Proven},
    {269, "ReturnDocumentUniqueID", Sureness::Context},
    {284, "UseFrameset", Sureness::Proven},
    {297, "AccessLevel", Sureness::Proven},
    {299, "DeleteDocuments", Sureness::Proven},
    {313, "IsCalendarPrintingCal", Sureness::Proven},
    {315, "EnsureCache", Sureness::Proven},
    {338, "NoNote", Sureness::Proven},
    {357, "IsSideCalendar", Sureness::Proven},
    {1000, "Compose", Sureness::Proven},
    {2009, "EditInsertText", Sureness::Context},
    {2010, "EditClear", Sureness::Proven},
    {2013, "EditDeselectAll", Sureness::Proven},
    {2021, "EditInsertFileAttachment", Sureness::Proven},
    {2024, "EditDocument", Sureness::Proven},
    {2026, "EditSelectAll", Sureness::Proven},
    {2054, "EditGotoField", Sureness::Context},
    {3007, "FileOpenDatabase", Sureness::Context},
    {3014, "FileSave", Sureness::Proven},
    {3028, "OpenCalendar", Sureness::Proven},
    {4002, "ToolsRunMacro", Sureness::Proven},
    {4009, "ToolsCategorize", Sureness::Proven},
    {4604, "FileCloseWindow", Sureness::Proven},
    {5003, "ViewRefreshFields", Sureness::Proven},
    {5010, "ViewChange", Sureness::Proven},
    {6032, "ViewShowSearchBar", Sureness::Proven},
    {6052, "HelpUsingDatabase", Sureness::Proven},
    {6133, "RemoveFromFolder", Sureness::Context},
    {6134, "Folder", Sureness::Proven},
    {6140, "CalendarFormat", Sureness::Proven},
    {6157, "EditProfile", Sureness::Context},
    {6243, "RefreshFrame", Sureness::Proven},
    {6272, "DiscoverFolders", Sureness::Proven},
    {7001, "OpenView", Sureness::Proven},
    {7005, "OpenDocument", Sureness::Context},
    {7006, "RefreshHideFormulas", Sureness::Proven},
    {7102, "OpenPage", Sureness::Proven},
    {7103, "OpenFrameset", Sureness::Context},
    {7204, "ComposeWithReference", Sureness::Proven},
    {7206, "EditRestoreDocument", Sureness::Proven},
    {7300, "RefreshParentNote", Sureness::Proven},
    {7500, "MoveToTrash", Sureness::Proven},
    {10003, "RunAgent", Sureness::Proven},
    {10018, "EditProfileDocument", Sureness::Proven},
    {10020, "AddToIMContactList", Sureness::Proven},
    {10021, "SendInstantMessage", Sureness::Proven},
};

constexpr int kCodes = 0x180;  // all of the table are below

struct Functions {
  std::array<qint16, kCodes> byCode;
  std::array<const Function*, std::size(kFunctions)> functions;
  QHash<const Function*, const FunctionCode*> byFunction;

  Functions() {
    byCode.fill(-1);
    for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
      byCode[kFunctions[i].code] = qint16(i);
      functions[i] = findFunction(QString::fromLatin1(kFunctions[i].name));
      byFunction.insert(functions[i], &kFunctions[i]);
    }
  }
};

const Functions& functions() {
  static const Functions instance;
  return instance;
}

}  // namespace

const OperatorCode* findOperator(quint8 code) {
  const auto* const row = std::lower_bound(std::begin(kOperators), std::end(kOperators), code,
                                           [](const OperatorCode& a, quint8 b) { return a.code < b; });
  return row != std::end(kOperators) && row->code == code ? row : nullptr;
}

const OperatorCode& operatorCodeOf(Operator op) {
  return *std::find_if(std::begin(kOperators), std::end(kOperators),
                       [op](const OperatorCode& row) { return row.op == op; });
}

const FunctionCode* findFunctionCode(quint16 code) {
  if (code >= kCodes || functions().byCode[code] < 0) return nullptr;
  return &kFunctions[functions().byCode[code]];
}

const Function* functionOf(const FunctionCode& row) {
  return functions().functions[std::size_t(&row - kFunctions)];
}

const FunctionCode* functionCodeOf(const Function& function) {
  return functions().byFunction.value(&function, nullptr);
}

const KeywordCode* findKeyword(quint32 number) {
  const auto* const row = std::lower_bound(std::begin(kKeywords), std::end(kKeywords), number,
                                           [](const KeywordCode& a, quint32 b) { return a.number < b; });
  return row != std::end(kKeywords) && row->number == number ? row : nullptr;
}

const KeywordCode* keywordCodeOf(QStringView word) {
  static const QHash<QString, const KeywordCode*> byName = [] {
    QHash<QString, const KeywordCode*> index;
    for (const KeywordCode& row : kKeywords) index.insert(caseKey(QString::fromLatin1(row.name)), &row);
    return index;
  }();
  return byName.value(caseKey(word), nullptr);
}

std::span<const FunctionCode> functionCodes() {
  return kFunctions;
}

std::span<const KeywordCode> keywordCodes() {
  return kKeywords;
}

std::span<const OperatorCode> operatorCodes() {
  return kOperators;
}

}  // namespace lens::formula
