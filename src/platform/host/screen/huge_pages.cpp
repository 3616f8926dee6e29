#include "platform/host/screen/huge_pages.h"

#include <sys/mman.h>

#include <memory>

namespace host {

void preferHugePages(void* block, std::size_t bytes) {
    constexpr std::size_t kHugePage = std::size_t{2} << 20;
    if (std::align(kHugePage, kHugePage, block, bytes) == nullptr) return;
    // A kernel without huge pages refuses, and nothing is lost.
    madvise(block, bytes / kHugePage * kHugePage, MADV_HUGEPAGE);
}

}  // namespace host
