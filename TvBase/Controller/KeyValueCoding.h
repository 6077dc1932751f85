#pragma once

#include "TvBase/Util/String.h"

#include <boost/any.hpp>

#include <vector>

namespace Controller
{

/// Lookup of published values by name, so that a layout file can bind a control to a parameter
/// through a dotted key path ("Design.SnapToGuides"). An object that publishes parameters
/// overrides `GetValueForKey` to give, for each of its keys, a `boost::any` holding a
/// `Controller::BoolParam*`, `Controller::FloatParam*`, `Controller::EnumParam*` or another
/// `Controller::KeyValueCoding*` (exactly these pointer types: a derived pointer is not found).
class KeyValueCoding
{
public:
    virtual ~KeyValueCoding() = default;

    /// The value published under `key`; empty here and for unknown keys.
    virtual boost::any GetValueForKey(String const& key);
    /// Cuts `path` at its first "."; without one this is `GetValueForKey(path)`. Otherwise the
    /// head must give a non-null `KeyValueCoding*`, which resolves the tail; anything else gives
    /// an empty any.
    virtual boost::any GetValueForKeyPath(String const& path);
    /// The keys published here, for menus that offer them; none here.
    virtual std::vector<String> CopyKeys();
};

} // namespace Controller
