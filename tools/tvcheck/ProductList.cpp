#include "tools/tvcheck/ProductList.h"

#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/detail/ConfigStore.h"

#include <algorithm>
#include <vector>

namespace Updater
{

using namespace Util::detail;

namespace
{

char const* scopeName(ConfigScope scope)
{
    switch (scope)
    {
    case ScopeCurrentUserCurrentHost:
        return "user, this host";
    case ScopeCurrentUserAnyHost:
        return "user";
    case ScopeAnyUserCurrentHost:
        return "system, this host";
    default:
        return "system";
    }
}

} // namespace

std::string ProductList::Describe(std::string const& domain)
{
    // The order in which the store reads: the user before everybody, this host before any.
    static ConfigScope const order[] = {ScopeCurrentUserCurrentHost, ScopeCurrentUserAnyHost,
                                        ScopeAnyUserCurrentHost, ScopeAnyUserAnyHost};
    Util::ConfigFile config(String(domain.c_str()));
    std::vector<String> products;
    config.GetKeyNames(products, "InstalledProducts");
    ConfigStore& store = ConfigStore::Get(domain);

    std::string out;
    for (String const& product : products)
    {
        std::string const name = std::string("InstalledProducts/") + product.CStr() + "/";
        std::string const valueName = name + "CurrentVersion";
        char const* where = nullptr;
        for (ConfigScope scope : order)
        {
            std::vector<std::string> const names = store.Names(scope);
            if (!where && std::find(names.begin(), names.end(), valueName) != names.end())
                where = scopeName(scope);
        }
        // A product key without its version still counts as installed; say where it is.
        for (ConfigScope scope : order)
            for (std::string const& held : store.Names(scope))
                if (!where && held.compare(0, name.size(), name) == 0)
                    where = scopeName(scope);
        String const version = config.GetString(String(valueName.c_str()), "");
        out += std::string(product.CStr()) + "\t" +
               (version.IsEmpty() ? std::string("(no version)") : std::string(version.CStr())) +
               "\t" + (where ? where : "unknown") + "\n";
    }
    return out;
}

} // namespace Updater
