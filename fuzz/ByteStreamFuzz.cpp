// Reads strings, byte vectors and primitives from arbitrary bytes in both byte orders: reading
// must end in a value or a DataStreamIO, never in a fault or an oversized allocation.

#include "TvBase/Util/ByteStream.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0)
        return 0;
    Util::ByteStream stream(static_cast<unsigned int>(size - 1), data + 1);
    stream.SetEndianType((data[0] & 1) != 0 ? Util::DataStream::BigEndian
                                            : Util::DataStream::LittleEndian);
    unsigned int reads = 0;
    while (!stream.AtEnd() && reads++ < 1000)
    {
        unsigned long long const before = stream.GetPosition();
        try
        {
            switch ((data[0] >> 1) % 5)
            {
            case 0:
            case 1:
            {
                String text;
                stream >> text;
                if (text.Length() > Util::DataStream::MaxStringLength)
                    std::abort();
                break;
            }
            case 2:
            {
                std::vector<unsigned char> bytes;
                stream >> bytes;
                break;
            }
            case 3:
                stream.ReadPrimitive(0LL);
                break;
            default:
                stream.ReadPrimitive(0L);
                break;
            }
        }
        catch (Util::Exception::DataStreamIO const&)
        {
            // A failed read leaves the position where it was.
            if (stream.GetPosition() != before)
                std::abort();
            stream.Skip(1);
        }
    }
    return 0;
}
