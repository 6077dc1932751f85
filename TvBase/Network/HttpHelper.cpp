#include "TvBase/Network/HttpHelper.h"

#include "TvBase/Network/HttpStream.h"
#include "TvBase/Util/CriticalSection.h"

namespace Network
{

namespace
{
// The most one read may fetch.
constexpr unsigned long readBufferSize = 4096;
} // namespace

HttpHelper::HttpHelper(Atomic::CriticalSection* queryLock, std::vector<unsigned char>* bytes,
                       String* errorText, std::atomic<bool>* canceledFlag,
                       std::atomic<bool>* finishedFlag, HttpStream* readStream)
    : Util::Thread("HTTP Helper Thread", PriorityDefault, false), lock(queryLock), data(bytes),
      error(errorText), canceled(canceledFlag), finished(finishedFlag), stream(readStream)
{
}

HttpHelper::~HttpHelper()
{
    WaitThread();
}

void HttpHelper::run()
{
    if (!lock || !data || !error || !canceled || !finished || !stream)
    {
        if (lock && error)
        {
            Atomic::CriticalSectionLocker hold(*lock);
            *error = "Invalid request handle.";
        }
        return;
    }
    if (*canceled)
        return;

    std::vector<unsigned char> buffer(readBufferSize, 0);
    bool atEnd = false;
    for (;;)
    {
        if (stream->IsAtEnd())
            atEnd = true;
        bool readSome = false;
        if (stream->HasBytesAvailable())
        {
            long count = stream->Read(buffer.data(), buffer.size());
            if (count < 0)
            {
                long domain = 0;
                long code = 0;
                stream->GetError(domain, code);
                {
                    Atomic::CriticalSectionLocker hold(*lock);
                    *error = String("Internal stream error %1, %2").Arg(domain).Arg(code);
                }
                // The request stays unfinished: its owner finds the error at the time-out.
                stream->Close();
                return;
            }
            if (count == 0)
            {
                if (stream->IsAtEnd())
                    atEnd = true;
            }
            else
            {
                Atomic::CriticalSectionLocker hold(*lock);
                data->insert(data->end(), buffer.begin(), buffer.begin() + count);
                readSome = true;
            }
        }
        if (atEnd || *canceled)
        {
            stream->Close();
            if (*canceled)
            {
                Atomic::CriticalSectionLocker hold(*lock);
                data->clear();
            }
            else
            {
                *finished = true;
            }
            return;
        }
        if (!readSome)
            stream->WaitForActivity();
    }
}

} // namespace Network
