// Loads arbitrary bytes as a layout file into a small window tree: whatever the bytes, loading
// must end without a crash, a leak or undefined behaviour.
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Layout.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowFactory.h"
#include "TvBase/Util/Exception.h"
#include "TvBase/Util/ResourceManager.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <stdlib.h>
#include <string>
#include <unistd.h>

namespace
{

/// A scratch folder for the layout file, removed at exit.
struct Scratch
{
    std::string folder;
    std::string file;

    Scratch()
    {
        char pattern[] = "/tmp/tv-layout-fuzz-XXXXXX";
        if (mkdtemp(pattern))
            folder = pattern;
        file = folder + "/input.layout";
    }
    ~Scratch()
    {
        std::remove(file.c_str());
        rmdir(folder.c_str());
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    static Scratch scratch;
    static UI::Canvas canvas("LayoutFuzz", 0, 0, String(), String("UI/Layout"));
    static UI::MemoryDrawContext context("Layout Fuzz Context");
    if (scratch.folder.empty() || size > 1 << 16)
        return 0;
    // Nested "Layout" names must not reach files outside the scratch folder.
    Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());

    FILE* out = std::fopen(scratch.file.c_str(), "wb");
    if (!out)
        return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);

    UI::Frame frame(&canvas, nullptr, &context, UI::Point(), "", UI::Rect(0, 99, 0, 99));
    UI::Window* root = new UI::Window(&frame, nullptr, "root");
    UI::Window* a = new UI::Window(&frame, root, "a");
    new UI::Window(&frame, a, "b");
    new UI::Window(&frame, root, "c");
    try
    {
        UI::LoadLayout(String(scratch.file.c_str()), &frame, root);
        UI::LoadLayout(String(scratch.file.c_str()), &frame, nullptr);
    }
    catch (Exception::Base const&)
    {
        // Reading errors of the file itself are the caller's to handle.
    }
    return 0;
}
