// Stands in for the client's library, as a release with handles of memory of one word, or with LENS_WIDE of
// two. It answers from a small script, ends the process over a zero handle as the real one does, and lacks
// the console.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#ifdef LENS_WIDE
using Handle = std::uint32_t;
#else
using Handle = std::uint16_t;
#endif

struct Block {
  Handle pool;
  std::uint16_t block;
};

using Word = std::uint16_t;

static void requireHandle(std::uint32_t handle) {
  if (handle == 0) std::abort();
}

extern "C" {

static int depth = 0;

Word NotesInitExtended(int count, const char* arguments) {
  ++depth;
  return count == 0 && *arguments == '\0' ? 0 : 1;
}
void NotesTerm() {
  --depth;
}
Word OSPathNetConstruct(const char* port, const char* server, const char* file, char* path) {
  if (port) return 1;
  std::strcpy(path, server);
  if (*server) std::strcat(path, "!!");
  std::strcat(path, file);
  return 0;
}
Word NSFDbOpen(const char* path, std::uint32_t* db) {
  if (std::strcmp(path, "mail.nsf") != 0) return 0x4103;
  *db = 0x00020010;
  return Word(depth == 0);
}
Word NSFDbClose(std::uint32_t db) {
  requireHandle(db);
  return Word(db != 0x00020010);
}
Word NSFNoteOpen(std::uint32_t db, std::uint32_t noteId, Word flags, std::uint32_t* note) {
  requireHandle(db);
  if (noteId != 0xFFFF0010 || flags != 0) return 0x0227;
  *note = 0x00030020;
  return 0;
}
Word NSFNoteClose(std::uint32_t note) {
  requireHandle(note);
  return 0;
}
// The item "Far" has a block whose own word is 0, as one with much before it might.
Word NSFItemInfo(std::uint32_t note, const char* name, Word length, Block* item, Word* type, Block* value,
                 std::uint32_t* valueLength) {
  requireHandle(note);
  const bool first = std::strncmp(name, "Far", length) == 0;
  if (!first && std::strncmp(name, "Subject", length) != 0) return 0x0222;
  *item = {0x7A01, 0x0011};
  *type = 0x0500;
  *value = {0x7A01, Word(first ? 0 : 0x0022)};
  if (first) item->block = 0;
  *valueLength = 0x00010002;
  return 0;
}
Word NIFFindDesignNote(std::uint32_t db, const char*, Word noteClass, std::uint32_t* noteId) {
  requireHandle(db);
  *noteId = 0x11A;
  return Word(noteClass != 0x200);
}
void ODSReadMemory(const char** from, Word type, void* target, Word count) {
  const std::size_t size = type == 0 ? 2 * std::size_t(count) : 0;
  std::memcpy(target, *from, size);
  *from += size;
}
Word ConvertTIMEDATEToText(const void* region, const void* format, const std::uint32_t* time, char* text,
                           Word limit, Word* length) {
  if (region || format || time[0] != 1 || time[1] != 2 || limit != 80) return 0x040D;
  std::memcpy(text, "01.02.2003", 10);
  *length = 10;
  return 0;
}
Word ListGetNumEntries(const char* list, int prefixed) {
  return Word(prefixed ? list[2] : list[0]);
}
Word ListGetText(const char* list, int, Word index, const char** text, Word* length) {
  if (index > 0) return 0x0605;
  *text = list + 4;
  *length = 3;
  return 0;
}
Word NSGetServerList(const char* port, Handle* list) {
  *list = 0x7FFE;
  return Word(port != nullptr);
}
void* OSLockObject(Handle handle) {
  static char memory[] = "locked";
  requireHandle(handle);
  return handle == 0x7FFE ? memory : nullptr;
}
int OSUnlockObject(Handle handle) {
  requireHandle(handle);
  return 1;
}
Word OSMemFree(Handle handle) {
  requireHandle(handle);
  return Word(handle != 0x7FFE);
}
// Fills all that it may, as a translation into longer bytes does.
Word OSTranslate(Word mode, const char* source, Word length, char* target, Word limit) {
  if (mode != 1 || length == 0) return 0;
  for (Word i = 0; i < limit; ++i) target[i] = source[0];
  return limit;
}
Word OSLoadString(const void* module, Word status, char* text, Word limit) {
  if (module || status != 0x0103 || limit < 20) return 0;
  std::memcpy(text, "File does not exist", 20);
  return 19;
}
Word NSFFormulaCompile(const char* name, Word nameLength, const char* formula, Word length, Handle* compiled,
                       Word* compiledLength, Word* error, Word* line, Word* column, Word* offset,
                       Word* errorLength) {
  if (name || nameLength != 0) return 1;
  if (std::strncmp(formula, "@All", length) == 0) {
    *compiled = 0x7FFE;
    *compiledLength = 12;
    return 0;
  }
  *compiled = 0x1234;
  *error = 0x051B, *line = 1, *column = 2, *offset = 3, *errorLength = 4;
  return 0x0501;
}
Word NSFComputeStart(Word flags, const char* formula, Handle* compute) {
  *compute = 0x0777;
  return Word(flags != 0 || !formula);
}
Word NSFComputeEvaluate(Handle compute, std::uint32_t note, Handle* result, Word* length, int* matches,
                        int* deletes, int* modified) {
  requireHandle(compute);
  *result = 0x7FFE;
  *length = 6;
  *matches = note != 0, *deletes = 0, *modified = -1;
  return 0;
}
Word NSFComputeStop(Handle compute) {
  requireHandle(compute);
  return 0;
}
}
