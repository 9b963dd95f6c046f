#include "design/design_classes.h"

#include "shell/exact_texts.h"

namespace lens {
namespace {

DesignClass row(const char16_t* property, const char16_t* label) {
  return {QString::fromUtf16(property), QString::fromUtf16(label)};
}

QVector<DesignClass> olderClasses() {
  QVector<DesignClass> classes;
  for (DesignClass known : designClasses()) {
    if (known.property == u"SELECTHELPINDEX") continue;
    // Reaches nothing but the caption, where users know it so.
    if (known.property == u"SELECTPROFILES") known.label = exact::kOlderProfilesLabel;
    classes += known;
  }
  return classes << row(u"SINCETIME", u"SINCETIME");
}

}  // namespace

const QVector<DesignClass>& designClasses() {
  static const QVector<DesignClass> classes{
      row(u"SELECTACL", u"ACL"),
      row(u"SELECTACTIONS", u"ACTIONS"),
      row(u"SELECTAGENTS", u"AGENTS"),
      row(u"SELECTDATABASESCRIPT", u"DATABASESCRIPT"),
      row(u"SELECTDATACONNECTIONS", u"DATACONNECTIONS"),
      row(u"SELECTDOCUMENTS", u"DOCUMENTS"),
      row(u"SELECTFOLDERS", u"FOLDERS"),
      row(u"SELECTFORMS", u"FORMS"),
      row(u"SELECTFRAMESETS", u"FRAMESETS"),
      row(u"SELECTHELPABOUT", u"HELPABOUT"),
      row(u"SELECTHELPINDEX", u"HELPINDEX"),
      row(u"SELECTHELPUSING", u"HELPUSING"),
      row(u"SELECTICON", u"ICON"),
      row(u"SELECTIMAGERESOURCES", u"IMAGERESOURCES"),
      // No class: it stands here for its letters, and gets the same True as the others.
      row(u"SELECTIONFORMULA", u"SELECTIONFORMULA"),
      row(u"SELECTJAVARESOURCES", u"JAVARESOURCES"),
      row(u"SELECTMISCCODEELEMENTS", u"MISCCODEELEMENTS"),
      row(u"SELECTMISCFORMATELEMENTS", u"MISCFORMATELEMENTS"),
      row(u"SELECTMISCINDEXELEMENTS", u"MISCINDEXELEMENTS"),
      row(u"SELECTNAVIGATORS", u"NAVIGATORS"),
      row(u"SELECTOUTLINES", u"OUTLINES"),
      row(u"SELECTPAGES", u"PAGES"),
      row(u"SELECTPROFILES", u"PROFILES"),
      row(u"SELECTREPLICATIONFORMULAS", u"REPLICATIONFORMULAS"),
      row(u"SELECTSCRIPTLIBRARIES", u"SCRIPTLIBRARIES"),
      row(u"SELECTSHAREDFIELDS", u"SHAREDFIELDS"),
      row(u"SELECTSTYLESHEETRESOURCES", u"STYLESHEETRESOURCES"),
      row(u"SELECTSUBFORMS", u"SUBFORMS"),
      row(u"SELECTVIEWS", u"VIEWS"),
  };
  return classes;
}

const QVector<DesignClass>& designDocsClasses() {
  static const QVector<DesignClass> classes = olderClasses();
  return classes;
}

}  // namespace lens
