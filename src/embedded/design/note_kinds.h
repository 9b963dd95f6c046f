// The kinds of notes that people tell apart: a form, a page and an image are notes of one class, and the
// letters of their "$Flags" say which is which.
#pragma once

#include <QStringView>
#include <array>
#include <initializer_list>

#include "embedded/format/note.h"

namespace lens {

enum class NoteKind {
  Acl,
  Actions,
  Agents,
  DatabaseScript,
  DataConnections,
  Documents,
  Folders,
  Forms,
  Framesets,
  HelpAbout,
  HelpIndex,
  HelpUsing,
  Icon,
  ImageResources,
  JavaResources,
  MiscCode,
  MiscFormat,
  MiscIndex,
  Navigators,
  Outlines,
  Pages,
  Profiles,
  ReplicationFormulas,
  ScriptLibraries,
  SharedFields,
  StyleSheets,
  Subforms,
  Views,
};
inline constexpr int kNoteKinds = 28;

// A set of kinds.
class NoteKinds {
 public:
  constexpr NoteKinds() = default;
  constexpr NoteKinds(std::initializer_list<NoteKind> kinds) {
    for (const NoteKind kind : kinds) set(kind);
  }
  static constexpr NoteKinds all() {
    NoteKinds kinds;
    kinds.bits_ = (1u << kNoteKinds) - 1;
    return kinds;
  }
  constexpr void set(NoteKind kind, bool on = true) { bits_ = on ? bits_ | bit(kind) : bits_ & ~bit(kind); }
  constexpr bool has(NoteKind kind) const { return (bits_ & bit(kind)) != 0; }
  constexpr bool isEmpty() const { return bits_ == 0; }
  constexpr bool meets(NoteKinds other) const { return (bits_ & other.bits_) != 0; }
  constexpr bool operator==(const NoteKinds&) const = default;

 private:
  static constexpr quint32 bit(NoteKind kind) { return 1u << int(kind); }
  quint32 bits_ = 0;
};

struct NoteKindRow {
  NoteKind kind;
  const char16_t* property;  // the switch of a note collection
  quint16 noteClass;
  // How notes of the class are told apart. Rest: what is none of the other kinds of its class.
  enum class Test { Whole, Flags, Rest, Profile, NoProfile } test;
  const char16_t* flags;  // the pattern, see flag_pattern.h
};

// In order of the enumeration, which is that of the names.
const std::array<NoteKindRow, kNoteKinds>& noteKindTable();

// The kinds of a design note. Mostly one; a note that carries the letters of two kinds is of both, and
// a note of a class that has kinds is of one at least.
NoteKinds kindsOfDesign(quint16 noteClass, QStringView flags);

// Classes of the kinds, as a mask.
quint16 classesOf(NoteKinds kinds);

}  // namespace lens
