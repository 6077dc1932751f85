#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/Thread.h"

#include <atomic>
#include <vector>

namespace Atomic
{
class CriticalSection;
}

namespace Network
{

class HttpStream;

/// The pump of one request: moves the bytes out of the host's read stream into the shared
/// vector of its `Http`, under that client's lock, until the end of the body, a read error or
/// a cancel. It owns nothing: every pointer belongs to the `Http` that made it, which keeps
/// them alive while the thread runs. Thread name "HTTP Helper Thread", priority 3.
///
/// At the end of the body it closes the stream and sets `finished`. A read error sets `error`
/// to "Internal stream error <domain>, <code>" and ends the thread without `finished`. A cancel
/// empties the vector and ends without `finished`. Between rounds it waits on the stream, so a
/// stalled request costs no processor time.
class HttpHelper : public Util::Thread
{
public:
    HttpHelper(Atomic::CriticalSection* lock, std::vector<unsigned char>* data, String* error,
               std::atomic<bool>* canceled, std::atomic<bool>* finished, HttpStream* stream);
    ~HttpHelper() override;

protected:
    void run() override;

private:
    Atomic::CriticalSection* lock;
    std::vector<unsigned char>* data;
    String* error;
    std::atomic<bool>* canceled;
    std::atomic<bool>* finished;
    HttpStream* stream;
};

} // namespace Network
