#pragma once

#include "TvBase/Controller/FloatParamMemory.h"

namespace Util
{
class ConfigFile;
}

namespace Controller
{

/// A continuous parameter kept in memory, read from one value of a settings domain at
/// construction and written back only by `WriteToConfigFile` (never by a change, never by the
/// destructor). A null `config` makes this a plain memory parameter. The settings object is not
/// owned and must outlive this parameter.
class FloatParamConfigFile : public FloatParamMemory
{
public:
    FloatParamConfigFile(float defaultValue, value_range<float> range, Util::ConfigFile* config,
                         String key);

    /// Reads the stored value (or the default) and sets it, clamped, inside a gesture unless
    /// one is open already. Does nothing without settings.
    void ReadFromConfigFile();
    /// Writes the current value with `SetFloat`. Does nothing without settings.
    void WriteToConfigFile() const;

    String const& GetKey() const { return key; }

private:
    Util::ConfigFile* config;
    String key;
};

} // namespace Controller
