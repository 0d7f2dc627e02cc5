#pragma once

#include <dlfcn.h>

namespace noctra {

/// Sets `function` to the function called `name` of an opened library; to null, and returns false,
/// where the library has none. The caller answers for its type.
template <typename Function>
bool findSymbol(void* library, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(::dlsym(library, name));
    return function != nullptr;
}

} // namespace noctra
