// Stands in for the console library: replies with what it was asked.
#include <cstdio>

extern "C" short RemoteCommand(const char* server, const char* command, char* response) {
  return short(std::snprintf(response, 32767, "%s: %s", server, command));
}
