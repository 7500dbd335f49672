// Explicit little-endian encoding of the numbers of the device's binary
// formats (the manufacturing record, play logs), so their bytes are the same
// whatever the host's byte order and alignment.
#ifndef VIRELINE_PLATFORM_LITTLEENDIAN_H_
#define VIRELINE_PLATFORM_LITTLEENDIAN_H_

#include <cstdint>

namespace vireline {

// Stores `value` at `out` as 2 bytes, least significant first.
inline void EncodeFixed16(unsigned char* out, uint16_t value) {
  out[0] = static_cast<unsigned char>(value);
  out[1] = static_cast<unsigned char>(value >> 8);
}

// Stores `value` at `out` as 4 bytes, least significant first.
inline void EncodeFixed32(unsigned char* out, uint32_t value) {
  for (int i = 0; i < 4; ++i) out[i] = static_cast<unsigned char>(value >> (8 * i));
}

// The 2-byte little-endian number at `in`.
inline uint16_t DecodeFixed16(const unsigned char* in) {
  return static_cast<uint16_t>(in[0] | (in[1] << 8));
}

// The 4-byte little-endian number at `in`.
inline uint32_t DecodeFixed32(const unsigned char* in) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = (value << 8) | in[i];
  return value;
}

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_LITTLEENDIAN_H_
