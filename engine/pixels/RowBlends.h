// Mixing whole rows of bytes with the fastest kernel that gives the byte-by-byte result.
#pragma once

#include <cstdint>

// destination[i] = (above[i] + 2 * current[i] + below[i]) >> 2 for i from 0 to byteCount - 1, one byte after the other:
// a destination that overlaps a source row reads what it has already written. Nothing happens for a byteCount below 1.
void BlendLines121(std::uint8_t* destination, const std::uint8_t* above, const std::uint8_t* current,
                   const std::uint8_t* below, std::int32_t byteCount);

// destination[i] = (above[i] + below[i]) >> 1, under the same terms.
void AverageLines(std::uint8_t* destination, const std::uint8_t* above, const std::uint8_t* below,
                  std::int32_t byteCount);
