#pragma once

#include <string>

namespace Updater
{

/// The products registered for the check, for `tvcheck --list`: one line per product,
/// "product<TAB>version<TAB>where", where is "user" or "system" (the settings of every user),
/// with ", this host" for the per-host files. The version is the one the check reads, from the
/// first settings file that holds it.
class ProductList
{
public:
    static std::string Describe(std::string const& domain);
};

} // namespace Updater
