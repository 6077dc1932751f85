#include "TvBase/Util/ByteStream.h"

#include "TvBase/Util/detail/StreamEncoding.h"

#include <cstring>
#include <limits>
#include <new>

namespace Util
{

using Exception::DataStreamIO;

ByteStream::ByteStream(unsigned int capacity)
{
    buffer.reserve(capacity);
}

ByteStream::ByteStream(unsigned int size, unsigned char const* data)
{
    if (data != nullptr)
        buffer.assign(data, data + size);
}

ByteStream::ByteStream(array_ref<unsigned char const> data) : ByteStream(0, nullptr)
{
    if (data.data != nullptr)
        buffer.assign(data.begin(), data.end());
}

void ByteStream::Clear()
{
    buffer.clear();
    position = 0;
}

unsigned long long ByteStream::GetRemaining() const
{
    return position < buffer.size() ? buffer.size() - position : 0;
}

void ByteStream::SetPosition(unsigned long long newPosition)
{
    position = static_cast<unsigned int>(newPosition);
}

void ByteStream::Skip(unsigned long long count)
{
    SetPosition(GetPosition() + count);
}

// ---- reading

template <typename T>
ByteStream& ByteStream::readValue(T& value)
{
    unsigned int const size = detail::WireSize<T>();
    if (GetRemaining() < size)
        TV_THROW(DataStreamIO, String("Can't extract %1 bytes at position %2, total size %3")
                                   .Arg(size)
                                   .Arg(position)
                                   .Arg(static_cast<unsigned long long>(buffer.size())));
    value = detail::Decode<T>(buffer.data() + position, endian);
    position += size;
    return *this;
}

ByteStream& ByteStream::operator>>(bool& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(char& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(signed char& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(unsigned char& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(short& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(unsigned short& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(int& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(unsigned int& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(long long& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(unsigned long long& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(long& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(unsigned long& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(float& value)
{
    return readValue(value);
}
ByteStream& ByteStream::operator>>(double& value)
{
    return readValue(value);
}

ByteStream& ByteStream::operator>>(String& value)
{
    value = String();
    unsigned int const start = position;
    unsigned int length = 0;
    readValue(length);
    if (length > MaxStringLength)
    {
        position = start;
        TV_THROW(DataStreamIO, String("Improbable string length %1").Arg(length));
    }
    if (length == 0)
        return *this;
    if (GetRemaining() < length)
    {
        position = start;
        TV_THROW(DataStreamIO, String("Can't read string of length %1").Arg(length));
    }
    // The text ends at an embedded NUL, as a C string would; the position passes all bytes.
    value = String(reinterpret_cast<char const*>(buffer.data() + position), length);
    position += length;
    return *this;
}

ByteStream& ByteStream::operator>>(std::vector<unsigned char>& value)
{
    unsigned int const start = position;
    unsigned int count = 0;
    readValue(count);
    if (GetRemaining() < count)
    {
        position = start;
        TV_THROW(DataStreamIO, String("Can't read %1 bytes").Arg(count));
    }
    value.assign(buffer.begin() + position, buffer.begin() + position + count);
    position += count;
    return *this;
}

void ByteStream::Read(unsigned int count, unsigned char* out)
{
    if (GetRemaining() < count)
        TV_THROW(DataStreamIO, String("Can't read %1 bytes").Arg(count));
    if (count > 0)
        std::memcpy(out, buffer.data() + position, count);
    position += count;
}

// ---- writing

void ByteStream::put(unsigned char const* in, unsigned int count)
{
    unsigned long long const end = static_cast<unsigned long long>(position) + count;
    // The position is 32 bits wide: a buffer can't grow past what it can address.
    if (end > std::numeric_limits<unsigned int>::max())
        throw std::bad_alloc();
    if (end > buffer.size())
        buffer.resize(static_cast<std::size_t>(end), 0);
    if (count > 0)
        std::memcpy(buffer.data() + position, in, count);
    position = static_cast<unsigned int>(end);
}

template <typename T>
ByteStream& ByteStream::writeValue(T value)
{
    unsigned char bytes[sizeof(T)];
    detail::Encode(value, endian, bytes);
    put(bytes, detail::WireSize<T>());
    return *this;
}

ByteStream& ByteStream::operator<<(bool value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(char value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(signed char value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(unsigned char value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(short value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(unsigned short value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(int value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(unsigned int value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(long long value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(unsigned long long value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(long value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(unsigned long value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(float value)
{
    return writeValue(value);
}
ByteStream& ByteStream::operator<<(double value)
{
    return writeValue(value);
}

ByteStream& ByteStream::operator<<(String const& value)
{
    unsigned int const length = value.Length();
    if (writeStringLength)
        *this << length;
    put(reinterpret_cast<unsigned char const*>(value.CStr()), length);
    return *this;
}

ByteStream& ByteStream::operator<<(std::vector<unsigned char> const& value)
{
    *this << static_cast<unsigned int>(value.size());
    put(value.data(), static_cast<unsigned int>(value.size()));
    return *this;
}

void ByteStream::Write(unsigned int count, unsigned char const* in)
{
    put(in, count);
}

} // namespace Util
