#include "TvBase/Network/HTTP_curl/CurlHttpStream.h"

#include <algorithm>
#include <cstring>

namespace Network
{

namespace
{

// Error domain of every failure this stream reports: the transfer library's own codes.
constexpr long curlErrorDomain = 1;
// Longest sleep on the socket; a wake or socket activity ends it sooner.
constexpr int pollMillis = 1000;

void initializeCurlOnce()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

bool isFetchableUrl(String const& text)
{
    CURLU* parsed = curl_url();
    if (!parsed)
        return false;
    bool usable = false;
    if (curl_url_set(parsed, CURLUPART_URL, text.CStr(), 0) == CURLUE_OK)
    {
        char* scheme = nullptr;
        char* host = nullptr;
        if (curl_url_get(parsed, CURLUPART_SCHEME, &scheme, 0) == CURLUE_OK &&
            curl_url_get(parsed, CURLUPART_HOST, &host, 0) == CURLUE_OK)
            usable = std::strcmp(scheme, "http") == 0 || std::strcmp(scheme, "https") == 0;
        curl_free(scheme);
        curl_free(host);
    }
    curl_url_cleanup(parsed);
    return usable;
}

} // namespace

std::unique_ptr<HttpStream> HttpStream::Create()
{
    return std::unique_ptr<HttpStream>(new CurlHttpStream());
}

CurlHttpStream::CurlHttpStream()
{
    initializeCurlOnce();
}

CurlHttpStream::~CurlHttpStream()
{
    Close();
    if (multi)
        curl_multi_cleanup(multi);
    if (easy)
        curl_easy_cleanup(easy);
}

bool CurlHttpStream::CreateRequest(String const& requestUrl)
{
    easy = curl_easy_init();
    if (!easy)
        return false;
    url = requestUrl.IsNull() ? String("") : requestUrl;
    return curl_easy_setopt(easy, CURLOPT_URL, url.CStr()) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https") == CURLE_OK;
}

bool CurlHttpStream::CreateReadStream()
{
    multi = curl_multi_init();
    return multi &&
           curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlHttpStream::onWrite) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_WRITEDATA, this) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, maxBodyBytes) == CURLE_OK;
}

bool CurlHttpStream::SetAutoRedirect()
{
    return curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_MAXREDIRS, maxRedirects) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https") == CURLE_OK;
}

bool CurlHttpStream::Open()
{
    // A URL the service cannot fetch at all fails here rather than later as a stream error.
    if (!isFetchableUrl(url))
        return false;
    if (curl_multi_add_handle(multi, easy) != CURLM_OK)
        return false;
    added = true;
    return true;
}

std::size_t CurlHttpStream::onWrite(char* bytes, std::size_t size, std::size_t count, void* self)
{
    CurlHttpStream* stream = static_cast<CurlHttpStream*>(self);
    std::size_t const length = size * count;
    stream->received += static_cast<curl_off_t>(length);
    if (stream->received > maxBodyBytes)
    {
        // A body without a length announced is stopped by counting.
        stream->tooLarge = true;
        return 0;
    }
    if (stream->pendingOffset == stream->pending.size())
    {
        stream->pending.clear();
        stream->pendingOffset = 0;
    }
    stream->pending.insert(stream->pending.end(), bytes, bytes + length);
    return length;
}

void CurlHttpStream::drive()
{
    if (!added || done)
        return;
    int running = 0;
    curl_multi_perform(multi, &running);
    int left = 0;
    while (CURLMsg* message = curl_multi_info_read(multi, &left))
    {
        if (message->msg == CURLMSG_DONE && message->easy_handle == easy)
        {
            done = true;
            result = tooLarge ? CURLE_FILESIZE_EXCEEDED : message->data.result;
        }
    }
}

bool CurlHttpStream::IsAtEnd()
{
    return done && result == CURLE_OK && pendingBytes() == 0;
}

bool CurlHttpStream::HasBytesAvailable()
{
    return pendingBytes() > 0 || (done && result != CURLE_OK);
}

long CurlHttpStream::Read(unsigned char* buffer, unsigned long maxLength)
{
    std::size_t const count = std::min<std::size_t>(pendingBytes(), maxLength);
    if (count > 0)
    {
        std::memcpy(buffer, pending.data() + pendingOffset, count);
        pendingOffset += count;
        return static_cast<long>(count);
    }
    return done && result != CURLE_OK ? -1 : 0;
}

void CurlHttpStream::GetError(long& domain, long& code)
{
    bool const failed = done && result != CURLE_OK;
    domain = failed ? curlErrorDomain : 0;
    code = failed ? static_cast<long>(result) : 0;
}

void CurlHttpStream::WaitForActivity()
{
    if (pendingBytes() > 0 || done || !added)
        return;
    drive();
    if (pendingBytes() > 0 || done)
        return;
    curl_multi_poll(multi, nullptr, 0, pollMillis, nullptr);
    drive();
}

void CurlHttpStream::Wake()
{
    if (multi)
        curl_multi_wakeup(multi);
}

void CurlHttpStream::Close()
{
    std::lock_guard<std::mutex> hold(closeMutex);
    if (closed)
        return;
    closed = true;
    if (added)
        curl_multi_remove_handle(multi, easy);
    added = false;
}

} // namespace Network
