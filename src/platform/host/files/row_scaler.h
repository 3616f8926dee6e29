#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/host/base/geometry.h"

namespace host {

/// Shrinks a picture that comes row by row, so that each pixel becomes the mean of the area that it covers. It keeps
/// one row of sums and the small picture; the rows may come from the top or from the bottom, which the small picture
/// follows.
class RowScaler {
public:
    /// `to` is at least 1 × 1 and no larger than `from`; `channels` is 1 or 3 bytes a pixel.
    RowScaler(Size from, Size to, int channels);

    /// The next row. Called once for each row of the picture.
    void add(const std::uint8_t* row);

    /// Row `index` of the small picture, packed; complete after the last add.
    [[nodiscard]] const std::uint8_t* row(int index) const {
        return &pixels_[static_cast<std::size_t>(index) * stride_];
    }

private:
    /// The columns that one pixel of the small picture covers.
    struct Tap {
        int first;
        int count;
        std::size_t weights;  ///< where they begin in columnWeights_
        int firstBlock;       ///< the columns as the blocks in whiteWeights_
        int blockCount;
    };
    void addWeighted(const std::uint8_t* row, int weight);
    void addBlock(std::size_t block, const std::uint8_t* row, std::size_t count, int weight);
    void finishRow();
    template <int channels>
    void sumColumns(std::uint8_t* into) const;

    Size from_;
    Size to_;
    int channels_;
    std::size_t stride_;
    std::vector<Tap> taps_;
    std::vector<std::uint16_t> columnWeights_;
    std::vector<std::uint16_t> sums_;  ///< of the rows that make up the present row of the small picture
    std::vector<int> whiteWeights_;    ///< of what is all white in a block of columns, which is not in the sums
    std::vector<std::uint8_t> pixels_;
    int rowsDone_ = 0;
    std::int64_t reached_ = 0;  ///< of the present small row, in 1 / to.h of a row; it is full at from.h
    int weightSoFar_ = 0;
};

}  // namespace host
