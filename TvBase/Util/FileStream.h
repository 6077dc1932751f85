#pragma once

#include "TvBase/Util/DataStream.h"
#include "TvBase/Util/File.h"

#include <memory>

namespace Util
{

/// A `DataStream` over a `Util::File` that it opens and owns.
///
/// Reads fail with "Can't extract %1: %2" (the value's type and the cause), "Can't extract
/// string %1: %2", "Can't extract string: %2", "Can't extract %1 bytes: %2" and "Can't read %1
/// bytes: %2"; writes with "Can't insert %1: %2", "Can't insert %1 bytes: %2" and "Can't write
/// %1 bytes: %2"; seeks with "Can't seek to %1: %2". The cause is the message of the file's own
/// failure. A failed read leaves the target and the position as they were.
class FileStream : public DataStream
{
public:
    /// Opens `path` with a `Util::File` open mode. Throws "Can't open file: %1" with the path.
    FileStream(FilePath const& path, unsigned int mode);
    /// Closes the file if still open, swallowing a failure.
    ~FileStream() override;

    /// Closes the file. Throws "Can't close file: %1".
    void Close();
    /// The file below the stream.
    File& GetFile() { return *file; }

    EndianType GetEndianType() const override { return endian; }
    void SetEndianType(EndianType type) override { endian = type; }
    bool IsWriteStringLength() const override { return writeStringLength; }
    void SetWriteStringLength(bool write) override { writeStringLength = write; }

    FileStream& operator>>(bool& value) override;
    FileStream& operator>>(char& value) override;
    FileStream& operator>>(signed char& value) override;
    FileStream& operator>>(unsigned char& value) override;
    FileStream& operator>>(short& value) override;
    FileStream& operator>>(unsigned short& value) override;
    FileStream& operator>>(int& value) override;
    FileStream& operator>>(unsigned int& value) override;
    FileStream& operator>>(long long& value) override;
    FileStream& operator>>(unsigned long long& value) override;
    FileStream& operator>>(long& value) override;
    FileStream& operator>>(unsigned long& value) override;
    FileStream& operator>>(float& value) override;
    FileStream& operator>>(double& value) override;
    FileStream& operator>>(String& value) override;
    FileStream& operator>>(std::vector<unsigned char>& value) override;

    void Read(unsigned int count, unsigned char* out) override;

    FileStream& operator<<(bool value) override;
    FileStream& operator<<(char value) override;
    FileStream& operator<<(signed char value) override;
    FileStream& operator<<(unsigned char value) override;
    FileStream& operator<<(short value) override;
    FileStream& operator<<(unsigned short value) override;
    FileStream& operator<<(int value) override;
    FileStream& operator<<(unsigned int value) override;
    FileStream& operator<<(long long value) override;
    FileStream& operator<<(unsigned long long value) override;
    FileStream& operator<<(long value) override;
    FileStream& operator<<(unsigned long value) override;
    FileStream& operator<<(float value) override;
    FileStream& operator<<(double value) override;
    FileStream& operator<<(String const& value) override;
    FileStream& operator<<(std::vector<unsigned char> const& value) override;

    void Write(unsigned int count, unsigned char const* in) override;

    bool AtEnd() const override { return file->AtEnd(); }
    unsigned long long GetPosition() const override { return file->At(); }
    /// 0 when the host can't tell the size.
    unsigned long long GetSize() const override;
    unsigned long long GetRemaining() const override;
    void SetPosition(unsigned long long position) override;
    void Skip(unsigned long long count) override;

private:
    template <typename T>
    FileStream& readValue(T& value, char const* typeName);
    template <typename T>
    FileStream& writeValue(T value, char const* typeName);
    /// Reads exactly `count` bytes or throws `FileIO`, restoring the position on failure.
    void readBytes(unsigned char* out, unsigned int count);

    std::unique_ptr<File> file;
    EndianType endian = NativeEndian;
    bool writeStringLength = true;
};

} // namespace Util
