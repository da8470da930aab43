// Little-endian encoding of the values of the result files, independent of the host's byte order.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace pvx::binary {

template <class U>
inline void Put_Unsigned(unsigned char* out, U u) {
  for (std::size_t i = 0; i < sizeof(U); ++i)
    out[i] = static_cast<unsigned char>((u >> (8 * i)) & 0xFFu);
}

template <class U>
inline U Get_Unsigned(const unsigned char* in) {
  U u = 0;
  for (std::size_t i = 0; i < sizeof(U); ++i)
    u = static_cast<U>(u | (static_cast<U>(in[i]) << (8 * i)));
  return u;
}

inline void Put_F32(unsigned char* out, float v) {
  Put_Unsigned(out, std::bit_cast<std::uint32_t>(v));
}
inline void Put_F64(unsigned char* out, double v) {
  Put_Unsigned(out, std::bit_cast<std::uint64_t>(v));
}
inline void Put_I16(unsigned char* out, std::int16_t v) {
  Put_Unsigned(out, static_cast<std::uint16_t>(v));
}
inline void Put_I32(unsigned char* out, std::int32_t v) {
  Put_Unsigned(out, static_cast<std::uint32_t>(v));
}

inline float Get_F32(const unsigned char* in) {
  return std::bit_cast<float>(Get_Unsigned<std::uint32_t>(in));
}
inline double Get_F64(const unsigned char* in) {
  return std::bit_cast<double>(Get_Unsigned<std::uint64_t>(in));
}
inline std::int16_t Get_I16(const unsigned char* in) {
  return static_cast<std::int16_t>(Get_Unsigned<std::uint16_t>(in));
}
inline std::int32_t Get_I32(const unsigned char* in) {
  return static_cast<std::int32_t>(Get_Unsigned<std::uint32_t>(in));
}

// A double narrowed to single as the files hold it; values beyond the range of a single become
// infinite rather than undefined.
inline float Narrow(double v) {
  if (v > std::numeric_limits<float>::max()) return std::numeric_limits<float>::infinity();
  if (v < -std::numeric_limits<float>::max()) return -std::numeric_limits<float>::infinity();
  return static_cast<float>(v);
}

// Appends values to a byte buffer.
struct Writer {
  std::vector<unsigned char> bytes;
  void i16(std::int16_t v) {
    bytes.resize(bytes.size() + 2);
    Put_I16(bytes.data() + bytes.size() - 2, v);
  }
  void i32(std::int32_t v) {
    bytes.resize(bytes.size() + 4);
    Put_I32(bytes.data() + bytes.size() - 4, v);
  }
  void f64(double v) {
    bytes.resize(bytes.size() + 8);
    Put_F64(bytes.data() + bytes.size() - 8, v);
  }
};

// Takes values from a byte range; a read past the end sets `failed` and gives 0.
struct Reader {
  const unsigned char* data;
  std::size_t size;
  std::size_t pos = 0;
  bool failed = false;
  std::size_t remaining() const { return size - pos; }
  bool take(std::size_t n) {
    if (failed || n > remaining()) {
      failed = true;
      return false;
    }
    pos += n;
    return true;
  }
  std::int16_t i16() { return take(2) ? Get_I16(data + pos - 2) : 0; }
  std::int32_t i32() { return take(4) ? Get_I32(data + pos - 4) : 0; }
  double f64() { return take(8) ? Get_F64(data + pos - 8) : 0.0; }
};

}  // namespace pvx::binary
