#pragma once

#include "Canvas/UI/Window.h"

#include <vector>

namespace UI
{

/// A key to colours: a swatch and a text per entry, side by side in one row.
class Legend : public Window
{
public:
    struct Entry
    {
        String text;
        unsigned int color;
    };

    Legend(Frame* frame, Window* parent, String const& name);

    /// Puts an entry before `index` (at the end when past it).
    void AddItem(unsigned int index, String const& text, unsigned int color);
    void Clear();
    std::vector<Entry> const& GetEntries() const { return entries; }
    /// Each entry's swatch and text, in legend coordinates.
    std::vector<Rect> GetEntryRects() const;

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("Legend"); }

private:
    std::vector<Entry> entries;
};

} // namespace UI
