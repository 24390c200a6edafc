// Loops of the bit operations over element arrays of inline doubles. An element is a stored
// integer q times 2^e (|q| < 2^52): each loop reads the W-bit two's-complement pattern of q,
// changes it, and writes the pattern back as a signed or unsigned W-bit integer times 2^e,
// as the 64-bit forms of a double body do one element at a time. Built per x86-64 level.
#pragma once

#include <cstddef>
#include <cstdint>

#include "number/number.h"

namespace corbel::kernels {

// A word of 1 to 52 bits whose least significant bit weighs 2^e, e in [-1000, 1000 - W].
struct BitFormat {
  BitFormat(bool issigned, int wordLength, int e);
  std::uint64_t mask;  // the W low bits
  int extend;          // the shift that sign-extends a pattern (0 for an unsigned word)
  double down, up;     // 2^-e and 2^e
  double magic;        // 2^52 plus 2^51 for a signed word, so that q + magic is in [2^52, 2^53)
};

enum class Bitwise { And, Or, Xor };

// out[i] = a[i * sa] op b[i * sb] (steps 0 or 1), written into raw storage; false when an
// operand element is not an inline double (out then holds garbage, to be discarded).
bool bitwise(Bitwise op, const BitFormat& f, const number* a, std::size_t sa, const number* b,
             std::size_t sb, number* out, std::size_t n);
// bits[i] = bit positions[i * sp] - 1 of a[i * sa]; every position in 1 .. W, every
// element of a an inline double.
void getBits(const BitFormat& f, const number* a, std::size_t sa, const long* positions,
             std::size_t sp, std::uint8_t* bits, std::size_t n);
// out[i] = a[i * sa] with bit positions[i * sp] - 1 made values[i * sv] (0 or 1), written
// into raw storage; every position in 1 .. W, every element of a an inline double.
void setBits(const BitFormat& f, const number* a, std::size_t sa, const long* positions,
             std::size_t sp, const std::uint8_t* values, std::size_t sv, number* out,
             std::size_t n);

// Stored integers of `limbs` 64-bit limbs each (two's complement, sign- or zero-extended from
// the word): out[i] = a[i * sa] op b[i * sb] limb by limb (steps 0 or 1), which is the
// extended result of the operation on the words.
void wordwise(Bitwise op, const std::uint64_t* a, std::size_t sa, const std::uint64_t* b,
              std::size_t sb, std::uint64_t* out, std::size_t n, int limbs);

}  // namespace corbel::kernels
