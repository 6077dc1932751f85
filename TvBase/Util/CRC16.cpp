#include "TvBase/Util/CRC16.h"

namespace Util
{

namespace
{

struct CRCTable
{
    unsigned short entries[256];

    CRCTable()
    {
        for (unsigned int i = 0; i < 256; ++i)
        {
            unsigned int crc = i;
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1;
            entries[i] = static_cast<unsigned short>(crc);
        }
    }
};

void update(unsigned short& crc, CRCTable const& table, char const* data, unsigned int size)
{
    for (unsigned int i = 0; i < size; ++i)
        crc = static_cast<unsigned short>(
            (crc >> 8) ^ table.entries[(crc ^ static_cast<unsigned char>(data[i])) & 0xFF]);
}

} // namespace

// The table is built afresh on each call: it costs 2 KB of arithmetic and keeps the functions
// free of shared state.
unsigned short CRC16(char const* data, unsigned int size)
{
    unsigned short crc = 0;
    CRC16(crc, data, size);
    return crc;
}

void CRC16(unsigned short& crc, char byte)
{
    CRC16(crc, &byte, 1);
}

void CRC16(unsigned short& crc, char const* data, unsigned int size)
{
    if (!data || size == 0)
        return;
    CRCTable const table;
    update(crc, table, data, size);
}

} // namespace Util
