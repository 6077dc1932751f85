#pragma once

#include "Updater/app/VersionsText.h"

#include <string>

namespace Updater
{

/// Says in words what the update decision makes of a versions file, for administrators who
/// wonder why a product is or is not offered: per installed product the decision and its
/// reason, with the surprises of reading a version as one number ("1.10 reads as 1.1, not newer
/// than installed 1.9"), and then the lines of the file that were skipped and why. It follows
/// the rules of `ParseVersionsText` step by step, and the tests hold the two together.
class DecisionExplainer
{
public:
    /// The explanation, one line per statement, each ending in a line break.
    static std::string Explain(String const& text, VersionSettings& settings);

    /// False when `text` cannot be a versions file: empty, or no line of at least three fields
    /// ("product|version|link"). `reason` then says which.
    static bool IsVersionsFile(String const& text, std::string& reason);

    /// The shortest decimal text that reads back as the same 32-bit float.
    static std::string NumberText(float value);
};

} // namespace Updater
