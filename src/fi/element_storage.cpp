// Storage for the element arrays of fi objects, with the cache of large freed blocks.
#include "fi/element_storage.h"

#include <array>
#include <cstring>

#include "fi/element_kernels.h"

namespace corbel {
namespace {

// Blocks below this size go straight to the general heap, which serves them well.
constexpr std::size_t kCachedFrom = std::size_t{1} << 20;
// At most this many freed blocks are kept, together at most this many bytes.
constexpr std::size_t kCacheSlots = 4;
constexpr std::size_t kCacheBytes = std::size_t{256} << 20;

// A cached block is reused for a request of at least half its size, so that a small array
// never pins a large block.
struct Cache {
  struct Slot {
    void* block = nullptr;
    std::size_t bytes = 0;
  };
  std::array<Slot, kCacheSlots> slots{};
  std::size_t bytes = 0;

  void* take(std::size_t want) {
    for (Slot& s : slots)
      if (s.block && s.bytes >= want && s.bytes / 2 <= want) {
        void* b = s.block;
        bytes -= s.bytes;
        s = Slot{};
        return b;
      }
    return nullptr;
  }

  // Keeps the block when there is room; answers whether it did.
  bool keep(void* block, std::size_t size) {
    if (bytes + size > kCacheBytes) return false;
    for (Slot& s : slots)
      if (!s.block) {
        s = Slot{block, size};
        bytes += size;
        return true;
      }
    return false;
  }
};

// Never destroyed, so that arrays freed during the process's exit still find it.
Cache& cache() {
  static Cache* c = new Cache;
  return *c;
}

// A cached block carries its size in front of the elements, so that a block reused for a
// smaller array is still kept and freed at its full size.
constexpr std::size_t kHeader = alignof(std::max_align_t);

}  // namespace

number* ElementStorage::allocate(std::size_t n) {
  const std::size_t bytes = n * sizeof(number);
#ifndef CORBEL_NO_POOL
  if (bytes >= kCachedFrom) {
    void* block = cache().take(bytes + kHeader);
    if (block == nullptr) {
      block = ::operator new(bytes + kHeader);
      *static_cast<std::size_t*>(block) = bytes + kHeader;
    }
    return reinterpret_cast<number*>(static_cast<unsigned char*>(block) + kHeader);
  }
#endif
  return static_cast<number*>(::operator new(bytes == 0 ? 1 : bytes));
}

void ElementStorage::deallocate(number* p, std::size_t n) noexcept {
  if (p == nullptr) return;
#ifndef CORBEL_NO_POOL
  if (n * sizeof(number) >= kCachedFrom) {
    void* block = reinterpret_cast<unsigned char*>(p) - kHeader;
    const std::size_t size = *static_cast<std::size_t*>(block);
    if (!cache().keep(block, size)) ::operator delete(block);
    return;
  }
#else
  (void)n;
#endif
  ::operator delete(p);
}

void ElementStorage::destroyRange(number* p, std::size_t n) noexcept {
  // Inline doubles need nothing, and whole runs of them are passed over. Last first, as an
  // array is destroyed, so the handle and body pools get the objects of multiprecision
  // elements back in the order the next array will take them.
  constexpr std::size_t kRun = 512;
  while (n > 0) {
    const std::size_t count = n < kRun ? n : kRun;
    n -= count;
    if (kernels::alldoubles(p + n, count)) continue;
    for (std::size_t i = count; i-- > 0;) p[n + i].~number();
  }
}

number* ElementStorage::makeZeros(std::size_t n) {
  number* p = allocate(n);
  if (n > 0) std::memset(static_cast<void*>(p), 0, n * sizeof(number));
  return p;
}

void ElementStorage::destroy(number* p, std::size_t n) noexcept {
  if (p == nullptr) return;
  destroyRange(p, n);
  deallocate(p, n);
}

}  // namespace corbel
