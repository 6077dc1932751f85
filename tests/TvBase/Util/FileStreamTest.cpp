#include "TvBase/Util/FileStream.h"

#include "TvBase/Util/ByteStream.h"

#include "tests/support/TempFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

using TestSupport::MessageOf;
using TestSupport::ReadFile;
using TestSupport::TempFolder;
using Util::ByteStream;
using Util::DataStream;
using Util::File;
using Util::FileStream;
using Util::Exception::DataStreamIO;

namespace
{

using Bytes = std::vector<unsigned char>;

/// Writes one of each kind of value, so that two streams can be compared byte for byte.
void writeSample(DataStream& stream)
{
    stream << true << 'q' << static_cast<short>(-300) << 0x12345678u << -7 << 1ULL << 3.5f << -0.125
           << static_cast<long>(99) << String("text") << String() << Bytes{1, 2, 3};
}

} // namespace

TEST(FileStreamEncoding, SameBytesAsByteStreamInBothOrders)
{
    TempFolder temp;
    for (DataStream::EndianType endian : {DataStream::LittleEndian, DataStream::BigEndian})
    {
        FilePath const path((temp / "sample.bin").c_str());
        {
            FileStream out(path, File::ModeWrite);
            out.SetEndianType(endian);
            writeSample(out);
            out.Close();
        }
        ByteStream reference;
        reference.SetEndianType(endian);
        writeSample(reference);
        std::string const written = ReadFile(temp / "sample.bin");
        EXPECT_EQ(Bytes(written.begin(), written.end()), reference.GetBuffer());

        FileStream in(path, File::ModeRead);
        in.SetEndianType(endian);
        EXPECT_EQ(reference.GetSize(), in.GetSize());
        bool b = false;
        char c = 0;
        short s = 0;
        unsigned int u = 0;
        int i = 0;
        unsigned long long ull = 0;
        float f = 0;
        double d = 0;
        long l = 0;
        String text;
        String null("x");
        Bytes bytes;
        in >> b >> c >> s >> u >> i >> ull >> f >> d >> l >> text >> null >> bytes;
        EXPECT_TRUE(b);
        EXPECT_EQ('q', c);
        EXPECT_EQ(-300, s);
        EXPECT_EQ(0x12345678u, u);
        EXPECT_EQ(-7, i);
        EXPECT_EQ(1ULL, ull);
        EXPECT_EQ(3.5f, f);
        EXPECT_EQ(-0.125, d);
        EXPECT_EQ(99L, l);
        EXPECT_EQ("text", text);
        EXPECT_TRUE(null.IsNull());
        EXPECT_EQ((Bytes{1, 2, 3}), bytes);
        EXPECT_TRUE(in.AtEnd());
    }
}

TEST(FileStreamEncoding, PositionsRawBytesAndBufferedSize)
{
    TempFolder temp;
    FilePath const path(temp.Write("raw.bin", "0123456789").c_str());
    FileStream stream(path, File::ModeRead | File::ModeWrite);
    EXPECT_EQ(10u, stream.GetSize());
    stream.SetPosition(3);
    stream.Skip(2);
    EXPECT_EQ(5u, stream.GetPosition());
    EXPECT_EQ(5u, stream.GetRemaining());
    unsigned char out[2];
    stream.Read(2, out);
    EXPECT_EQ('5', out[0]);
    EXPECT_EQ('6', out[1]);
    unsigned char const in[] = {'a', 'b'};
    stream.SetPosition(0);
    stream.Write(2, in);
    stream.Close();
    EXPECT_EQ("ab23456789", ReadFile(temp / "raw.bin"));
    { // Size counts bytes still buffered.
        TempFolder temp;
        FileStream stream(FilePath((temp / "grow.bin").c_str()), File::ModeWrite);
        stream << 1 << 2 << 3;
        EXPECT_EQ(12u, stream.GetSize());
        EXPECT_EQ(12u, stream.GetPosition());
        EXPECT_EQ(0u, stream.GetRemaining());
        EXPECT_TRUE(stream.AtEnd());
    }
}

TEST(FileStreamErrors, EachFailureIsNamed)
{
    TempFolder temp;
    std::string const missing = temp / "missing.bin";
    EXPECT_EQ(
        String("Can't open file: %1").Arg(missing.c_str()),
        MessageOf<DataStreamIO>([&] { FileStream(FilePath(missing.c_str()), File::ModeRead); }));
    { // Short primitive read keeps target and position.
        TempFolder temp;
        FileStream stream(FilePath(temp.Write("short.bin", "ab").c_str()), File::ModeRead);
        int value = 42;
        EXPECT_EQ("Can't extract int: Attempt to read 4 bytes, only read 2 bytes",
                  MessageOf<DataStreamIO>([&] { stream >> value; }));
        EXPECT_EQ(42, value);
        EXPECT_EQ(0u, stream.GetPosition());
        unsigned char raw[5];
        EXPECT_EQ("Can't read 5 bytes: Attempt to read 5 bytes, only read 2 bytes",
                  MessageOf<DataStreamIO>([&] { stream.Read(5, raw); }));
        EXPECT_EQ(0u, stream.GetPosition());
    }
    { // String failures name length or cause.
        TempFolder temp;
        String target("x");

        FileStream noLength(FilePath(temp.Write("a.bin", std::string("\x02\x00", 2)).c_str()),
                            File::ModeRead);
        EXPECT_EQ("Can't extract string: Attempt to read 4 bytes, only read 2 bytes",
                  MessageOf<DataStreamIO>([&] { noLength >> target; }));
        EXPECT_TRUE(target.IsNull());

        FileStream shortText(FilePath(temp.Write("b.bin", std::string("\x0A\x00\x00\x00"
                                                                      "abc",
                                                                      7))
                                          .c_str()),
                             File::ModeRead);
        EXPECT_EQ("Can't extract string 10: Attempt to read 10 bytes, only read 3 bytes",
                  MessageOf<DataStreamIO>([&] { shortText >> target; }));
        EXPECT_EQ(0u, shortText.GetPosition());

        FileStream huge(FilePath(temp.Write("c.bin", std::string("\x41\x0D\x03\x00", 4)).c_str()),
                        File::ModeRead);
        EXPECT_EQ("Improbable string length 200001",
                  MessageOf<DataStreamIO>([&] { huge >> target; }));

        FileStream vector(
            FilePath(temp.Write("d.bin", std::string("\x64\x00\x00\x00xy", 6)).c_str()),
            File::ModeRead);
        Bytes bytes{7};
        EXPECT_EQ("Can't extract 100 bytes: only 2 bytes remain",
                  MessageOf<DataStreamIO>([&] { vector >> bytes; }));
        EXPECT_EQ((Bytes{7}), bytes);
        EXPECT_EQ(0u, vector.GetPosition());
    }
    { // Writes to read only file and closed seek.
        TempFolder temp;
        FileStream stream(FilePath(temp.Write("ro.bin", "abcd").c_str()), File::ModeRead);
        EXPECT_EQ("Can't insert int: Attempt to write 4 bytes, only wrote 0 bytes",
                  MessageOf<DataStreamIO>([&] { stream << 5; }));
        EXPECT_EQ("Can't insert string: Attempt to write 4 bytes, only wrote 0 bytes",
                  MessageOf<DataStreamIO>([&] { stream << String("abc"); }));
        EXPECT_EQ("Can't insert 2 bytes: Attempt to write 4 bytes, only wrote 0 bytes",
                  MessageOf<DataStreamIO>(
                      [&] {
                          stream << Bytes{1, 2};
                      }));
        unsigned char const raw[] = {1};
        EXPECT_EQ("Can't write 1 bytes: Attempt to write 1 bytes, only wrote 0 bytes",
                  MessageOf<DataStreamIO>([&] { stream.Write(1, raw); }));
        stream.Close();
        EXPECT_EQ("Can't seek to 3: Attempt to seek to 3 when not open",
                  MessageOf<DataStreamIO>([&] { stream.SetPosition(3); }));
    }
}
