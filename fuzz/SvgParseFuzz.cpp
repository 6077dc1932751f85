// Hostile SVG text through the XML reader, the icon parser and a 24x24 render: any input must
// end in an icon (perhaps with an error text), never a crash.

#include "Canvas/UI/AGGInlineRenderer.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/SVG/SVG.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    if (size > 1u << 16)
        return 0;
    UI::SVG::SVG icon(data, unsigned(size));
    boost::shared_ptr<UI::DIBits> bits =
        UI::CreateDIBits(UI::Size(24, 24), checked_value<unsigned int>(0xFFFFFFFFu));
    UI::AGGInlineRenderer renderer(bits, "Fuzz");
    icon.SetDestinationRect(UI::Rect(0, 23, 0, 23));
    icon.Draw(&renderer);
    icon.SetDestinationRect(UI::Rect(0, -1, 0, -1));
    icon.Draw(&renderer);
    return 0;
}
