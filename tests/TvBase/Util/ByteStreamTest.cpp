#include "TvBase/Util/ByteStream.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

using TestSupport::MessageOf;
using Util::ByteStream;
using Util::DataStream;
using Util::Exception::DataStreamIO;

namespace
{

using Bytes = std::vector<unsigned char>;

/// The reference encoding: `size` bytes of `value`, least significant first, or reversed.
Bytes encoded(unsigned long long value, unsigned int size, bool bigEndian)
{
    Bytes out;
    for (unsigned int i = 0; i < size; ++i)
        out.push_back(static_cast<unsigned char>(value >> (8 * i)));
    if (bigEndian)
        std::reverse(out.begin(), out.end());
    return out;
}

Bytes concat(std::initializer_list<Bytes> parts)
{
    Bytes out;
    for (Bytes const& part : parts)
        out.insert(out.end(), part.begin(), part.end());
    return out;
}

} // namespace

TEST(ByteStreamEncoding, PrimitivesInBothByteOrdersNativeLittleEndian)
{
    for (bool big : {false, true})
    {
        ByteStream stream;
        stream.SetEndianType(big ? DataStream::BigEndian : DataStream::LittleEndian);
        float const f = 1.5f;
        double const d = -2.25;
        unsigned int fBits;
        unsigned long long dBits;
        std::memcpy(&fBits, &f, 4);
        std::memcpy(&dBits, &d, 8);

        stream << true << 'x' << static_cast<signed char>(-2) << static_cast<unsigned char>(200)
               << static_cast<short>(-3) << static_cast<unsigned short>(0xBEEF) << -5 << 0xDEADBEEFu
               << -6LL << 0x0102030405060708ULL << f << d;

        Bytes const expected = concat({{1, 'x', 0xFE, 200},
                                       encoded(0xFFFD, 2, big),
                                       encoded(0xBEEF, 2, big),
                                       encoded(0xFFFFFFFB, 4, big),
                                       encoded(0xDEADBEEF, 4, big),
                                       encoded(0xFFFFFFFFFFFFFFFAULL, 8, big),
                                       encoded(0x0102030405060708ULL, 8, big),
                                       encoded(fBits, 4, big),
                                       encoded(dBits, 8, big)});
        EXPECT_EQ(expected, stream.GetBuffer()) << (big ? "big" : "little");

        stream.SetPosition(0);
        bool b = false;
        char c = 0;
        signed char sc = 0;
        unsigned char uc = 0;
        short s = 0;
        unsigned short us = 0;
        int i = 0;
        unsigned int ui = 0;
        long long ll = 0;
        unsigned long long ull = 0;
        float rf = 0;
        double rd = 0;
        stream >> b >> c >> sc >> uc >> s >> us >> i >> ui >> ll >> ull >> rf >> rd;
        EXPECT_TRUE(b);
        EXPECT_EQ('x', c);
        EXPECT_EQ(-2, sc);
        EXPECT_EQ(200, uc);
        EXPECT_EQ(-3, s);
        EXPECT_EQ(0xBEEF, us);
        EXPECT_EQ(-5, i);
        EXPECT_EQ(0xDEADBEEFu, ui);
        EXPECT_EQ(-6LL, ll);
        EXPECT_EQ(0x0102030405060708ULL, ull);
        EXPECT_EQ(f, rf);
        EXPECT_EQ(d, rd);
        EXPECT_TRUE(stream.AtEnd());
    }
    // Native is little endian here.
    ByteStream native;
    native << 1u;
    EXPECT_EQ((Bytes{1, 0, 0, 0}), native.GetBuffer());
    ByteStream big;
    big.SetEndianType(DataStream::BigEndian);
    big << 1u;
    EXPECT_EQ((Bytes{0, 0, 0, 1}), big.GetBuffer());
    // Bool reads any non zero byte as true.
    unsigned char const bytes[] = {7, 0};
    ByteStream stream(2, bytes);
    EXPECT_TRUE(stream.ReadPrimitive(false));
    EXPECT_FALSE(stream.ReadPrimitive(true));
}

TEST(ByteStreamEncoding, SwappedLongKeepsOnlyItsLowHalf)
{
    long const value = static_cast<long>(0x1122334455667788LL);
    ByteStream native;
    native << value;
    EXPECT_EQ(encoded(0x1122334455667788ULL, 8, false), native.GetBuffer());
    native.SetPosition(0);
    EXPECT_EQ(value, native.ReadPrimitive(0L));

    ByteStream big;
    big.SetEndianType(DataStream::BigEndian);
    big << value << static_cast<unsigned long>(7);
    EXPECT_EQ((Bytes{0x55, 0x66, 0x77, 0x88, 0, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0}), big.GetBuffer());
    big.SetPosition(0);
    EXPECT_EQ(0x55667788L, big.ReadPrimitive(0L));
    EXPECT_EQ(7ul, big.ReadPrimitive(0ul));
}

TEST(ByteStreamStrings, LengthThenBytesNullAndEmptyReadBackNull)
{
    ByteStream stream;
    stream << String("abc");
    EXPECT_EQ((Bytes{3, 0, 0, 0, 'a', 'b', 'c'}), stream.GetBuffer());
    stream.SetPosition(0);
    String read("old");
    stream >> read;
    EXPECT_EQ("abc", read);

    ByteStream big;
    big.SetEndianType(DataStream::BigEndian);
    big << String("hi");
    EXPECT_EQ((Bytes{0, 0, 0, 2, 'h', 'i'}), big.GetBuffer());
    { // Null and empty read back null.
        ByteStream stream;
        stream << String() << String("");
        EXPECT_EQ(Bytes(8, 0), stream.GetBuffer());
        stream.SetPosition(0);
        String first("x");
        String second("y");
        stream >> first >> second;
        EXPECT_TRUE(first.IsNull());
        EXPECT_TRUE(second.IsNull());
    }
    { // Without length only the bytes.
        ByteStream stream;
        EXPECT_TRUE(stream.IsWriteStringLength());
        stream.SetWriteStringLength(false);
        stream << String("abc") << String("de");
        EXPECT_EQ((Bytes{'a', 'b', 'c', 'd', 'e'}), stream.GetBuffer());
    }
    { // Every length up to limit round trips through base interface.
        ByteStream bytes;
        DataStream& stream = bytes;
        for (unsigned int length : {1u, 2u, 255u, 256u, 65536u})
            stream << String(std::string(length, 'k').c_str());
        stream.SetPosition(0);
        for (unsigned int length : {1u, 2u, 255u, 256u, 65536u})
        {
            String read;
            stream >> read;
            EXPECT_EQ(length, read.Length());
        }
        EXPECT_TRUE(stream.AtEnd());
    }
}

TEST(ByteStreamStrings, LengthLimitAndShortData)
{
    ByteStream stream;
    std::string const longest(200000, 'z');
    stream << String(longest.c_str());
    stream.SetPosition(0);
    String read;
    stream >> read;
    EXPECT_EQ(200000u, read.Length());

    ByteStream tooLong;
    std::string const over(200001, 'z');
    tooLong << String(over.c_str());
    tooLong.SetPosition(0);
    String target("kept?");
    EXPECT_EQ("Improbable string length 200001",
              MessageOf<DataStreamIO>([&] { tooLong >> target; }));
    EXPECT_TRUE(target.IsNull());

    unsigned char const shortData[] = {10, 0, 0, 0, 'a', 'b', 'c'};
    ByteStream truncated(7, shortData);
    EXPECT_EQ("Can't read string of length 10",
              MessageOf<DataStreamIO>([&] { truncated >> target; }));
    EXPECT_EQ(0u, truncated.GetPosition());
}

TEST(ByteStreamErrors, FailedReadsKeepTargetAndPosition)
{
    unsigned char const bytes[] = {1, 2, 3};
    ByteStream stream(3, bytes);
    int value = 42;
    EXPECT_EQ("Can't extract 4 bytes at position 0, total size 3",
              MessageOf<DataStreamIO>([&] { stream >> value; }));
    EXPECT_EQ(42, value);
    EXPECT_EQ(0u, stream.GetPosition());

    stream.SetPosition(2);
    EXPECT_EQ("Can't extract 2 bytes at position 2, total size 3",
              MessageOf<DataStreamIO>([&] { stream.ReadPrimitive(short()); }));
    // A position past the end reads nothing and reports the position as set.
    stream.SetPosition(9);
    EXPECT_EQ(0u, stream.GetRemaining());
    EXPECT_TRUE(stream.AtEnd());
    EXPECT_EQ("Can't extract 1 bytes at position 9, total size 3",
              MessageOf<DataStreamIO>([&] { stream.ReadPrimitive(char()); }));
    { // Raw and vector reads.
        ByteStream stream;
        stream << Bytes{9, 8, 7};
        EXPECT_EQ((Bytes{3, 0, 0, 0, 9, 8, 7}), stream.GetBuffer());
        stream.SetPosition(0);
        Bytes read;
        stream >> read;
        EXPECT_EQ((Bytes{9, 8, 7}), read);

        stream.SetPosition(4);
        unsigned char out[3] = {};
        stream.Read(2, out);
        EXPECT_EQ(8, out[1]);
        EXPECT_EQ("Can't read 2 bytes", MessageOf<DataStreamIO>([&] { stream.Read(2, out); }));

        unsigned char const lying[] = {200, 0, 0, 0, 1};
        ByteStream damaged(5, lying);
        EXPECT_EQ("Can't read 200 bytes", MessageOf<DataStreamIO>([&] { damaged >> read; }));
        EXPECT_EQ((Bytes{9, 8, 7}), read);
    }
}

TEST(ByteStreamPositions, WritesOverwriteOrGrowWithNulBytes)
{
    ByteStream stream(16);
    EXPECT_EQ(0u, stream.GetSize());
    stream << 0x11111111u;
    stream.SetPosition(1);
    stream << static_cast<unsigned char>(0xAA);
    EXPECT_EQ((Bytes{0x11, 0xAA, 0x11, 0x11}), stream.GetBuffer());

    stream.SetPosition(6);
    stream << static_cast<unsigned short>(0x2233);
    EXPECT_EQ((Bytes{0x11, 0xAA, 0x11, 0x11, 0, 0, 0x33, 0x22}), stream.GetBuffer());
    EXPECT_EQ(8u, stream.GetPosition());

    stream.SetPosition(2);
    stream.Skip(3);
    EXPECT_EQ(5u, stream.GetPosition());
    EXPECT_EQ(3u, stream.GetRemaining());

    stream.Clear();
    EXPECT_EQ(0u, stream.GetSize());
    EXPECT_EQ(0u, stream.GetPosition());

    unsigned char const source[] = {5, 6};
    ByteStream fromRef(array_ref<unsigned char const>(source, 2));
    EXPECT_EQ(5, fromRef.ReadPrimitive(static_cast<unsigned char>(0)));
    EXPECT_EQ(1u, fromRef.GetRemaining());
}
