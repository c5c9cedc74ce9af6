// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/linked/late_libraries.h"

#include <dlfcn.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <span>

#include "apps/orvprint/linked/late_functions.h"
#include "apps/orvprint/process/immediate_exit.h"

namespace {

std::mutex mutex;  // guards the table while it is written

std::span<const LateLibrary> Libraries() { return {kLateLibraries, kLateLibraryCount}; }

/// Makes the table writable while an object exists; otherwise it is read-only, like all relocated tables.
class WritableTable {
public:
    WritableTable() : isWritable_(Protect(PROT_READ | PROT_WRITE)) {}
    WritableTable(const WritableTable&) = delete;
    WritableTable& operator=(const WritableTable&) = delete;
    ~WritableTable() { Protect(PROT_READ); }
    bool IsWritable() const { return isWritable_; }

private:
    static bool Protect(int rights) { return mprotect(orvLateTable, kLateTableSize, rights) == 0; }
    bool isWritable_;
};

/// Stores the addresses of a library's functions, all or none.
bool FillTable(const LateLibrary& library, void* handle, std::string& error) {
    for (const char* name = library.names; *name; name += std::strlen(name) + 1)
        if (!dlsym(handle, name)) {
            error = std::string(library.name) + ": no function " + name;
            return false;
        }
    const WritableTable table;
    if (!table.IsWritable()) {
        error = std::string(library.name) + ": " + std::strerror(errno);
        return false;
    }
    void** address = orvLateTable + library.first;
    for (const char* name = library.names; *name; name += std::strlen(name) + 1)
        __atomic_store_n(address++, dlsym(handle, name), __ATOMIC_RELAXED);
    return true;
}

bool Load(const LateLibrary& library, std::string& error) {
    const std::lock_guard lock(mutex);
    bool& isLoaded = orvIsLateLoaded[&library - kLateLibraries];
    if (isLoaded) return true;
    void* const handle = dlopen(library.name, RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* const reason = dlerror();
        error = reason ? reason : std::string(library.name) + " cannot be loaded";
        return false;
    }
    isLoaded = FillTable(library, handle, error);
    return isLoaded;
}

/// The library of a slot: the last one that begins at or before it.
const LateLibrary& LibraryOf(std::size_t place) {
    const auto behind =
        std::upper_bound(Libraries().begin(), Libraries().end(), place,
                         [](std::size_t at, const LateLibrary& library) { return at < library.first; });
    return *(behind - 1);
}

}  // namespace

bool LoadLateLibraries(std::initializer_list<std::string_view> libraries, std::string& error) {
    return std::all_of(Libraries().begin(), Libraries().end(), [&](const LateLibrary& library) {
        const bool isWanted = std::any_of(libraries.begin(), libraries.end(), [&](std::string_view start) {
            return std::string_view(library.name).starts_with(start);
        });
        return !isWanted || Load(library, error);
    });
}

/// Called by a stub whose library is not yet loaded.
/// @return the address for that slot
extern "C" void* orvResolveLateFunction(std::size_t place) {
    std::string error;
    if (!Load(LibraryOf(place), error)) ExitImmediately("orvprint: " + error + "; install it anew\n");
    return __atomic_load_n(orvLateTable + place, __ATOMIC_RELAXED);
}
