// Designs that came as elements go out as elements: formulas where others read them, what was kept where it
// stood.
#include "embedded/dxl/export/export_fixture.h"
#include "embedded/format/source_formula.h"
#include "embedded/format/view_records.h"

namespace lens {
namespace {

class DesignExport : public DxlExport {
 protected:
  // The notes come into the source, and from there make the round trip; returns the export.
  QByteArray trip(const QByteArray& notes) {
    import(notes);
    const QByteArray dxl = roundTrip();
    EXPECT_FALSE(dxl.contains("$DXL_")) << dxl.toStdString();
    return dxl;
  }
  void import(const QByteArray& notes) {
    const QString path = folder_.filePath(u"in.dxl"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<database xmlns='http://www.lotus.com/dxl' title='Source'>" + notes + "</database>");
    file.close();
    ImportReport report;
    DxlImporter(*source_).importFile(path, report);
    ASSERT_EQ(report.failed.join(u'\n').toStdString(), "");
  }
  static QByteArray paragraph(const QByteArray& content) {
    return "<document form='F'><item name='Body'><richtext><pardef id='1'/><par def='1'>a</par>" + content +
           "<par def='1'>z</par></richtext></item></document>";
  }
  static void expectIn(const QByteArray& dxl, const QByteArray& part) {
    EXPECT_TRUE(dxl.contains(part)) << part.toStdString() << "\n" << dxl.toStdString();
  }
  // A part of the content that comes back to the letter, in the paragraph at hand or beside it.
  void expectKept(const QByteArray& content, const QByteArray& part) {
    source_ = create();
    expectIn(trip(paragraph(content)), part);
  }
  Note noteOf(quint16 noteClass) {
    Note note;
    EXPECT_TRUE(source_->notes().read(source_->notes().list(noteClass).value(0).id, note));
    return note;
  }
};

TEST_F(DesignExport, ViewsTellTheirFormulas) {
  const QByteArray dxl = trip(
      "<view name='All|x' alias='a' showinmenu='false' hide='v3 web' comment='c' gridstyle='dash'>"
      "<code event='selection'><formula>SELECT Form = \"A\"</formula></code>"
      "<code event='form'><formula>\"A\"</formula></code>"
      "<code event='queryopen'><formula>@True</formula></code>"
      "<actionbar bgcolor='red'><action title='t'><code event='click'><formula>@All</formula></code>"
      "</action></actionbar>"
      "<column itemname='S' sort='descending' categorized='true' hidden='true' width='12.5'>"
      "<columnheader title='Subject'/><code event='value'><formula>@Left(S; 3)</formula></code></column>"
      "<column itemname='T' align='right' width='4'><code event='value'><formula>@Now</formula></code>"
      "</column><column itemname='U' width='4'/><item name='Own'><text>1</text></item></view>");
  expectIn(dxl, "<view name=\"All\" alias=\"x|a\"");
  expectIn(dxl, "hide=\"v3 web\"");
  expectIn(dxl, "gridstyle=\"dash\"");
  expectIn(dxl, "<code event=\"selection\"><formula>SELECT Form = &quot;A&quot;</formula></code>");
  expectIn(dxl, "<code event=\"form\"><formula>&quot;A&quot;</formula></code>");
  expectIn(dxl, "<code event=\"queryopen\"><formula>@True</formula></code>");
  expectIn(dxl, "<action title=\"t\"><code event=\"click\">");
  expectIn(dxl, "<formula>@Left(S; 3)</formula>");
  expectIn(dxl, "<column itemname=\"T\" align=\"right\" width=\"4\"><code event=\"value\"><formula>@Now<");
  expectIn(dxl, "<item name=\"Own\"");
  EXPECT_FALSE(dxl.contains("rawitemdata")) << dxl.toStdString();
}

TEST_F(DesignExport, FoldersAndViewsWithoutFormatComeBack) {
  trip(
      "<folder name='F' showresponsehierarchy='false'><column itemname='a' width='3'><code event='value'>"
      "<formula>b</formula></code></column></folder>"
      "<view name='V' noviewformat='true' shrinkrows='true' selectionnoteclass='3'/>");
}

TEST_F(DesignExport, FormsTellTheirFields) {
  const QByteArray dxl = trip(
      "<form name='F' bgcolor='white' nocompose='true'><globals><code event='options'><lotusscript>x"
      "</lotusscript></code></globals><code event='windowtitle'><formula>\"T\"</formula></code>"
      "<code event='postopen' for='web'><formula>1</formula></code>"
      "<body><richtext><pardef id='1' align='center'><code event='hidewhen'><formula>@IsNewDoc</formula>"
      "</code></pardef><par def='1'><run><font style='bold' size='12pt'/>Name: <field name='Who' "
      "type='names' "
      "kind='computed'><code event='defaultvalue'><formula>@UserName</formula></code></field></run>"
      "<field name='When' type='datetime' kind='editable' width='2in'><code event='inputvalidation'><formula>"
      "@Success</formula></code></field></par><section expanded='false'><sectiontitle><text>More</text>"
      "</sectiontitle><code event='hidewhen'><formula>@False</formula></code><par>in <field name='Deep' "
      "type='number' kind='computedwhencomposed'><code event='defaultvalue'><formula>3</formula></code>"
      "</field></par></section></richtext></body></form>");
  expectIn(dxl, "<form name=\"F\"");
  expectIn(dxl, "nocompose=\"true\"");
  expectIn(dxl, "bgcolor=\"white\"");
  expectIn(dxl, "<globals><code event=\"options\"><lotusscript>x</lotusscript></code></globals>");
  expectIn(dxl, "<code event=\"hidewhen\"><formula>@IsNewDoc</formula></code></pardef>");
  expectIn(dxl, "<formula>@UserName</formula></code></field>");
  expectIn(dxl, "width=\"2in\"><code event=\"inputvalidation\"><formula>@Success</formula>");
  expectIn(dxl, "<section expanded=\"false\"><sectiontitle>");
  expectIn(dxl, "<code event=\"hidewhen\"><formula>@False</formula></code>");
  expectIn(dxl, "kind=\"computedwhencomposed\" name=\"Deep\"");
}

TEST_F(DesignExport, SubformsPagesAndSharedFieldsComeBack) {
  const QByteArray dxl = trip(
      "<subform name='S' renderpassthrough='true'><body><richtext><par/></richtext></body></subform>"
      "<page name='P' bgcolor='red'><body><richtext><par>t</par></richtext></body></page>"
      "<sharedfield name='N'><field name='N' type='text' kind='computed'><code event='defaultvalue'>"
      "<formula>1</formula></code></field></sharedfield>"
      "<outline name='O'><outlineentry label='a'/></outline>"
      "<helpaboutdocument bgcolor='blue'><body><richtext><par>t</par></richtext></body>"
      "</helpaboutdocument>");
  for (const char* element : {"<subform ", "<page ", "<sharedfield ", "<outline ", "<helpaboutdocument "})
    expectIn(dxl, element);
  expectIn(dxl, "<outlineentry label=\"a\"></outlineentry>");
}

TEST_F(DesignExport, ResourcesAndLibrariesThatKeepSomethingComeBack) {
  const QByteArray dxl = trip(
      "<imageresource name='i.gif' browsercompatible='true'><gif>R0lGODlh</gif></imageresource>"
      "<imageresource name='i.png'><png>iVBORw0K</png></imageresource>"
      "<fileresource name='f' mimetype='text/plain' charset='utf-8'><filedata>QUJD</filedata></fileresource>"
      "<stylesheetresource name='s' refresh='true'><filedata>QUJD</filedata></stylesheetresource>"
      "<scriptlibrary name='L' key='k0'><code event='options'><lotusscript>Option Public"
      "</lotusscript></code></scriptlibrary>"
      "<scriptlibrary name='J' key='k1'><code event='library'><javascript>var a;</javascript></code>"
      "</scriptlibrary><databasescript key='k2'><code event='postopen'><lotusscript>Sub Postopen"
      "</lotusscript></code></databasescript>");
  expectIn(dxl, "<gif>\nR0lGODlh\n</gif>");
  expectIn(dxl, "<png>iVBORw0K</png>");
  expectIn(dxl, "<filedata>\nQUJD\n</filedata>");
  expectIn(dxl, "<code event=\"options\"><lotusscript>Option Public</lotusscript></code>");
  expectIn(dxl, "<code event=\"library\"><javascript>var a;</javascript></code>");
  expectIn(dxl, "<code event=\"postopen\"><lotusscript>Sub Postopen</lotusscript></code>");
}

// Others read the source, an import of ours the very bytes beside it.
TEST_F(DesignExport, CompiledFormulasGoOutAsTheirSource) {
  const QByteArray compiled = "KAAAABoABQAGAFN0YXR1cwEABABEb25lCgIDAAcADAAFAAkxUzJTAA==";
  const QByteArray code = "<formula compiled='true'>" + compiled + "</formula></code>";
  const QByteArray dxl = trip(
      "<view name='V' gridstyle='dash'><code event='selection'>" + code +
      "<column itemname='S' width='4'><code event='value'>" + code +
      "</column>"
      "<column itemname='T' align='right' width='4'><code event='value'><formula>a</formula></code></column>"
      "</view><form name='F' bgcolor='white'><code event='windowtitle'>" +
      code +
      "<body><richtext><pardef id='1'/><par def='1'><field name='A' type='text' kind='computed'>"
      "<code event='defaultvalue'>" +
      code + "</field></par></richtext></body></form>");
  expectIn(dxl, "<code event=\"selection\"><formula lens:compiled=\"" + compiled +
                    "\">Status = &quot;Done&quot;</formula></code>");
  expectIn(dxl, "<code event=\"value\"><formula lens:compiled=\"" + compiled + "\">Status");
  expectIn(dxl, "<code event=\"windowtitle\"><formula lens:compiled=\"" + compiled + "\">Status");
  expectIn(dxl, "<code event=\"defaultvalue\"><formula lens:compiled=\"" + compiled + "\">Status");
}

// What has no source that says the same everywhere: a hidden formula, a code without a name, a date.
TEST_F(DesignExport, CompiledFormulasWithoutASourceForOthersKeepTheirForm) {
  for (const QByteArray compiled :
       {"FgAJAAwAWlpaWlpaWloEAAQABAAEAA==", "CgAAAAgAwQADAA==", "EgAAABAAAgD/////4YolAAMA"}) {
    source_ = create();
    const QByteArray dxl = trip(
        "<view name='V' gridstyle='dash'><code event='selection'><formula>a</formula></code>"
        "<column itemname='S' width='4'><code event='value'><formula compiled='true'>" +
        compiled + "</formula></code></column></view>");
    expectIn(dxl, "<formula compiled=\"true\">\n" + compiled + "\n</formula>");
  }
}

// A column that says more is kept as it came, with the mark and what declares it.
TEST_F(DesignExport, MarkedFormulasOfKeptElementsAreReadAgain) {
  const QByteArray compiled = "KAAAABoABQAGAFN0YXR1cwEABABEb25lCgIDAAcADAAFAAkxUzJTAA==";
  const QByteArray dxl = trip(
      "<view name='V' gridstyle='dash'><code event='selection'><formula>a</formula></code>"
      "<column itemname='S' align='right' width='4' xmlns:lens='urn:tessaly-lens:dxl'><code event='value'>"
      "<formula lens:compiled='" +
      compiled + "'>Status = \"Done\"</formula></code></column></view>");
  expectIn(dxl, "align=\"right\"");
  expectIn(dxl, "lens:compiled=\"" + compiled + "\">Status");
  StoredViewFormat format;
  ASSERT_TRUE(readViewFormat(noteOf(noteclass::View).find(u"$ViewFormat")->data(), format));
  EXPECT_EQ(format.columns.value(0).formula.toBase64(), compiled);
}

// Who changed the text of an export means the text.
TEST_F(DesignExport, AChangedSourceCountsMoreThanTheMarkBesideIt) {
  import(
      "<view name='V' xmlns:lens='urn:tessaly-lens:dxl'><code event='selection'><formula "
      "lens:compiled='KAAAABoABQAGAFN0YXR1cwEABABEb25lCgIDAAcADAAFAAkxUzJTAA=='>Status = "
      "\"Open\"</formula></code></view>");
  EXPECT_EQ(noteOf(noteclass::View).find(u"$Formula")->value, sourceFormulaValue(u"Status = \"Open\""));
}

TEST_F(DesignExport, AgentsTellTheirFormulas) {
  const QByteArray dxl = trip(
      "<agent name='A' alias='b' enabled='false' runaswebuser='true' restrictions='unrestricted' "
      "showinsearch='true'><designchange><datetime>20240105T080000,00+00</datetime></designchange>"
      "<trigger type='scheduled'><schedule type='weekly' dayofweek='friday' onweekends='false' "
      "runlocation='specific' runserver='S'><starttime><datetime>T083000,00</datetime></starttime>"
      "<startdate><datetime>20240105</datetime></startdate></schedule></trigger>"
      "<documentset type='modified'/><code event='action'><formula>FIELD A := 1; SELECT @All</formula>"
      "</code></agent>");
  expectIn(dxl, "<agent name=\"A\" alias=\"b\"");
  expectIn(dxl, "showinsearch=\"true\"");
  expectIn(dxl, "<schedule type=\"weekly\" dayofweek=\"friday\"");
  expectIn(dxl, "<documentset type=\"modified\"");
  expectIn(dxl, "<code event=\"action\"><formula>FIELD A := 1; SELECT @All</formula></code>");
  EXPECT_FALSE(dxl.contains("name=\"$AssistInfo\"")) << dxl.toStdString();
  EXPECT_FALSE(dxl.contains("name=\"$AssistAction\"")) << dxl.toStdString();
}

TEST_F(DesignExport, WhatIsKeptOfAgentsStaysInThem) {
  const QByteArray dxl = trip(
      "<agent name='A'><trigger type='scheduled'><schedule type='automatic' runlocation='local'/></trigger>"
      "<documentset type='all'><search type='byform' all='true'/></documentset>"
      "<code event='options'><lotusscript>Option Public</lotusscript></code>"
      "<code event='initialize'><lotusscript>Sub Initialize\nEnd Sub\n</lotusscript></code>"
      "<rundata><runlog>none</runlog></rundata></agent>"
      "<agent name='J'><trigger type='actionsmenu'/><documentset type='selected'/><code event='action'>"
      "<javaproject class='A.class' codepath='x'><java name='A'>x</java></javaproject></code></agent>");
  expectIn(dxl, "<schedule type=\"automatic\" runlocation=\"local\">");
  expectIn(dxl, "<search type=\"byform\" all=\"true\">");
  expectIn(dxl, "<code event=\"options\"><lotusscript>Option Public</lotusscript></code>");
  expectIn(dxl, "<code event=\"initialize\"><lotusscript>Sub Initialize\nEnd Sub\n</lotusscript></code>");
  expectIn(dxl, "<javaproject class=\"A.class\"");
}

// Items that someone changed stand beside the element, each where it was.
TEST_F(DesignExport, ChangedDesignsComeBack) {
  import(
      "<view name='V' hide='web'><code event='selection'><formula>SELECT 1</formula></code><column "
      "itemname='a' width='3'><code event='value'><formula>b</formula></code></column></view>");
  Note view = noteOf(noteclass::View);
  for (Item& item : view.items) {
    if (item.name == u"$Flags") item.value = textValue(u"odd letters");
  }
  view.items.push_front({u"First"_s, itemflag::Summary, textValue(u"1")});
  view.items.push_back({u"$UpdatedBy"_s, itemflag::Names, textValue(u"CN=A")});
  std::swap(view.items[3], view.items[5]);
  source_->notes().saveAsGiven(view);
  const QByteArray dxl = roundTrip();
  expectIn(dxl, "<view name=\"V\"");
  expectIn(dxl, "<formula>b</formula>");
  expectIn(dxl, "lens:itemorder=\"");
}

TEST_F(DesignExport, DesignsThatNoElementGivesBackAreNotes) {
  import("<form name='F' bgcolor='red'><body><richtext><par>t</par></richtext></body></form>");
  Note form = noteOf(noteclass::Form);
  for (Item& item : form.items) {
    if (item.name == u"$Body") item.value += QByteArray("\x85\xFF\x50", 3);
  }
  source_->notes().saveAsGiven(form);
  expectIn(roundTrip(), "<note class=\"form\">");
}

TEST_F(DesignExport, OrdersThatFitNoItemsAreRefused) {
  for (const char* order : {"0", "0 0 1 2 3", "x", "9 8 7"}) {
    const QString path = folder_.filePath(u"order.dxl"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "<database xmlns='http://www.lotus.com/dxl' xmlns:lens='urn:tessaly-lens:dxl'><form name='F' "
        "lens:itemorder='" +
        QByteArray(order) + "'/></database>");
    file.close();
    ImportReport report;
    DxlImporter(*source_).importFile(path, report);
    EXPECT_EQ(report.failed.size(), 1) << order;
  }
}

TEST_F(DesignExport, LayoutOfTextStandsWhereItStood) {
  expectKept("<pardef id='2' align='center' leftmargin='2in'/>",
             "</par>\n<pardef id=\"2\" align=\"center\" leftmargin=\"2in\"></pardef>\n");
  expectKept("<par>b<picture width='1px'><gif>R0lG</gif></picture>c</par>",
             "b</run><picture width=\"1px\"><gif>R0lG</gif></picture><run>");
  expectKept("<par>b<horizrule height='1px'/></par><par>c</par>",
             "b</run><horizrule height=\"1px\"></horizrule></par>");
  expectKept(
      "<par>b<run><font style='bold'/><button width='1in'><code event='click'><formula>@All</formula>"
      "</code>Go</button></run> c</par>",
      "style=\"bold\"/><button width=\"1in\"><code event=\"click\"><formula>@All</formula></code>Go"
      "</button></run><run>");
}

TEST_F(DesignExport, TablesKeepTheirLayout) {
  const QByteArray dxl = trip(
      paragraph("<table><tablerow><tablecell><par>plain</par></tablecell></tablerow></table>"
                "<table leftmargin='1in'><tablecolumn width='2in'/><tablerow><tablecell bgcolor='red'>"
                "<par>one</par><table widthtype='fitmargins'><tablerow><tablecell><par>in</par></tablecell>"
                "</tablerow></table></tablecell><tablecell columnspan='2'><par>two</par></tablecell>"
                "</tablerow></table>"));
  expectIn(dxl, "<table><tablerow><tablecell><par>");
  expectIn(dxl,
           "<table leftmargin=\"1in\"><tablecolumn width=\"2in\"></tablecolumn><tablerow><tablecell "
           "bgcolor=\"red\">");
  expectIn(dxl, "<table widthtype=\"fitmargins\"><tablerow><tablecell><par>");
}

TEST_F(DesignExport, AttachmentsKeepTheirPictures) {
  expectIn(trip(paragraph("<par>b<run><font style='italic'/><attachmentref name='a.txt' displayname='A'>"
                          "<picture width='1px'><caption>a</caption></picture></attachmentref></run></par>")),
           "<attachmentref name=\"a.txt\" displayname=\"A\"><picture width=\"1px\"><caption>a</caption>");
}

// A place that takes the begin of a table and leaves its end.
TEST_F(DesignExport, PlacesAcrossTablesAreItems) {
  for (int end = 2; end < 80; end += 2) {
    source_ = create();
    import(
        "<document><item name='Body'><richtext><par>b<horizrule height='1px'/></par><table><tablerow>"
        "<tablecell><par>c</par></tablecell></tablerow></table><par>d</par></richtext></item></document>");
    Note note = noteOf(noteclass::Document);
    for (Item& item : note.items) {
      if (item.name == u"$DXL_places") item.value = numberListValue({12, double(end)});
    }
    source_->notes().saveAsGiven(note);
    roundTrip();
  }
}

// Places that do not fit the text leave everything as items.
TEST_F(DesignExport, OddPlacesAreItems) {
  for (const QVector<double>& places : QVector<QVector<double>>{{0, 3}, {-1, 0}, {0, 1e300}, {2, 0}, {0}}) {
    source_ = create();
    import(paragraph("<par>b<horizrule height='1px'/></par>"));
    Note note = noteOf(noteclass::Document);
    for (Item& item : note.items) {
      if (item.name == u"$DXL_places") item.value = numberListValue(places);
    }
    source_->notes().saveAsGiven(note);
    expectIn(roundTrip(), "<item name=\"$DXL_horizrule\"");
  }
}

}  // namespace
}  // namespace lens
