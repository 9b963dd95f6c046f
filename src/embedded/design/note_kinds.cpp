#include "embedded/design/note_kinds.h"

#include "embedded/design/flag_pattern.h"

namespace lens {

// Some patterns exclude more than the letters that the platform is known to test, since files come from
// exports as well, which may lack the letters that usually go with them: an agent is no library ("hk.")
// and no saved query ("O"), a form is no style sheet ("=").
const std::array<NoteKindRow, kNoteKinds>& noteKindTable() {
  using Test = NoteKindRow::Test;
  using enum NoteKind;
  namespace c = noteclass;
  static constexpr std::array<NoteKindRow, kNoteKinds> rows = {{
      {Acl, u"SELECTACL", c::Acl, Test::Whole, u""},
      {Actions, u"SELECTACTIONS", c::Form, Test::Flags, u"+y"},
      {Agents, u"SELECTAGENTS", c::Filter, Test::Flags, u"-QXstmz{hk.O"},
      {DatabaseScript, u"SELECTDATABASESCRIPT", c::Filter, Test::Flags, u"+t"},
      {DataConnections, u"SELECTDATACONNECTIONS", c::Filter, Test::Flags, u"+k"},
      {Documents, u"SELECTDOCUMENTS", c::Document, Test::NoProfile, u""},
      {Folders, u"SELECTFOLDERS", c::View, Test::Flags, u"*F"},
      {Forms, u"SELECTFORMS", c::Form, Test::Flags, u"-FQMUGXWy#i:|@K;g~%z^}="},
      {Framesets, u"SELECTFRAMESETS", c::Form, Test::Flags, u"*#"},
      {HelpAbout, u"SELECTHELPABOUT", c::About, Test::Whole, u""},
      {HelpIndex, u"SELECTHELPINDEX", c::HelpIndex, Test::Whole, u""},
      {HelpUsing, u"SELECTHELPUSING", c::Using, Test::Whole, u""},
      {Icon, u"SELECTICON", c::Icon, Test::Whole, u""},
      {ImageResources, u"SELECTIMAGERESOURCES", c::Form, Test::Flags, u"+i"},
      {JavaResources, u"SELECTJAVARESOURCES", c::Form, Test::Flags, u"+@"},
      {MiscCode, u"SELECTMISCCODEELEMENTS", c::Filter, Test::Rest, u""},
      {MiscFormat, u"SELECTMISCFORMATELEMENTS", c::Form, Test::Rest, u""},
      {MiscIndex, u"SELECTMISCINDEXELEMENTS", c::View, Test::Rest, u""},
      {Navigators, u"SELECTNAVIGATORS", c::View, Test::Flags, u"*G"},
      {Outlines, u"SELECTOUTLINES", c::Filter, Test::Flags, u"+m"},
      {Pages, u"SELECTPAGES", c::Form, Test::Flags, u"*W"},
      {Profiles, u"SELECTPROFILES", c::Document, Test::Profile, u""},
      {ReplicationFormulas, u"SELECTREPLICATIONFORMULAS", c::ReplicationFormula, Test::Whole, u""},
      {ScriptLibraries, u"SELECTSCRIPTLIBRARIES", c::Filter, Test::Flags, u"+sh."},
      {SharedFields, u"SELECTSHAREDFIELDS", c::SharedField, Test::Whole, u""},
      {StyleSheets, u"SELECTSTYLESHEETRESOURCES", c::Form, Test::Flags, u"+="},
      {Subforms, u"SELECTSUBFORMS", c::Form, Test::Flags, u"+U"},
      {Views, u"SELECTVIEWS", c::View, Test::Flags, u"-FG^"},
  }};
  return rows;
}

NoteKinds kindsOfDesign(quint16 noteClass, QStringView flags) {
  NoteKinds kinds;
  const NoteKindRow* rest = nullptr;
  for (const NoteKindRow& row : noteKindTable()) {
    if (row.noteClass != noteclass::base(noteClass)) continue;
    if (row.test == NoteKindRow::Test::Rest) rest = &row;
    const bool is = row.test == NoteKindRow::Test::Whole ||
                    (row.test == NoteKindRow::Test::Flags && matchesFlags(row.flags, flags));
    if (is) kinds.set(row.kind);
  }
  if (rest && kinds.isEmpty()) kinds.set(rest->kind);
  return kinds;
}

quint16 classesOf(NoteKinds kinds) {
  quint16 classes = 0;
  for (const NoteKindRow& row : noteKindTable())
    if (kinds.has(row.kind)) classes |= row.noteClass;
  return classes;
}

}  // namespace lens
