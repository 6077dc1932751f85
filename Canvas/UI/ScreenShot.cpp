#include "Canvas/UI/ScreenShot.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Native/DIBSection.h"
#include "Canvas/UI/Native/ScreenShotHost.h"
#include "Canvas/UI/PNG.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/FolderPath.h"

namespace UI
{

namespace
{

// What a screenshot of the frame covers: the design's trim rectangle, the whole frame unless a
// designer set one.
UI::Rect screenShotRect(UI::Frame* frame)
{
    if (frame->GetDesign())
        return frame->GetDesign()->GetScreenShotTrimRect();
    UI::Size const size = frame->GetSize();
    return UI::Rect(0, size.width - 1, 0, size.height - 1);
}

FilePath withPngExtension(FilePath const& path)
{
    if (path.GetExtension().ToLower() == "png")
        return path;
    return FilePath(path.ToString() + ".png");
}

} // namespace

boost::shared_ptr<UI::DIBits> ScreenShotFromRect(UI::Frame* frame, UI::Rect const& rect)
{
    if (!frame)
        return boost::shared_ptr<UI::DIBits>();
    auto* context = dynamic_cast<UI::MemoryDrawContext*>(frame->GetDrawContext());
    if (!context || !context->GetDIBSection())
        return boost::shared_ptr<UI::DIBits>();
    boost::shared_ptr<UI::DIBits> whole = context->GetDIBSection()->GetBits();
    if (!whole)
        return whole;
    // The section's padding columns are not part of the picture.
    UI::Size const size = context->GetDIBSection()->GetSize();
    UI::Rect const cut = rect & UI::Rect(0, size.width - 1, 0, size.height - 1);
    if (cut.Width() <= 0 || cut.Height() <= 0)
        return boost::shared_ptr<UI::DIBits>();
    boost::shared_ptr<UI::DIBits> bits = whole->CopyRectToPtr(cut);
    if (!bits || !bits->IsValid())
        return boost::shared_ptr<UI::DIBits>();
    bits->SetHasAlpha(false);
    return bits;
}

bool ScreenShotFromDIBitsToFile(boost::shared_ptr<UI::DIBits> const& bits, FilePath const& path,
                                bool (*progress)(void*, float), void* context, bool optimise)
{
    if (!bits || !bits->IsValid() || path.IsEmpty())
        return false;
    bool const withAlpha = bits->HasAlpha();
    UI::PNG::Bitmap bitmap;
    bitmap.Allocate(unsigned(bits->GetWidth()), unsigned(bits->GetHeight()), withAlpha);
    for (int y = 0; y < bits->GetHeight(); ++y)
    {
        unsigned int const* row = bits->GetPixels() + std::size_t(y) * bits->GetStride();
        for (int x = 0; x < bits->GetWidth(); ++x)
        {
            unsigned int const c = row[x];
            bitmap.red[y][x] = float((c >> 16) & 0xFF);
            bitmap.green[y][x] = float((c >> 8) & 0xFF);
            bitmap.blue[y][x] = float(c & 0xFF);
            if (withAlpha)
                bitmap.alpha[y][x] = float(c >> 24);
        }
    }
    return UI::PNG::WritePngFile(withPngExtension(path).ToString(), bitmap, withAlpha, false,
                                 UI::PNG::PngComprParams(), progress, context, optimise);
}

bool ScreenShotToFile(UI::Frame* frame)
{
    UI::Native::ScreenShotHost* host = UI::Native::GetScreenShotHost();
    if (!frame || !host)
        return false;
    Util::ConfigFile config("com.tavorin");
    String const folder = config.GetString("LastScreenShotFolder");
    String const filename = config.GetString("LastScreenShotFilename");
    checked_value<FilePath> const chosen = host->AskSaveFile("Save Screenshot", folder, filename,
                                                             "Screenshots (*.png)", "*.png", "png");
    if (!chosen.IsPresent() || chosen.Get().IsEmpty())
        return false;
    FilePath const path = withPngExtension(chosen.Get());
    if (Util::File(path).Exists() &&
        !host->AskYesNo(String("The file %1 already exists, are you sure you want to overwrite it?")
                            .Arg(path.ToString()),
                        "Confirm Overwrite"))
        return false;
    boost::shared_ptr<UI::DIBits> bits = ScreenShotFromRect(frame, screenShotRect(frame));
    if (!ScreenShotFromDIBitsToFile(bits, path, nullptr, nullptr, true))
        return false;
    config.SetString("LastScreenShotFolder", path.GetFolder().ToString());
    config.SetString("LastScreenShotFilename", path.GetFilename());
    return true;
}

bool ScreenShotToClipboard(UI::Frame* frame)
{
    UI::Native::ScreenShotHost* host = UI::Native::GetScreenShotHost();
    if (!frame || !host)
        return false;
    boost::shared_ptr<UI::DIBits> bits = ScreenShotFromRect(frame, screenShotRect(frame));
    return bits && host->SetClipboardImage(*bits);
}

checked_value<unsigned int> ScreenShotColorAtScreenPos(UI::Point const& screenPos)
{
    UI::Native::ScreenShotHost* host = UI::Native::GetScreenShotHost();
    if (!host)
        return checked_value<unsigned int>();
    return host->GetScreenColor(screenPos);
}

} // namespace UI
