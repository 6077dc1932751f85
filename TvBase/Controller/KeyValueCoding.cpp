#include "TvBase/Controller/KeyValueCoding.h"

#include <cstring>
#include <typeinfo>

namespace Controller
{

boost::any KeyValueCoding::GetValueForKey(String const&)
{
    return boost::any();
}

boost::any KeyValueCoding::GetValueForKeyPath(String const& path)
{
    checked_value<unsigned int> const dot = path.Find('.');
    if (!dot.IsPresent())
        return GetValueForKey(path);

    boost::any const head = GetValueForKey(path.Left(dot.Get()));
    // Compared by the type's name rather than by identity, so that a coding object published
    // from another shared library is still recognised.
    if (std::strcmp(head.type().name(), typeid(KeyValueCoding*).name()) != 0)
        return boost::any();
    KeyValueCoding* const next = *boost::unsafe_any_cast<KeyValueCoding*>(&head);
    if (!next)
        return boost::any();
    return next->GetValueForKeyPath(path.Mid(dot.Get() + 1));
}

std::vector<String> KeyValueCoding::CopyKeys()
{
    return std::vector<String>();
}

} // namespace Controller
