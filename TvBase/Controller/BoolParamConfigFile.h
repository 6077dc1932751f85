#pragma once

#include "TvBase/Controller/BoolParamMemory.h"

namespace Util
{
class ConfigFile;
}

namespace Controller
{

/// An on/off parameter kept in memory and mirrored into one value of a settings domain.
///
/// Construction reads the stored value (the default when none is stored). With `writeThrough`
/// every change is written to the settings at once; otherwise only `WriteToConfigFile` writes.
/// The destructor writes nothing. A null `config` makes this a plain memory parameter. The
/// settings object is not owned and must outlive this parameter.
class BoolParamConfigFile : public BoolParamMemory
{
public:
    BoolParamConfigFile(bool defaultValue, Util::ConfigFile* config, String key, bool writeThrough);

    /// Reads the stored value (or the default) and sets it, inside a gesture unless one is open
    /// already. Does nothing without settings.
    void ReadFromConfigFile();
    /// Writes the current value with `SetBool`. Does nothing without settings.
    void WriteToConfigFile() const;

    String const& GetKey() const { return key; }
    bool IsWriteThrough() const { return writeThrough; }

private:
    void slotValueChanged(bool const& newValue);

    Util::ConfigFile* config;
    String key;
    bool writeThrough;
};

} // namespace Controller
