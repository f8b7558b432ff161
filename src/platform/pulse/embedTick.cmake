# Writes a header with the samples of a WAV file: cmake -D WAV=<file> -D HEADER=<file> -P embedTick.cmake
# The file must be what sound tools write when nothing special is asked for: one channel, 16 bits, 48000 frames per second,
# no other chunks.

file(READ "${WAV}" hex HEX)
string(TOLOWER "${hex}" hex)
#         RIFF    size    WAVEfmt_        16      1   1   48000   96000   2   16  data    size
set(shape "^52494646........57415645666d7420100000000100010080bb00000077010002001000" "64617461........")
list(JOIN shape "" shape)
if(NOT hex MATCHES "${shape}")
  message(FATAL_ERROR "${WAV} is not a plain WAV file with one channel of 16 bits at 48 kHz")
endif()

# The size tells how much is there; bytes are stored lowest first.
string(SUBSTRING "${hex}" 80 8 size_hex)
string(REGEX REPLACE "^(..)(..)(..)(..)$" "0x\\4\\3\\2\\1" size_digits "${size_hex}")
math(EXPR size "${size_digits}")
string(LENGTH "${hex}" length)
math(EXPR present "${length} / 2 - 44")
if(size EQUAL 0 OR NOT size EQUAL present)
  message(FATAL_ERROR "${WAV} says that it holds ${size} bytes of sound and holds ${present}")
endif()
math(EXPR count "${size} / 2")

string(SUBSTRING "${hex}" 88 -1 samples)
string(REGEX REPLACE "(..)(..)" "toSample(0x\\2\\1), " samples "${samples}")
string(REGEX REPLACE "(toSample[^,]*, toSample[^,]*, toSample[^,]*, toSample[^,]*, toSample[^,]*, toSample[^,]*,) " "\\1\n    "
                     samples "${samples}")
file(
  WRITE "${HEADER}"
  "#pragma once

#include <array>
#include <cstdint>

namespace velloran::platform::pulse {

constexpr std::int16_t toSample(int bits) {
    return static_cast<std::int16_t>(bits);
}

inline constexpr std::array<std::int16_t, ${count}> tickData = {
    ${samples}
};

} // namespace velloran::platform::pulse
")
