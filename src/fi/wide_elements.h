// The elements of a fi of a wide binary-point type (53 to 252 bits), held as contiguous
// stored integers from the moment they are made until one of them is asked for as a number.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>

#include "fi/wide_integer.h"

namespace corbel {

// Words up to 124 bits are held as int128, wider ones as int256: each width leaves room for
// the exact sum of two values and a rounding increment below kHeadroom.
constexpr int kWideMinBits = 53;
constexpr int kWideMaxBits = 252;
constexpr int storedLimbs(int wordLength) {
  return wordLength < kHeadroom<int128> ? 2 : 4;
}

struct WideElements {
  // n elements per part, each of `limbs` 64-bit limbs; an element's value is its stored
  // integer times 2^exponent, and the number it becomes has at least `precision` bits.
  WideElements(int limbs, long exponent, unsigned long precision, std::size_t n)
      : limbs(limbs), exponent(exponent), precision(precision), n(n) {}
  WideElements(const WideElements& other)
      : WideElements(other.limbs, other.exponent, other.precision, other.n) {
    for (bool imagPart : {false, true})
      if (other.part(imagPart)) std::memcpy(allocate(imagPart), other.part(imagPart), bytes());
  }
  WideElements& operator=(const WideElements&) = delete;
  ~WideElements() {
    release(re);
    release(im);
  }

  void* part(bool imagPart) const { return imagPart ? im : re; }
  // Uninitialised storage for a part.
  void* allocate(bool imagPart) {
    void*& p = imagPart ? im : re;
    release(p);
    p = ::operator new (bytes(), std::align_val_t{alignof(int256)});
    return p;
  }
  std::size_t bytes() const { return n * static_cast<std::size_t>(limbs) * 8; }

  int limbs;
  long exponent;
  unsigned long precision;
  std::size_t n;

 private:
  static void release(void*& p) {
    if (p) ::operator delete (p, std::align_val_t{alignof(int256)});
    p = nullptr;
  }
  void* re = nullptr;
  void* im = nullptr;
};

}  // namespace corbel
