#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace Util
{

/// Processor families named in executable headers.
enum MachineArchitecture
{
    MachineArchitecture_i386 = 0,
    MachineArchitecture_x86_64 = 1,
    MachineArchitecture_ppc = 3,
    MachineArchitecture_ppc64 = 4
};

/// A dynamic library opened on demand. This host has no bundles. Not copyable; the destructor
/// unloads the library unless `SetKeepLoaded(true)` was called.
class Module
{
public:
    /// A library with that file name or path (searched as `dlopen` searches).
    explicit Module(String const& path);
    ~Module();
    Module(Module const&) = delete;
    Module& operator=(Module const&) = delete;

    /// True at once when loaded; false for an empty path. Opens in the lazy, local mode and
    /// returns whether the library is now loaded. A failed load reports nothing more.
    bool Load();
    bool IsLoaded() const { return library != nullptr; }
    /// The address of the symbol; null when not loaded or not found.
    void* GetFunction(String const& name) const;
    /// Nothing when not loaded. With keep-loaded set the library stays mapped, and only the
    /// handle is forgotten.
    void Unload();
    void SetKeepLoaded(bool keep) { keepLoaded = keep; }
    /// Bundles only; a library has no info dictionary, so this is always null here.
    String GetBundleInfoValue(String const& key) const;
    /// The processor families of the file as its executable header names them (plain or fat
    /// form, either byte order). Empty for files shorter than 4 bytes, unreadable files, other
    /// formats, and fat headers claiming 20 or more entries.
    std::vector<MachineArchitecture> GetArchitectures() const;

    String const& GetPath() const { return path; }

private:
    String path;
    void* library = nullptr;
    bool keepLoaded = false;
};

} // namespace Util
