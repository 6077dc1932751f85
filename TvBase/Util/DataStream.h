#pragma once

#include "TvBase/Util/DataStreamIOException.h"
#include "TvBase/Util/String.h"

#include <vector>

namespace Util
{

/// An abstract stream of primitive values with an explicit byte order.
///
/// Wire encoding, shared by every stream so that what one writes another reads: `bool` one byte
/// (0 or 1; any non-zero byte reads as true), the `char` types one byte, `short` 2, `int` 4,
/// `long long` 8, `long` 8 on a 64-bit build, `float` and `double` IEEE 754, all in the stream's
/// byte order. A swapped `long` on a 64-bit build swaps only its low four bytes and leaves the
/// high four zero, so the high half of such a value is lost. A `String` is its byte length as
/// `unsigned int` (when `IsWriteStringLength`) and its UTF-8 bytes, no terminator; a null string
/// has length 0 and reads back null. A reader refuses lengths above 200,000 ("Improbable string
/// length %1"). A byte vector is its length as `unsigned int` and its bytes.
///
/// Failures throw `Util::Exception::DataStreamIO`. A failed read of a primitive leaves the target
/// and the position as they were. Not copyable; not for sharing between threads.
class DataStream
{
public:
    /// The byte order of the stored values: native, little-endian, or byte-swapped (any other
    /// value; on the little-endian hosts this system runs on, `BigEndian`).
    enum EndianType
    {
        NativeEndian = 0,
        LittleEndian = 1,
        BigEndian = 2
    };

    /// The longest string a reader accepts.
    static constexpr unsigned int MaxStringLength = 200000;

    DataStream() = default;
    DataStream(DataStream const&) = delete;
    DataStream& operator=(DataStream const&) = delete;

    virtual EndianType GetEndianType() const = 0;
    virtual void SetEndianType(EndianType type) = 0;
    /// Whether `<<` of a `String` writes its length first (true at first).
    virtual bool IsWriteStringLength() const = 0;
    virtual void SetWriteStringLength(bool write) = 0;

    virtual DataStream& operator>>(bool& value) = 0;
    virtual DataStream& operator>>(char& value) = 0;
    virtual DataStream& operator>>(signed char& value) = 0;
    virtual DataStream& operator>>(unsigned char& value) = 0;
    virtual DataStream& operator>>(short& value) = 0;
    virtual DataStream& operator>>(unsigned short& value) = 0;
    virtual DataStream& operator>>(int& value) = 0;
    virtual DataStream& operator>>(unsigned int& value) = 0;
    virtual DataStream& operator>>(long long& value) = 0;
    virtual DataStream& operator>>(unsigned long long& value) = 0;
    virtual DataStream& operator>>(long& value) = 0;
    virtual DataStream& operator>>(unsigned long& value) = 0;
    virtual DataStream& operator>>(float& value) = 0;
    virtual DataStream& operator>>(double& value) = 0;
    /// The target becomes null first; a length of 0 leaves it null.
    virtual DataStream& operator>>(String& value) = 0;
    virtual DataStream& operator>>(std::vector<unsigned char>& value) = 0;

    /// Reads one value and returns it; the argument only selects the type.
    virtual bool ReadPrimitive(bool);
    virtual char ReadPrimitive(char);
    virtual signed char ReadPrimitive(signed char);
    virtual unsigned char ReadPrimitive(unsigned char);
    virtual short ReadPrimitive(short);
    virtual unsigned short ReadPrimitive(unsigned short);
    virtual int ReadPrimitive(int);
    virtual unsigned int ReadPrimitive(unsigned int);
    virtual long long ReadPrimitive(long long);
    virtual unsigned long long ReadPrimitive(unsigned long long);
    virtual long ReadPrimitive(long);
    virtual unsigned long ReadPrimitive(unsigned long);
    virtual float ReadPrimitive(float);
    virtual double ReadPrimitive(double);

    /// Reads exactly `count` raw bytes.
    virtual void Read(unsigned int count, unsigned char* out) = 0;

    virtual DataStream& operator<<(bool value) = 0;
    virtual DataStream& operator<<(char value) = 0;
    virtual DataStream& operator<<(signed char value) = 0;
    virtual DataStream& operator<<(unsigned char value) = 0;
    virtual DataStream& operator<<(short value) = 0;
    virtual DataStream& operator<<(unsigned short value) = 0;
    virtual DataStream& operator<<(int value) = 0;
    virtual DataStream& operator<<(unsigned int value) = 0;
    virtual DataStream& operator<<(long long value) = 0;
    virtual DataStream& operator<<(unsigned long long value) = 0;
    virtual DataStream& operator<<(long value) = 0;
    virtual DataStream& operator<<(unsigned long value) = 0;
    virtual DataStream& operator<<(float value) = 0;
    virtual DataStream& operator<<(double value) = 0;
    virtual DataStream& operator<<(String const& value) = 0;
    virtual DataStream& operator<<(std::vector<unsigned char> const& value) = 0;

    /// Writes `count` raw bytes.
    virtual void Write(unsigned int count, unsigned char const* in) = 0;

    /// The position is at or past the end.
    virtual bool AtEnd() const = 0;
    virtual unsigned long long GetPosition() const = 0;
    virtual unsigned long long GetSize() const = 0;
    /// Size less position; 0 when the position lies past the end.
    virtual unsigned long long GetRemaining() const = 0;
    virtual void SetPosition(unsigned long long position) = 0;
    /// Moves the position forward by `count` bytes.
    virtual void Skip(unsigned long long count) = 0;
    virtual ~DataStream() = default;
};

} // namespace Util
