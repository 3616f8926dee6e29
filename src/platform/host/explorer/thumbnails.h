#pragma once

#include <span>
#include <vector>

#include "platform/host/base/geometry.h"
#include "platform/host/files/storage.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

/// The small pictures of one page. Coming back to a page reads only the files that have changed.
class Thumbnails {
public:
    /// Reads the thumbnails of these pictures, no larger than `room`, and forgets all others. A picture that cannot be
    /// read is told in one line on standard error, once for each state of its file.
    void load(std::span<const PictureEntry> pictures, Size room);

    /// Picture `index` of the last load, as it was then.
    [[nodiscard]] const PictureEntry& entry(std::size_t index) const { return page_[index].of; }
    /// The thumbnail of that picture; null when it is damaged.
    [[nodiscard]] const bitmap_s* at(std::size_t index) const { return page_[index].small.get(); }

private:
    struct Thumbnail {
        PictureEntry of;
        BitmapPtr small;
    };
    std::vector<Thumbnail> page_;
};

}  // namespace host
