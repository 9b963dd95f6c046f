// Import of DXL against a bare pass of the XML reader over the same file.
#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/store/database.h"
#include "ratio.h"

namespace lens::bench {
namespace {

constexpr qint64 kFileSize = 20 * 1024 * 1024;

// 40 % of the reader's throughput is 2.5 times its time.
const Ratio kImport("DXL import", "BM_DxlImport", "BM_XmlReader", 2.5);
const Ratio kFolder("DXL import of 1,000 small files", "BM_DxlSmallFiles", "BM_DxlSmallFilesInOne", 2.0);

QByteArray document(int number) {
  const QByteArray n = QByteArray::number(number);
  QByteArray xml = "<document form='Memo'>\n<noteinfo noteid='" + QByteArray::number(number * 4, 16) +
                   "' unid='7D42701190277D69" + QByteArray::number(number).rightJustified(16, '0') +
                   "' sequence='2'>\n<created><datetime>20240311T085502,00+01</datetime></created>\n"
                   "<modified><datetime>20240311T091244,00+01</datetime></modified>\n"
                   "<revised><datetime>20240311T091244,00+01</datetime></revised>\n"
                   "<lastaccessed><datetime>20240311T091244,00+01</datetime></lastaccessed>\n"
                   "<addedtofile><datetime>20240311T085502,00+01</datetime></addedtofile></noteinfo>\n"
                   "<updatedby><name>CN=Karin Meier/O=Acme</name></updatedby>\n"
                   "<item name='From' names='true'><text>CN=Karin Meier/O=Acme</text></item>\n"
                   "<item name='SendTo' names='true'><textlist><text>CN=Jonas Lindt/O=Acme</text><text>D. "
                   "Okafor</text></textlist></item>\n"
                   "<item name='Subject'><text>Letter number " +
                   n +
                   " about the pump station</text></item>\n"
                   "<item name='Importance'><number>2</number></item>\n"
                   "<item name='Amounts'><numberlist><number>1.5</number><number>" +
                   n +
                   "</number></numberlist></item>\n"
                   "<item name='PostedDate'><datetime>20240311T091244,00+01</datetime></item>\n"
                   "<item name='Categories'><text>Sales</text></item>\n"
                   "<item name='$Mailer'><text>Release 9.0.1</text></item>\n"
                   "<item name='Remark'><text>The delivery dates follow the letter of 4 March, see annex "
                   "B.</text></item>\n"
                   "<item name='Body'><richtext>\n<pardef id='1'/>\n";
  for (int i = 0; i < 4; ++i)
    xml += "<par def='1'><run><font size='10pt' style='bold'/>Clause " + QByteArray::number(i) +
           "</run><run><font size='10pt'/>names the two servers that hold the shared project database, and "
           "the dates\n"
           "that engineering agreed to keep.</run></par>\n";
  return xml + "</richtext></item></document>\n";
}

// One file for all runs.
const QString& sourceFile() {
  static const QTemporaryDir directory;
  static const QString path = [] {
    const QString name = directory.filePath(QStringLiteral("bench.dxl"));
    QFile file(name);
    file.open(QIODevice::WriteOnly);
    file.write(
        "<?xml version='1.0' encoding='utf-8'?>\n<database xmlns='http://www.lotus.com/dxl' "
        "title='Bench'>\n");
    for (int number = 1; file.size() < kFileSize; ++number) file.write(document(number));
    file.write("</database>\n");
    return name;
  }();
  return path;
}

void BM_DxlImport(benchmark::State& state) {
  const QString source = sourceFile();
  const QTemporaryDir directory;
  int number = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const QString path = directory.filePath(QStringLiteral("%1.nsf").arg(++number));
    auto database = Database::create(path, {});
    state.ResumeTiming();
    ImportReport report;
    DxlImporter(*database).importFile(source, report);
    if (!report.failed.isEmpty()) state.SkipWithError("the import failed");
    state.PauseTiming();
    database.reset();
    QFile::remove(path);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * QFile(source).size());
}
BENCHMARK(BM_DxlImport)->Unit(benchmark::kMillisecond)->UseRealTime();

// A thousand documents, each in a file of its own or all in one.
void importThousand(benchmark::State& state, bool apart) {
  constexpr int kDocuments = 1000;
  const QTemporaryDir directory;
  const auto write = [&](const QString& name, const QByteArray& xml) {
    QFile file(directory.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(xml) != xml.size())
      state.SkipWithError("a file could not be written");
  };
  QByteArray all = "<database>";
  for (int number = 1; number <= kDocuments; ++number) {
    if (apart)
      write(QStringLiteral("%1.dxl").arg(number), document(number));
    else
      all += document(number);
  }
  if (!apart) write(QStringLiteral("all.dxl"), all + "</database>");
  const QTemporaryDir databases;
  int made = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto database = Database::create(databases.filePath(QStringLiteral("%1.nsf").arg(++made)), {});
    state.ResumeTiming();
    ImportReport report;
    DxlImporter(*database).importFiles({directory.path()}, report);
    if (report.notes != kDocuments) state.SkipWithError("the import failed");
    state.PauseTiming();
    database.reset();
    state.ResumeTiming();
  }
}

void BM_DxlSmallFiles(benchmark::State& state) {
  importThousand(state, true);
}
BENCHMARK(BM_DxlSmallFiles)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_DxlSmallFilesInOne(benchmark::State& state) {
  importThousand(state, false);
}
BENCHMARK(BM_DxlSmallFilesInOne)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_XmlReader(benchmark::State& state) {
  const QString source = sourceFile();
  for (auto _ : state) {
    QFile file(source);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) benchmark::DoNotOptimize(xml.readNext());
  }
  state.SetBytesProcessed(state.iterations() * QFile(source).size());
}
BENCHMARK(BM_XmlReader)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace lens::bench
