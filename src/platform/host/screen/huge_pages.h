#pragma once

#include <cstddef>

namespace host {

/// Asks the kernel for huge pages inside a block that is about to be written; the block's ends that fill none stay
/// as they are, so it takes no more memory. Ordinary pages, two thousand to a screen, cost more to get than to fill.
void preferHugePages(void* block, std::size_t bytes);

}  // namespace host
