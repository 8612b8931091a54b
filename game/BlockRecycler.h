// BlockRecycler: keeps freed blocks of one size for the next allocation of that size.
#pragma once

#include <cstddef>
#include <new>

namespace velmora {

// Loading a game creates a position and a move node per move and destroying it frees them all
// again; loading the next game then asks for as many blocks of the same two sizes. Freed
// blocks of the class's own size are kept on a per-thread list, up to kKeep of them, and handed
// out again before the heap is asked. Blocks of other sizes (derived classes) go straight to
// the heap.
template <typename T>
class BlockRecycler {
  public:
    static constexpr std::size_t kKeep = 4096;

    static void* Allocate(std::size_t size) {
        if (size == sizeof(T)) {
            FreeList& list = List();
            if (list.head != nullptr) {
                Link* block = list.head;
                list.head = block->next;
                --list.count;
                return block;
            }
        }
        return ::operator new(size);
    }

    static void Free(void* block, std::size_t size) {
        if (block == nullptr) return;
        if (size == sizeof(T)) {
            FreeList& list = List();
            if (list.count < kKeep) {
                list.head = new (block) Link{list.head};
                ++list.count;
                return;
            }
        }
        ::operator delete(block);
    }

  private:
    struct Link {
        Link* next;
    };
    static_assert(sizeof(T) >= sizeof(Link), "a block must hold a link");

    struct FreeList {
        Link* head = nullptr;
        std::size_t count = 0;
        ~FreeList() {
            while (head != nullptr) {
                Link* next = head->next;
                ::operator delete(head);
                head = next;
            }
        }
    };
    static FreeList& List() {
        thread_local FreeList list;
        return list;
    }
};

}  // namespace velmora
