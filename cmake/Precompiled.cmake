# Headers that nearly every file includes are read once for all files of a target. A target with the same compile options
# takes them from another one: lens_precompiled(TARGET FROM other), else lens_precompiled(TARGET header...).
set(LENS_CORE_HEADERS <QByteArray> <QDateTime> <QDir> <QFile> <QHash> <QLocale> <QSet> <QString> <QStringList> <QVector>
    <QtEndian> <algorithm> <functional> <map> <memory> <optional> <utility> <variant> <vector>)
set(LENS_WINDOW_HEADERS ${LENS_CORE_HEADERS} <QApplication> <QKeyEvent> <QLabel> <QTimer> <QWidget>)

function(lens_precompiled target)
  # Who compiles file by file wants to see what each file includes; other compilers cannot read these.
  if(NOT LENS_UNITY OR NOT LENS_PRECOMPILED)
    return()
  endif()
  if(ARGV1 STREQUAL FROM)
    target_precompile_headers(${target} REUSE_FROM ${ARGV2})
  else()
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
