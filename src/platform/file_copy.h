#pragma once

// Copies a file; with failIfExists a target that exists already is left alone and the call fails. True on
// success.
bool CopyFileA(const char* from, const char* to, bool failIfExists);
