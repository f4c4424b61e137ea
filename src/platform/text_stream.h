#pragma once

#include <fstream>

// Opens a text file for reading, or (deleting any existing file first) for writing. Numbers pass the stream
// in the classic "C" locale; the path is resolved under the system's default locale, which is the calling
// thread's locale only during the call; the process's global locale is not touched. Four attempts; after the
// fourth failure the stream's fail bit is set.
void OpenTextStreamWithRetry(std::ifstream& stream, const char* path);
void OpenTextStreamWithRetry(std::ofstream& stream, const char* path);
