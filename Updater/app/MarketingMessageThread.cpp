#include "Updater/app/MarketingMessageThread.h"

#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Media.h"

#include "TvBase/Network/Http.h"
#include "TvBase/Util/CriticalSection.h"

#include <cstring>

namespace Updater
{

namespace
{

unsigned char const pngSignature[8] = {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A};

/// A quoted attribute value found from `position`, as a number; 0 when absent, empty or not a
/// number.
int attributeNumber(String const& page, checked_value<unsigned int> const& position)
{
    if (!position.present)
        return 0;
    String text = page.Extract('"', position.value);
    if (text.IsEmpty())
        return 0;
    checked_value<int> number = text.ToInt(10);
    return number.present ? number.value : 0;
}

/// The largest banner taken: wider or taller, the picture would cost its width times its height
/// in memory before anything could be said about it, and stretch the window past the screen.
unsigned long const maxBannerWidth = 4096;
unsigned long const maxBannerHeight = 1024;

unsigned long bigEndian32(unsigned char const* p)
{
    return static_cast<unsigned long>(p[0]) << 24 | static_cast<unsigned long>(p[1]) << 16 |
           static_cast<unsigned long>(p[2]) << 8 | p[3];
}

/// True when the header chunk, which a PNG must begin with, gives a size past the limits. A
/// body without that chunk is left for the decoder to refuse.
bool isOversizedPng(std::vector<unsigned char> const& bytes)
{
    if (bytes.size() < 24 || std::memcmp(bytes.data() + 12, "IHDR", 4) != 0)
        return false;
    return bigEndian32(bytes.data() + 16) > maxBannerWidth ||
           bigEndian32(bytes.data() + 20) > maxBannerHeight;
}

} // namespace

MarketingMessageThread::MarketingMessageThread(String const& threadName, char const* pageUrl,
                                               Util::Thread::Priority priority, bool flag)
    : Util::Thread(threadName, priority, flag), url(pageUrl),
      lock(new Atomic::CriticalSection("MarketingMessageThread Critical Section"))
{
}

MarketingMessageThread::~MarketingMessageThread()
{
    // `run` is a call into this class, so the thread must end before its members go.
    Cancel();
    WaitThread();
}

bool MarketingMessageThread::IsCanceled()
{
    Atomic::CriticalSectionLocker hold(*lock);
    return canceled;
}

void MarketingMessageThread::Cancel()
{
    Atomic::CriticalSectionLocker hold(*lock);
    canceled = true;
}

bool MarketingMessageThread::GetMessageData(boost::shared_ptr<MarketingMessageData>& out)
{
    // No lock: only a finished thread's record is handed out.
    if (IsThreadRunning() || !lastSucceeded)
        return false;
    out = message;
    return true;
}

void MarketingMessageThread::storeConnectionSuccess(bool success, String const& text)
{
    lastSucceeded = success;
    lastResult = text;
}

bool MarketingMessageThread::makeHTTPRequest(String requestUrl,
                                             boost::shared_ptr<std::vector<unsigned char>>& out)
{
    try
    {
        if (!http)
            http.reset(new Network::Http());
        http->Get(requestUrl, requestTimeoutMillis);

        while (!http->IsFinished())
        {
            // Read without the lock on purpose: a late look costs one more round at most.
            if (canceled)
            {
                http->CancelGet();
                return false;
            }
            // Ten milliseconds between rounds, cut short when the body is complete.
            if (http->WaitForHelper(10) && !http->IsFinished())
                Util::Thread::SleepThread(10);
        }

        String error = http->GetError();
        if (!error.IsEmpty())
        {
            storeConnectionSuccess(false, error);
            return false;
        }
        out = http->GetRawData();
        if (out && !out->empty())
            return true;
        // A time-out ends here too: it leaves neither an error nor data.
        storeConnectionSuccess(false, "Marketing message empty.");
        return false;
    }
    catch (Network::Exception::ConnectionError const& e)
    {
        storeConnectionSuccess(false, String("Connection Error: %1").Arg(e.GetMessage()));
        return false;
    }
}

void MarketingMessageThread::run()
{
    boost::shared_ptr<std::vector<unsigned char>> pageBytes;
    if (!makeHTTPRequest(url, pageBytes))
        return;

    // The page ends at its first NUL, like any C string.
    std::vector<unsigned char> terminated(*pageBytes);
    terminated.push_back(0);
    String const page(reinterpret_cast<char const*>(terminated.data()));

    checked_value<unsigned int> anchor = page.Find("<a href=", 0, true);
    if (!anchor.present)
    {
        storeConnectionSuccess(false, "Cannot locate anchor tag");
        return;
    }
    String link = page.Extract('"', anchor.value + 1);
    if (link.IsEmpty())
    {
        storeConnectionSuccess(false, "Cannot locate marketing url");
        return;
    }

    checked_value<unsigned int> imageTag = page.Find("<img src=", anchor.value + 1, true);
    if (!imageTag.present)
    {
        storeConnectionSuccess(false, "Cannot locate img tag");
        return;
    }
    String imageUrl = page.Extract('"', imageTag.value + 1);

    // The sizes and the tool tip are looked up from the top of the page, not from the image
    // tag: the first of each on the page counts.
    int width = attributeNumber(page, page.Find("width=", 0, true));
    int height = attributeNumber(page, page.Find("height=", 0, true));
    String altText;
    checked_value<unsigned int> alt = page.Find("alt=", 0, true);
    if (alt.present)
        altText = page.Extract('"', alt.value);

    boost::shared_ptr<std::vector<unsigned char>> imageBytes;
    if (!makeHTTPRequest(imageUrl, imageBytes))
    {
        storeConnectionSuccess(false, "Cannot read image");
        return;
    }

    // A body shorter than the signature cannot be a picture either.
    std::vector<unsigned char> const& bytes = *imageBytes;
    bool isPng = bytes.size() >= sizeof(pngSignature);
    for (std::size_t i = 0; isPng && i < sizeof(pngSignature); ++i)
        isPng = bytes.at(i) == pngSignature[i];
    if (!isPng || isOversizedPng(bytes))
    {
        storeConnectionSuccess(false, "Cannot parse image data as png");
        return;
    }

    boost::shared_ptr<UI::DIBits> image =
        UI::Media::GetPNGBits(static_cast<unsigned int>(bytes.size()), bytes.data(), 0.0f);
    if (!image || image->GetWidth() <= 0 || image->GetHeight() <= 0)
    {
        storeConnectionSuccess(false, "Cannot parse image data as png");
        return;
    }

    boost::shared_ptr<MarketingMessageData> record(new MarketingMessageData());
    record->link = link;
    record->altText = altText;
    record->height = height;
    record->width = width;
    record->image = image;
    message = record;
    storeConnectionSuccess(true, "");
}

} // namespace Updater
