#include "TvBase/Controller/BoolParamConfigFile.h"

#include "TvBase/Util/ConfigFile.h"

namespace Controller
{

BoolParamConfigFile::BoolParamConfigFile(bool defaultValue, Util::ConfigFile* config, String key,
                                         bool writeThrough)
    : BoolParamMemory(defaultValue), config(config), key(key), writeThrough(writeThrough)
{
    ReadFromConfigFile();
    // Connected after the first read, so that reading a stored value never writes it back.
    valueChanged.Connect(&BoolParamConfigFile::slotValueChanged, this);
}

void BoolParamConfigFile::ReadFromConfigFile()
{
    if (!config)
        return;
    SetWithGesture(config->GetBool(key, GetDefault()));
}

void BoolParamConfigFile::WriteToConfigFile() const
{
    if (config)
        config->SetBool(key, get());
}

void BoolParamConfigFile::slotValueChanged(bool const& newValue)
{
    if (writeThrough && config)
        config->SetBool(key, newValue);
}

} // namespace Controller
