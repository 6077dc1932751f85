#include "tools/tvcheck/VersionsDownload.h"

#include <curl/curl.h>

#include <cctype>
#include <cstring>

namespace Updater
{

namespace
{

// The same ceiling as the application's downloads.
curl_off_t const maxBodyBytes = 64 * 1024 * 1024;
long const maxRedirects = 20;

struct Received
{
    std::string bytes;
    bool tooLarge = false;
};

std::size_t onWrite(char* data, std::size_t size, std::size_t count, void* target)
{
    Received& received = *static_cast<Received*>(target);
    std::size_t const length = size * count;
    if (received.bytes.size() + length > static_cast<std::size_t>(maxBodyBytes))
    {
        received.tooLarge = true;
        return 0;
    }
    received.bytes.append(data, length);
    return length;
}

/// "host:port" of `url`, with the scheme's port when none is written.
std::string hostAndPort(std::string const& url)
{
    std::string result = url;
    CURLU* parsed = curl_url();
    if (!parsed)
        return result;
    char* host = nullptr;
    char* port = nullptr;
    if (curl_url_set(parsed, CURLUPART_URL, url.c_str(), 0) == CURLUE_OK &&
        curl_url_get(parsed, CURLUPART_HOST, &host, 0) == CURLUE_OK &&
        curl_url_get(parsed, CURLUPART_PORT, &port, CURLU_DEFAULT_PORT) == CURLUE_OK)
        result = std::string(host) + ":" + port;
    curl_free(host);
    curl_free(port);
    curl_url_cleanup(parsed);
    return result;
}

std::string lowerFirst(std::string text)
{
    if (!text.empty())
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

std::string describe(CURL* easy, CURLcode code, std::string const& url, char const* detail,
                     int timeoutMillis)
{
    std::string const where = hostAndPort(url);
    std::string const library = *detail ? detail : curl_easy_strerror(code);
    long osError = 0;
    curl_easy_getinfo(easy, CURLINFO_OS_ERRNO, &osError);
    switch (code)
    {
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_URL_MALFORMAT:
        return "cannot fetch " + url + ": not an http or https URL";
    case CURLE_COULDNT_RESOLVE_HOST:
        return "cannot find the host of " + url + " (" + lowerFirst(library) + ")";
    case CURLE_COULDNT_RESOLVE_PROXY:
        return "cannot find the proxy for " + url + " (" + lowerFirst(library) + ")";
    case CURLE_COULDNT_CONNECT:
        if (osError != 0)
            return "cannot connect to " + where + ": " + lowerFirst(std::strerror(osError));
        return "cannot connect to " + where + ": " + lowerFirst(library);
    case CURLE_OPERATION_TIMEDOUT:
    {
        int const seconds = timeoutMillis / 1000;
        return "the request to " + where + " timed out after " + std::to_string(seconds) +
               (seconds == 1 ? " second" : " seconds");
    }
    case CURLE_TOO_MANY_REDIRECTS:
        return "too many redirects (more than " + std::to_string(maxRedirects) + ") from " + url;
    case CURLE_PEER_FAILED_VERIFICATION:
        return "cannot verify the certificate of " + where + ": " + lowerFirst(library);
    case CURLE_FILESIZE_EXCEEDED:
    case CURLE_WRITE_ERROR:
        return "the answer from " + url + " is larger than 64 MiB";
    default:
        return "cannot fetch " + url + ": " + lowerFirst(library);
    }
}

} // namespace

bool VersionsDownload::Fetch(std::string const& url, int timeoutMillis, std::string& body,
                             std::string& failure)
{
    static bool const initialized = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    CURL* easy = initialized ? curl_easy_init() : nullptr;
    if (!easy)
    {
        failure = "cannot fetch " + url + ": the transfer library did not start";
        return false;
    }
    Received received;
    char detail[CURL_ERROR_SIZE] = "";
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, maxRedirects);
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(timeoutMillis));
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, maxBodyBytes);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &onWrite);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &received);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, detail);

    CURLcode const code = curl_easy_perform(easy);
    long status = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    bool ok = false;
    if (received.tooLarge)
        failure = describe(easy, CURLE_FILESIZE_EXCEEDED, url, "", timeoutMillis);
    else if (code != CURLE_OK)
        failure = describe(easy, code, url, detail, timeoutMillis);
    else if (status >= 400)
        failure = "HTTP " + std::to_string(status) + " from " + url;
    else
    {
        body.assign(received.bytes.c_str());
        ok = true;
    }
    curl_easy_cleanup(easy);
    return ok;
}

} // namespace Updater
