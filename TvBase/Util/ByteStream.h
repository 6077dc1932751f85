#pragma once

#include "TvBase/Util/DataStream.h"
#include "TvBase/Util/checked_value.h"

#include <vector>

namespace Util
{

/// A `DataStream` over a byte buffer in memory.
///
/// Reads fail with "Can't extract %1 bytes at position %2, total size %3" (primitives), "Can't
/// read %1 bytes" (raw bytes and vectors) and "Can't read string of length %1". A write inside
/// the buffer overwrites; a write past the end grows the buffer, filling any gap with NUL bytes.
/// `SetPosition` stores its argument unchecked (a position past the end simply reads nothing).
class ByteStream : public DataStream
{
public:
    /// An empty stream with room for `capacity` bytes.
    explicit ByteStream(unsigned int capacity = 0);
    /// A copy of `size` bytes at `data`, read from position 0.
    ByteStream(unsigned int size, unsigned char const* data);
    explicit ByteStream(array_ref<unsigned char const> data);

    /// Empties the buffer and sets the position to 0.
    void Clear();
    /// The whole buffer, independent of the position.
    std::vector<unsigned char> const& GetBuffer() const { return buffer; }

    EndianType GetEndianType() const override { return endian; }
    void SetEndianType(EndianType type) override { endian = type; }
    bool IsWriteStringLength() const override { return writeStringLength; }
    void SetWriteStringLength(bool write) override { writeStringLength = write; }

    ByteStream& operator>>(bool& value) override;
    ByteStream& operator>>(char& value) override;
    ByteStream& operator>>(signed char& value) override;
    ByteStream& operator>>(unsigned char& value) override;
    ByteStream& operator>>(short& value) override;
    ByteStream& operator>>(unsigned short& value) override;
    ByteStream& operator>>(int& value) override;
    ByteStream& operator>>(unsigned int& value) override;
    ByteStream& operator>>(long long& value) override;
    ByteStream& operator>>(unsigned long long& value) override;
    ByteStream& operator>>(long& value) override;
    ByteStream& operator>>(unsigned long& value) override;
    ByteStream& operator>>(float& value) override;
    ByteStream& operator>>(double& value) override;
    ByteStream& operator>>(String& value) override;
    ByteStream& operator>>(std::vector<unsigned char>& value) override;

    void Read(unsigned int count, unsigned char* out) override;

    ByteStream& operator<<(bool value) override;
    ByteStream& operator<<(char value) override;
    ByteStream& operator<<(signed char value) override;
    ByteStream& operator<<(unsigned char value) override;
    ByteStream& operator<<(short value) override;
    ByteStream& operator<<(unsigned short value) override;
    ByteStream& operator<<(int value) override;
    ByteStream& operator<<(unsigned int value) override;
    ByteStream& operator<<(long long value) override;
    ByteStream& operator<<(unsigned long long value) override;
    ByteStream& operator<<(long value) override;
    ByteStream& operator<<(unsigned long value) override;
    ByteStream& operator<<(float value) override;
    ByteStream& operator<<(double value) override;
    ByteStream& operator<<(String const& value) override;
    ByteStream& operator<<(std::vector<unsigned char> const& value) override;

    void Write(unsigned int count, unsigned char const* in) override;

    bool AtEnd() const override { return position >= buffer.size(); }
    unsigned long long GetPosition() const override { return position; }
    unsigned long long GetSize() const override { return buffer.size(); }
    unsigned long long GetRemaining() const override;
    void SetPosition(unsigned long long newPosition) override;
    void Skip(unsigned long long count) override;

private:
    template <typename T>
    ByteStream& readValue(T& value);
    template <typename T>
    ByteStream& writeValue(T value);
    /// Copies `count` bytes to the position, growing the buffer, and moves past them.
    void put(unsigned char const* in, unsigned int count);

    std::vector<unsigned char> buffer;
    unsigned int position = 0;
    EndianType endian = NativeEndian;
    bool writeStringLength = true;
};

} // namespace Util
