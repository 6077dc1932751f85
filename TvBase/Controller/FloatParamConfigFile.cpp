#include "TvBase/Controller/FloatParamConfigFile.h"

#include "TvBase/Util/ConfigFile.h"

namespace Controller
{

FloatParamConfigFile::FloatParamConfigFile(float defaultValue, value_range<float> range,
                                           Util::ConfigFile* config, String key)
    : FloatParamMemory(defaultValue, range), config(config), key(key)
{
    ReadFromConfigFile();
}

void FloatParamConfigFile::ReadFromConfigFile()
{
    if (!config)
        return;
    SetWithGesture(config->GetFloat(key, GetDefault()));
}

void FloatParamConfigFile::WriteToConfigFile() const
{
    if (config)
        config->SetFloat(key, get());
}

} // namespace Controller
