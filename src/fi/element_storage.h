// Storage for the element arrays of fi objects.
//
// An element array is a run of numbers in raw storage; a number holding a double is that
// double itself, so zero-filled memory is an array of zeros and an array of double-backed
// elements is an array of doubles. Large runs come from
// a small cache of recently freed blocks, so that an array made right after another of
// about the same size (the common case in a loop of array operations) lands in memory
// that is already mapped instead of faulting in fresh pages. Not thread safe: numbers
// live on one thread. Built with CORBEL_NO_POOL the cache is off, so that memory
// checkers see every block.
#pragma once

#include <cstddef>

#include "number/number.h"

static_assert(sizeof(corbel::number) == sizeof(double), "a double-backed number is its double");

namespace corbel {

class ElementStorage {
 public:
  // n numbers, each a double zero: zero-filled memory.
  static number* makeZeros(std::size_t n);

  // Storage for n numbers, none yet made: the caller writes every one of them with
  // number::placedouble before the array is destroyed, or discards it.
  static number* allocateRaw(std::size_t n) { return allocate(n); }
  // Frees storage for n numbers of which those made are all inline doubles (which need no
  // destruction).
  static void discard(number* p, std::size_t n) noexcept {
    deallocate(p, n);
  }

  // Destroys the n numbers at p and frees their storage.
  static void destroy(number* p, std::size_t n) noexcept;

 private:
  static number* allocate(std::size_t n);
  static void deallocate(number* p, std::size_t n) noexcept;
  static void destroyRange(number* p, std::size_t n) noexcept;
};

}  // namespace corbel
