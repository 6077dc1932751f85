#pragma once

namespace Util
{

/// CRC-16 with the reflected polynomial 0xA001 and start value 0: "123456789" gives 0xBB3D.
/// A null pointer or a size of 0 gives 0.
unsigned short CRC16(char const* data, unsigned int size);
/// Continues `crc` with one more byte.
void CRC16(unsigned short& crc, char byte);
/// Continues `crc` with `size` more bytes; a null pointer adds nothing.
void CRC16(unsigned short& crc, char const* data, unsigned int size);

} // namespace Util
