#pragma once

/// Loading of the GL entry points, under names that no other loader in the process can take over.

namespace vellis::loader {

/// What gladLoadGL() does; true on success.
bool loadCurrentContext();

/// What gladLoadGLLoader() does; true on success, false for a null \p lookup.
bool loadThrough(void* (*lookup)(const char* name));

} // namespace vellis::loader
