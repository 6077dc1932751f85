#include "TvBase/Util/FileStream.h"

#include "TvBase/Util/detail/StreamEncoding.h"

namespace Util
{

using Exception::DataStreamIO;
using Exception::FileIO;

namespace
{

/// Writes the 4-byte count that leads a string or a byte list.
void writeCount(File& file, unsigned int count, DataStream::EndianType endian)
{
    unsigned char bytes[4];
    detail::Encode(count, endian, bytes);
    file.WriteBlock(reinterpret_cast<char const*>(bytes), 4);
}

} // namespace

FileStream::FileStream(FilePath const& path, unsigned int mode) : file(new File(path))
{
    try
    {
        file->Open(mode);
    }
    catch (FileIO const&)
    {
        TV_THROW(DataStreamIO, String("Can't open file: %1").Arg(path.ToString()));
    }
}

FileStream::~FileStream()
{
    try
    {
        file->Close();
    }
    catch (FileIO const&)
    {
        // Nothing can be reported from here; callers who care call Close.
    }
}

void FileStream::Close()
{
    try
    {
        file->Close();
    }
    catch (FileIO const&)
    {
        TV_THROW(DataStreamIO, String("Can't close file: %1").Arg(file->GetPath().ToString()));
    }
}

unsigned long long FileStream::GetSize() const
{
    return file->Size().GetOr(0);
}

unsigned long long FileStream::GetRemaining() const
{
    return file->Remaining().GetOr(0);
}

void FileStream::SetPosition(unsigned long long position)
{
    try
    {
        file->At(position);
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't seek to %1: %2").Arg(position).Arg(e.GetMessage()));
    }
}

void FileStream::Skip(unsigned long long count)
{
    SetPosition(GetPosition() + count);
}

void FileStream::readBytes(unsigned char* out, unsigned int count)
{
    unsigned long long const start = file->At();
    try
    {
        file->ReadBlock(reinterpret_cast<char*>(out), count);
    }
    catch (FileIO const&)
    {
        if (file->IsOpen())
            file->At(start);
        throw;
    }
}

// ---- reading

template <typename T>
FileStream& FileStream::readValue(T& value, char const* typeName)
{
    unsigned char bytes[sizeof(T)];
    try
    {
        readBytes(bytes, detail::WireSize<T>());
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't extract %1: %2").Arg(typeName).Arg(e.GetMessage()));
    }
    value = detail::Decode<T>(bytes, endian);
    return *this;
}

FileStream& FileStream::operator>>(bool& value)
{
    return readValue(value, "bool");
}
FileStream& FileStream::operator>>(char& value)
{
    return readValue(value, "char");
}
FileStream& FileStream::operator>>(signed char& value)
{
    return readValue(value, "signed char");
}
FileStream& FileStream::operator>>(unsigned char& value)
{
    return readValue(value, "unsigned char");
}
FileStream& FileStream::operator>>(short& value)
{
    return readValue(value, "short");
}
FileStream& FileStream::operator>>(unsigned short& value)
{
    return readValue(value, "unsigned short");
}
FileStream& FileStream::operator>>(int& value)
{
    return readValue(value, "int");
}
FileStream& FileStream::operator>>(unsigned int& value)
{
    return readValue(value, "unsigned int");
}
FileStream& FileStream::operator>>(long long& value)
{
    return readValue(value, "long long");
}
FileStream& FileStream::operator>>(unsigned long long& value)
{
    return readValue(value, "unsigned long long");
}
FileStream& FileStream::operator>>(long& value)
{
    return readValue(value, "long");
}
FileStream& FileStream::operator>>(unsigned long& value)
{
    return readValue(value, "unsigned long");
}
FileStream& FileStream::operator>>(float& value)
{
    return readValue(value, "float");
}
FileStream& FileStream::operator>>(double& value)
{
    return readValue(value, "double");
}

FileStream& FileStream::operator>>(String& value)
{
    value = String();
    unsigned long long const start = file->At();
    unsigned char lengthBytes[4];
    try
    {
        readBytes(lengthBytes, 4);
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't extract string: %2").Arg(e.GetMessage()));
    }
    unsigned int const length = detail::Decode<unsigned int>(lengthBytes, endian);
    if (length > MaxStringLength)
    {
        file->At(start);
        TV_THROW(DataStreamIO, String("Improbable string length %1").Arg(length));
    }
    if (length == 0)
        return *this;
    std::vector<char> text(length + 1, 0);
    try
    {
        readBytes(reinterpret_cast<unsigned char*>(text.data()), length);
    }
    catch (FileIO const& e)
    {
        file->At(start);
        TV_THROW(DataStreamIO,
                 String("Can't extract string %1: %2").Arg(length).Arg(e.GetMessage()));
    }
    // The text ends at an embedded NUL, as a C string would; the position passes all bytes.
    value = String(text.data(), length);
    return *this;
}

FileStream& FileStream::operator>>(std::vector<unsigned char>& value)
{
    unsigned long long const start = file->At();
    unsigned char countBytes[4];
    try
    {
        readBytes(countBytes, 4);
        unsigned int const count = detail::Decode<unsigned int>(countBytes, endian);
        // A damaged count must not allocate more than the file could hold.
        unsigned long long const remaining = GetRemaining();
        if (count > remaining)
        {
            file->At(start);
            TV_THROW(DataStreamIO, String("Can't extract %1 bytes: %2")
                                       .Arg(count)
                                       .Arg(String("only %1 bytes remain").Arg(remaining)));
        }
        std::vector<unsigned char> bytes(count);
        try
        {
            readBytes(bytes.data(), count);
        }
        catch (FileIO const& e)
        {
            file->At(start);
            TV_THROW(DataStreamIO,
                     String("Can't extract %1 bytes: %2").Arg(count).Arg(e.GetMessage()));
        }
        value.swap(bytes);
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't extract %1 bytes: %2").Arg(4u).Arg(e.GetMessage()));
    }
    return *this;
}

void FileStream::Read(unsigned int count, unsigned char* out)
{
    try
    {
        readBytes(out, count);
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't read %1 bytes: %2").Arg(count).Arg(e.GetMessage()));
    }
}

// ---- writing

template <typename T>
FileStream& FileStream::writeValue(T value, char const* typeName)
{
    unsigned char bytes[sizeof(T)];
    detail::Encode(value, endian, bytes);
    try
    {
        file->WriteBlock(reinterpret_cast<char const*>(bytes), detail::WireSize<T>());
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't insert %1: %2").Arg(typeName).Arg(e.GetMessage()));
    }
    return *this;
}

FileStream& FileStream::operator<<(bool value)
{
    return writeValue(value, "bool");
}
FileStream& FileStream::operator<<(char value)
{
    return writeValue(value, "char");
}
FileStream& FileStream::operator<<(signed char value)
{
    return writeValue(value, "signed char");
}
FileStream& FileStream::operator<<(unsigned char value)
{
    return writeValue(value, "unsigned char");
}
FileStream& FileStream::operator<<(short value)
{
    return writeValue(value, "short");
}
FileStream& FileStream::operator<<(unsigned short value)
{
    return writeValue(value, "unsigned short");
}
FileStream& FileStream::operator<<(int value)
{
    return writeValue(value, "int");
}
FileStream& FileStream::operator<<(unsigned int value)
{
    return writeValue(value, "unsigned int");
}
FileStream& FileStream::operator<<(long long value)
{
    return writeValue(value, "long long");
}
FileStream& FileStream::operator<<(unsigned long long value)
{
    return writeValue(value, "unsigned long long");
}
FileStream& FileStream::operator<<(long value)
{
    return writeValue(value, "long");
}
FileStream& FileStream::operator<<(unsigned long value)
{
    return writeValue(value, "unsigned long");
}
FileStream& FileStream::operator<<(float value)
{
    return writeValue(value, "float");
}
FileStream& FileStream::operator<<(double value)
{
    return writeValue(value, "double");
}

FileStream& FileStream::operator<<(String const& value)
{
    unsigned int const length = value.Length();
    try
    {
        if (writeStringLength)
            writeCount(*file, length, endian);
        file->WriteBlock(value.CStr(), length);
    }
    catch (FileIO const& e)
    {
        // The type, not the text: a text could hold markers of its own.
        TV_THROW(DataStreamIO, String("Can't insert %1: %2").Arg("string").Arg(e.GetMessage()));
    }
    return *this;
}

FileStream& FileStream::operator<<(std::vector<unsigned char> const& value)
{
    unsigned int const count = static_cast<unsigned int>(value.size());
    try
    {
        writeCount(*file, count, endian);
        file->WriteBlock(reinterpret_cast<char const*>(value.data()), count);
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't insert %1 bytes: %2").Arg(count).Arg(e.GetMessage()));
    }
    return *this;
}

void FileStream::Write(unsigned int count, unsigned char const* in)
{
    try
    {
        file->WriteBlock(reinterpret_cast<char const*>(in), count);
    }
    catch (FileIO const& e)
    {
        TV_THROW(DataStreamIO, String("Can't write %1 bytes: %2").Arg(count).Arg(e.GetMessage()));
    }
}

} // namespace Util
