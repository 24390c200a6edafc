// A free-list allocator for the small objects that every number allocates (handles and
// double bodies), so that making and dropping numbers costs a pointer swap instead of
// a trip through the general heap.
#pragma once

#include <cstddef>
#include <new>

namespace corbel {

// Objects of one size are carved from blocks that are never returned to the system;
// freed objects go on a singly linked list and are reused first. Not thread safe:
// numbers live on one thread. Built with CORBEL_NO_POOL the pool forwards to the
// general heap, so that memory checkers see every object.
template <std::size_t Size, std::size_t Align>
class FreeListPool {
 public:
  static void* allocate() {
#ifdef CORBEL_NO_POOL
    return ::operator new (Size, std::align_val_t{Align});
#else
    if (free_ == nullptr) refill();
    Node* n = free_;
    free_ = n->next;
    return n;
#endif
  }

  static void deallocate(void* p) noexcept {
#ifdef CORBEL_NO_POOL
    ::operator delete (p, std::align_val_t{Align});
#else
    Node* n = static_cast<Node*>(p);
    n->next = free_;
    free_ = n;
#endif
  }

 private:
  struct Node {
    Node* next;
  };
  static constexpr std::size_t kAlign = Align < alignof(Node) ? alignof(Node) : Align;
  static constexpr std::size_t kSlot =
      ((Size < sizeof(Node) ? sizeof(Node) : Size) + kAlign - 1) / kAlign * kAlign;
  static constexpr std::size_t kPerBlock = 512;

  static void refill() {
    auto* block =
        static_cast<unsigned char*>(::operator new (kSlot* kPerBlock, std::align_val_t{kAlign}));
    for (std::size_t i = kPerBlock; i-- > 0;) {
      Node* n = reinterpret_cast<Node*>(block + i * kSlot);
      n->next = free_;
      free_ = n;
    }
  }

  static inline Node* free_ = nullptr;
};

// Gives a class pooled operator new and delete. Derived classes of a different size
// must not inherit them: a class that uses this is final or declares its own.
template <class T>
struct Pooled {
  static void* operator new(std::size_t size) {
    return size == sizeof(T) ? FreeListPool<sizeof(T), alignof(T)>::allocate()
                             : ::operator new(size);
  }
  static void operator delete(void* p, std::size_t size) noexcept {
    if (size == sizeof(T))
      FreeListPool<sizeof(T), alignof(T)>::deallocate(p);
    else
      ::operator delete(p);
  }
};

}  // namespace corbel
