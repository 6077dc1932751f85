#include "TvBase/Util/DataStream.h"

namespace Util
{

namespace
{
template <typename T>
T readOne(DataStream& stream)
{
    T value{};
    stream >> value;
    return value;
}
} // namespace

bool DataStream::ReadPrimitive(bool)
{
    return readOne<bool>(*this);
}
char DataStream::ReadPrimitive(char)
{
    return readOne<char>(*this);
}
signed char DataStream::ReadPrimitive(signed char)
{
    return readOne<signed char>(*this);
}
unsigned char DataStream::ReadPrimitive(unsigned char)
{
    return readOne<unsigned char>(*this);
}
short DataStream::ReadPrimitive(short)
{
    return readOne<short>(*this);
}
unsigned short DataStream::ReadPrimitive(unsigned short)
{
    return readOne<unsigned short>(*this);
}
int DataStream::ReadPrimitive(int)
{
    return readOne<int>(*this);
}
unsigned int DataStream::ReadPrimitive(unsigned int)
{
    return readOne<unsigned int>(*this);
}
long long DataStream::ReadPrimitive(long long)
{
    return readOne<long long>(*this);
}
unsigned long long DataStream::ReadPrimitive(unsigned long long)
{
    return readOne<unsigned long long>(*this);
}
long DataStream::ReadPrimitive(long)
{
    return readOne<long>(*this);
}
unsigned long DataStream::ReadPrimitive(unsigned long)
{
    return readOne<unsigned long>(*this);
}
float DataStream::ReadPrimitive(float)
{
    return readOne<float>(*this);
}
double DataStream::ReadPrimitive(double)
{
    return readOne<double>(*this);
}

} // namespace Util
