// Storage for the element arrays of fi objects.
//
// An element array is a run of constructed numbers in raw storage. Large runs come from
// a small cache of recently freed blocks, so that an array made right after another of
// about the same size (the common case in a loop of array operations) lands in memory
// that is already mapped instead of faulting in fresh pages. Not thread safe: numbers
// live on one thread. Built with CORBEL_NO_POOL the cache is off, so that memory
// checkers see every block.
#pragma once

#include <cstddef>
#include <new>

#include "number/number.h"

namespace corbel {

class ElementStorage {
 public:
  // n numbers, each a double zero.
  static number* makeZeros(std::size_t n);

  // n numbers on double bodies, filled block by block: fill(first, count, out) writes the
  // values of elements first .. first + count - 1 into out[0 .. count) and answers whether
  // it could. A refusal destroys what was built and gives null.
  template <class Fill>
  static number* makeDoubles(std::size_t n, Fill fill);

  // Destroys the n numbers at p and frees their storage.
  static void destroy(number* p, std::size_t n) noexcept;

  // Elements per block handed to a fill function.
  static constexpr std::size_t kBlock = 256;

 private:
  static number* allocate(std::size_t n);
  static void deallocate(number* p, std::size_t n) noexcept;
  static void destroyRange(number* p, std::size_t n) noexcept;
};

template <class Fill>
number* ElementStorage::makeDoubles(std::size_t n, Fill fill) {
  number* p = allocate(n);
  std::size_t built = 0;
  try {
    double out[kBlock];
    for (std::size_t first = 0; first < n; first += kBlock) {
      const std::size_t count = n - first < kBlock ? n - first : kBlock;
      if (!fill(first, count, out)) {
        destroyRange(p, built);
        deallocate(p, n);
        return nullptr;
      }
      for (std::size_t i = 0; i < count; ++i, ++built)
        new (p + first + i) number(number::ondouble(out[i]));
    }
  } catch (...) {
    destroyRange(p, built);
    deallocate(p, n);
    throw;
  }
  return p;
}

}  // namespace corbel
