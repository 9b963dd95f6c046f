// How functions of the client's libraries are called: as the platform calls those of its own system.
#pragma once

#include <QtGlobal>

#ifdef Q_OS_WIN
#define LENS_LIBRARY_CALL __stdcall
#else
#define LENS_LIBRARY_CALL
#endif
