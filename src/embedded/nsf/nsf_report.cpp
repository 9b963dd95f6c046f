#include "embedded/nsf/nsf_report.h"

#include <QJsonArray>
#include <QStringList>
#include <algorithm>

#include "notes/literals.h"

namespace lens {
namespace {

QLatin1String kindText(NsfProblemKind kind) {
  switch (kind) {
    case NsfProblemKind::Header:
      return "file"_L1;
    case NsfProblemKind::Superblock:
      return "superblock"_L1;
    case NsfProblemKind::Descriptors:
      return "descriptor block"_L1;
    case NsfProblemKind::IdTable:
      return "table of IDs"_L1;
    case NsfProblemKind::SummaryBucket:
      return "bucket"_L1;
    case NsfProblemKind::NoteRecord:
      return "note"_L1;
    case NsfProblemKind::Item:
      return "item"_L1;
    case NsfProblemKind::NonSummary:
      return "data of note"_L1;
    case NsfProblemKind::ObjectRecord:
      return "object"_L1;
    case NsfProblemKind::Attachment:
      return "attachment"_L1;
    case NsfProblemKind::Acl:
      return "access control list"_L1;
    case NsfProblemKind::NoteList:
      return "list of documents"_L1;
  }
  return {};
}

// Copies and buckets have numbers, everything else IDs.
QString idText(const NsfProblem& problem) {
  const bool isNumber = problem.kind == NsfProblemKind::Superblock ||
                        problem.kind == NsfProblemKind::Descriptors ||
                        problem.kind == NsfProblemKind::SummaryBucket;
  return isNumber ? QString::number(problem.id) : QString::number(problem.id, 16).toUpper();
}

QString wordText(quint16 word) {
  return u"%1"_s.arg(word, 4, 16, QLatin1Char('0')).toUpper();
}

QString problemLine(const NsfProblem& problem) {
  QString line = kindText(problem.kind);
  if (problem.id != 0) line += u' ' + idText(problem);
  if (problem.position >= 0) line += u" at byte %1"_s.arg(problem.position);
  return (problem.isWarning ? u"Warning: "_s : QString()) + line + u": "_s + problem.reason;
}

QString countLine(QLatin1String what, int proven, int found) {
  return u"%1: %2 of %3 read"_s.arg(what).arg(proven).arg(found);
}

QString copyLine(QLatin1String what, int slot, bool isOlder) {
  if (slot == 0) return u"%1: none is whole"_s.arg(what);
  return u"%1: copy %2%3"_s.arg(what).arg(slot).arg(isOlder ? u", older: a newer one is damaged"_s
                                                            : QString());
}

QJsonObject problemJson(const NsfProblem& problem) {
  QJsonObject json{{u"kind"_s, QString(kindText(problem.kind))},
                   {u"reason"_s, problem.reason},
                   {u"warning"_s, problem.isWarning}};
  if (problem.id != 0) json[u"id"_s] = idText(problem);
  if (problem.position >= 0) json[u"position"_s] = problem.position;
  return json;
}

}  // namespace

void NsfReport::add(NsfProblem problem) {
  if (problems.size() < kMaxProblems)
    problems.push_back(std::move(problem));
  else
    ++moreProblems;
}

bool NsfReport::isComplete() const {
  return moreProblems == 0 && std::all_of(problems.cbegin(), problems.cend(),
                                          [](const NsfProblem& problem) { return problem.isWarning; });
}

QString NsfReport::text() const {
  QStringList lines;
  if (!path.isEmpty()) lines += u"File: "_s + path;
  lines += u"Size: %1 bytes%2"_s.arg(size).arg(truncated ? u", cut short"_s : QString());
  lines += u"ODS version: %1%2"_s.arg(odsVersion)
               .arg(isTestedVersion ? QString() : u", which has not been tested"_s);
  lines += u"Title: "_s + title;
  lines += u"Replica ID: "_s + replicaId;
  lines += u"Class %1, flags %2, replication options %3, cutoff %4 days"_s
               .arg(wordText(databaseClass), wordText(databaseFlags), wordText(replicationOptions))
               .arg(cutoffDays);
  if (!refused.isEmpty()) {
    lines += u"Not opened. "_s + refused;
  } else {
    lines += copyLine("Superblock"_L1, superblock, olderSuperblock);
    lines += copyLine("Descriptor block"_L1, descriptors, olderDescriptors);
    if (bucketsScanned) lines += u"Buckets were looked for through the whole file."_s;
    if (salvaged)
      lines += u"Notes were looked for without the tables: deleted and outdated ones may be among them."_s;
    lines += countLine("Notes"_L1, notesProven, notesFound);
    lines += countLine("Deletion stubs"_L1, stubsProven, stubsFound);
    lines += countLine("Objects"_L1, objectsProven, objectsFound);
    lines += u"Buckets: %1 read, %2 damaged, %3 with an interrupted write"_s.arg(buckets)
                 .arg(bucketsDamaged)
                 .arg(bucketsTorn);
    if (dataBuckets > 0)
      lines +=
          u"Buckets of data: %1, a form that is guessed: only what proves itself is shown"_s.arg(dataBuckets);
    lines += u"Documents by the file's own list: %1; listed and not read: %2; read and not listed: %3"_s
                 .arg(listedDocuments)
                 .arg(listedButMissing)
                 .arg(foundButUnlisted);
    lines += u"Items of %1 notes: %2; damaged: %3; unreadable: %4; encrypted: %5"_s.arg(notesRead)
                 .arg(items)
                 .arg(itemsDamaged)
                 .arg(itemsUnreadable)
                 .arg(itemsSealed);
    lines +=
        u"Data blocks: %1; with a wrong checksum: %2"_s.arg(nonSummaryBlocks).arg(nonSummaryChecksumsWrong);
  }
  for (const NsfProblem& problem : problems) lines += problemLine(problem);
  if (moreProblems > 0) lines += u"... and %1 more"_s.arg(moreProblems);
  return lines.join(u'\n') + u'\n';
}

QJsonObject NsfReport::json() const {
  QJsonArray list;
  for (const NsfProblem& problem : problems) list.append(problemJson(problem));
  return {{u"path"_s, path},
          {u"size"_s, size},
          {u"odsVersion"_s, odsVersion},
          {u"testedVersion"_s, isTestedVersion},
          {u"title"_s, title},
          {u"replicaId"_s, replicaId},
          {u"databaseId"_s, databaseId},
          {u"databaseClass"_s, wordText(databaseClass)},
          {u"databaseFlags"_s, wordText(databaseFlags)},
          {u"replicationOptions"_s, wordText(replicationOptions)},
          {u"cutoffDays"_s, cutoffDays},
          {u"truncated"_s, truncated},
          {u"refused"_s, refused},
          {u"superblock"_s, superblock},
          {u"olderSuperblock"_s, olderSuperblock},
          {u"descriptors"_s, descriptors},
          {u"olderDescriptors"_s, olderDescriptors},
          {u"bucketsScanned"_s, bucketsScanned},
          {u"salvaged"_s, salvaged},
          {u"entries"_s, entries},
          {u"notesFound"_s, notesFound},
          {u"notesProven"_s, notesProven},
          {u"stubsFound"_s, stubsFound},
          {u"stubsProven"_s, stubsProven},
          {u"objectsFound"_s, objectsFound},
          {u"objectsProven"_s, objectsProven},
          {u"buckets"_s, buckets},
          {u"bucketsDamaged"_s, bucketsDamaged},
          {u"bucketsTorn"_s, bucketsTorn},
          {u"dataBuckets"_s, dataBuckets},
          {u"listedDocuments"_s, listedDocuments},
          {u"listedButMissing"_s, listedButMissing},
          {u"foundButUnlisted"_s, foundButUnlisted},
          {u"complete"_s, isComplete()},
          {u"notesRead"_s, notesRead},
          {u"items"_s, items},
          {u"itemsDamaged"_s, itemsDamaged},
          {u"itemsUnreadable"_s, itemsUnreadable},
          {u"itemsSealed"_s, itemsSealed},
          {u"dataBlocks"_s, nonSummaryBlocks},
          {u"dataBlocksWithWrongChecksum"_s, nonSummaryChecksumsWrong},
          {u"problems"_s, list},
          {u"moreProblems"_s, moreProblems}};
}

}  // namespace lens
