#include "TvBase/Util/Module.h"

#include <dlfcn.h>

#include <cstdint>
#include <fstream>

namespace Util
{

namespace
{

bool machineArchitectureOf(std::uint32_t cpuType, MachineArchitecture& out)
{
    switch (cpuType)
    {
    case 7:
        out = MachineArchitecture_i386;
        return true;
    case 0x1000007:
        out = MachineArchitecture_x86_64;
        return true;
    case 18:
        out = MachineArchitecture_ppc;
        return true;
    case 0x1000012:
        out = MachineArchitecture_ppc64;
        return true;
    default:
        return false;
    }
}

std::uint32_t readWord(unsigned char const* bytes, bool bigEndian)
{
    if (bigEndian)
        return std::uint32_t(bytes[0]) << 24 | std::uint32_t(bytes[1]) << 16 |
               std::uint32_t(bytes[2]) << 8 | std::uint32_t(bytes[3]);
    return std::uint32_t(bytes[3]) << 24 | std::uint32_t(bytes[2]) << 16 |
           std::uint32_t(bytes[1]) << 8 | std::uint32_t(bytes[0]);
}

bool readBytes(std::ifstream& file, unsigned char* into, std::size_t count)
{
    file.read(reinterpret_cast<char*>(into), static_cast<std::streamsize>(count));
    return static_cast<std::size_t>(file.gcount()) == count;
}

} // namespace

Module::Module(String const& modulePath) : path(modulePath) {}

Module::~Module()
{
    if (IsLoaded())
        Unload();
}

bool Module::Load()
{
    if (IsLoaded())
        return true;
    if (path.IsEmpty())
        return false;
    library = dlopen(path.CStr(), RTLD_LAZY | RTLD_LOCAL);
    return library != nullptr;
}

void* Module::GetFunction(String const& functionName) const
{
    if (!IsLoaded())
        return nullptr;
    return dlsym(library, functionName.CStr());
}

void Module::Unload()
{
    if (!IsLoaded())
        return;
    if (!keepLoaded)
    {
        // A failing dlclose leaves nothing to recover; the handle is forgotten either way.
        dlclose(library);
    }
    library = nullptr;
}

String Module::GetBundleInfoValue(String const&) const
{
    return String();
}

std::vector<MachineArchitecture> Module::GetArchitectures() const
{
    std::vector<MachineArchitecture> found;
    std::ifstream file(path.CStr(), std::ios::binary);
    unsigned char magicBytes[4];
    if (!file || !readBytes(file, magicBytes, 4))
        return found;
    std::uint32_t const magic = readWord(magicBytes, true);
    MachineArchitecture architecture;
    if (magic == 0xFEEDFACE || magic == 0xFEEDFACF || magic == 0xCEFAEDFE || magic == 0xCFFAEDFE)
    {
        // The rest of the header (28 or 32 bytes in all) must be there; the CPU type follows
        // the magic in the header's own byte order.
        bool const bigEndian = magic == 0xFEEDFACE || magic == 0xFEEDFACF;
        bool const wide = magic == 0xFEEDFACF || magic == 0xCFFAEDFE;
        unsigned char header[28];
        std::size_t const rest = wide ? 28 : 24;
        if (!readBytes(file, header, rest))
            return found;
        if (machineArchitectureOf(readWord(header, bigEndian), architecture))
            found.push_back(architecture);
    }
    else if (magic == 0xCAFEBABE)
    {
        unsigned char countBytes[4];
        if (!readBytes(file, countBytes, 4))
            return found;
        std::uint32_t const count = readWord(countBytes, true);
        if (count >= 20)
            return found;
        for (std::uint32_t i = 0; i < count; ++i)
        {
            unsigned char entry[20];
            if (!readBytes(file, entry, sizeof entry))
                break;
            if (machineArchitectureOf(readWord(entry, true), architecture))
                found.push_back(architecture);
        }
    }
    return found;
}

} // namespace Util
