#pragma once

/// Opens a library at run time, for the rest of the process. Where that fails, says so on standard
/// error and gives null.
void* openPlugIn(const char* path);

/// The function of that name in an open library.
void* findInPlugIn(void* plugIn, const char* name);
