// Script libraries and the database script; image, file and style sheet resources.
#pragma once

#include "embedded/dxl/design_reader.h"

namespace lens {

class LibraryReader : public DesignReader {
 public:
  LibraryReader(const DesignKind& kind, ReadContext& context, Note& note);
  bool readChild() override;
  void finish() override;

 private:
  const bool databaseScript_;
  ScriptText script_;
  QString javaScript_;
  bool java_ = false;
};

class ResourceReader : public DesignReader {
 public:
  ResourceReader(const DesignKind& kind, ReadContext& context, Note& note);
  bool readChild() override;
  void finish() override;

 private:
  const bool styleSheet_;
  qint64 size_ = -1;
};

// Rich text records that carry a file or an image in segments.
inline constexpr quint8 kImageSegment = 124, kFileSegment = 0x60;
inline constexpr qsizetype kFileSegmentSpare = 8;  // bytes between the sizes and the data
inline constexpr quint16 kGifImage = 1, kJpegImage = 2;
QByteArray fileRecords(const QByteArray& bytes);
QByteArray imageRecords(quint16 imageType, const QByteArray& bytes);

}  // namespace lens
