#include "platform/host/screen/frame_painter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "platform/host/screen/paint.h"

namespace host {

namespace {

/// One corner of the box: which of its two sides each way it lies on.
struct Corner {
    int bit;
    bool right;
    bool bottom;
    int sides;
};

constexpr Corner kCorners[] = {
    {kTopLeftCorner, false, false, kLeftSide | kTopSide},
    {kTopRightCorner, true, false, kRightSide | kTopSide},
    {kBottomRightCorner, true, true, kRightSide | kBottomSide},
    {kBottomLeftCorner, false, true, kLeftSide | kBottomSide},
};

/// Half of a box's shorter side, and one more pixel where that side is odd.
int upperHalf(int side) { return side / 2 + side % 2; }

constexpr int kSlices = 16;  // columns into which a pixel on the rim is cut; exact to a quarter of a level

double sliceInDisc(double x, double top, double bottom, double radius) {
    const double half = std::sqrt(std::max(radius * radius - x * x, 0.0));
    return std::max(std::min(half, bottom) - std::max(-half, top), 0.0);
}

/// Area that the pixel whose top-left corner lies at (x, y) shares with a disc around the origin.
double areaInDisc(double x, double y, double radius) {
    const double farX = std::max(std::abs(x), std::abs(x + 1));
    const double farY = std::max(std::abs(y), std::abs(y + 1));
    if (farX * farX + farY * farY <= radius * radius) return 1;
    const double nearX = std::max({x, -x - 1, 0.0});
    const double nearY = std::max({y, -y - 1, 0.0});
    if (nearX * nearX + nearY * nearY >= radius * radius) return 0;
    double sum = 0;
    for (int slice = 0; slice < kSlices; ++slice) {
        sum += sliceInDisc(x + (slice + 0.5) / kSlices, y, y + 1, radius);
    }
    return sum / kSlices;
}

/// Coverage of a pixel of an antialiased round corner: 0 (nothing) to 255 (all), the share of its area that lies
/// between two arcs around one centre; a shape that is filled has the inner radius 0. Pixels are counted from the outer
/// corner of the box, so the four corners of a box are one another's mirror images, and columns and rows may be
/// exchanged.
int cornerCoverage(int column, int row, double outer, double inner) {
    const double x = outer - std::max(column, row) - 1;
    const double y = outer - std::min(column, row) - 1;
    const double area = areaInDisc(x, y, outer) - (inner > 0 ? areaInDisc(x, y, inner) : 0);
    return static_cast<int>(std::lround(area * 255));
}

class FramePainter {
public:
    FramePainter(Framebuffer& buffer, const Frame& frame)
        : buffer_(buffer),
          frame_(frame),
          shorter_(std::min(frame.box.w, frame.box.h)),
          thickness_(std::clamp(frame.thickness, 0, upperHalf(shorter_))),
          filled_((frame.corners & kFilled) != 0 || (frame.sides == kAllSides && thickness_ == upperHalf(shorter_))),
          radius_(std::clamp(static_cast<double>(frame.radius), 0.0, shorter_ / 2.0)),
          block_(std::clamp(frame.radius, 0, upperHalf(shorter_))),
          farWidth_(std::min(block_, frame.box.w - block_)),
          farHeight_(std::min(block_, frame.box.h - block_)) {}

    /// The four corners, and the cross between them.
    void paint() {
        const Rect& box = frame_.box;
        const std::int64_t left = std::int64_t{box.x} + block_;
        const std::int64_t top = std::int64_t{box.y} + block_;
        const std::int64_t right = box.right() - farWidth_;
        const std::int64_t bottom = box.bottom() - farHeight_;
        paintSides(seen(left, box.y, right, top));
        paintSides(seen(box.x, top, box.right(), bottom));
        paintSides(seen(left, bottom, right, box.bottom()));
        std::vector<Arc> arcs;
        for (const Corner& corner : kCorners) {
            const Rect part = seen(corner.right ? right : box.x, corner.bottom ? bottom : box.y,
                                   corner.right ? box.right() : left, corner.bottom ? box.bottom() : top);
            if (!rounded(corner)) {
                paintSides(part);
            } else if (!part.empty()) {
                arcs.push_back({corner, part});
            }
        }
        paintArcs(arcs);
    }

private:
    /// What is seen of a round corner.
    struct Arc {
        const Corner& corner;
        Rect part;
    };

    [[nodiscard]] bool rounded(const Corner& corner) const {
        return (frame_.corners & corner.bit) != 0 && (frame_.sides & corner.sides) == corner.sides;
    }

    /// The part inside the buffer of the rectangle between four edges, the last two excluded. Edges of a box at
    /// the end of the number range need 64 bits.
    [[nodiscard]] Rect seen(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) const {
        const std::int64_t x = std::max<std::int64_t>(left, 0);
        const std::int64_t y = std::max<std::int64_t>(top, 0);
        const std::int64_t w = std::min<std::int64_t>(right, buffer_.size().w) - x;
        const std::int64_t h = std::min<std::int64_t>(bottom, buffer_.size().h) - y;
        if (w <= 0 || h <= 0) return {};
        return {static_cast<int>(x), static_cast<int>(y), static_cast<int>(w), static_cast<int>(h)};
    }

    /// Fills what a frame with square corners has inside `part`.
    void paintSides(Rect part) {
        const Rect& box = frame_.box;
        if (filled_) {
            fillArea(buffer_, part, frame_.colour);
            return;
        }
        const std::int64_t innerRight = box.right() - thickness_;
        const std::int64_t innerBottom = box.bottom() - thickness_;
        if (frame_.sides & kLeftSide) {
            fillPart(part, seen(box.x, box.y, std::int64_t{box.x} + thickness_, box.bottom()));
        }
        if (frame_.sides & kTopSide) {
            fillPart(part, seen(box.x, box.y, box.right(), std::int64_t{box.y} + thickness_));
        }
        if (frame_.sides & kRightSide) fillPart(part, seen(innerRight, box.y, box.right(), box.bottom()));
        if (frame_.sides & kBottomSide) fillPart(part, seen(box.x, innerBottom, box.right(), box.bottom()));
    }

    void fillPart(Rect part, Rect side) { fillArea(buffer_, part.intersected(side), frame_.colour); }

    /// All at once: pixels as far from their corners have the same coverage.
    void paintArcs(const std::vector<Arc>& arcs) {
        Rect inwards;
        for (const Arc& arc : arcs) inwards = inwards.united(mirrored(arc.corner, arc.part));
        const double inner = filled_ ? 0 : radius_ - thickness_;
        const Paint paint(frame_.colour, buffer_.format());
        const auto blend = [&](int column, int row, int coverage) {
            for (const auto& [corner, part] : arcs) {
                const Point at = pixel(corner, column, row);
                if (part.contains(at)) paint.blend(buffer_.at(at.x, at.y), coverage);
            }
        };
        // Unless some of it is out of sight, a corner is its own mirror image.
        const bool whole = inwards.x == inwards.y && inwards.w == inwards.h;
        for (int row = inwards.y; row < inwards.bottom(); ++row) {
            for (int column = whole ? row : inwards.x; column < inwards.right(); ++column) {
                const int coverage = cornerCoverage(column, row, radius_, inner);
                if (coverage == 0) continue;
                blend(column, row, coverage);
                if (whole && column != row) blend(row, column, coverage);
            }
        }
    }

    /// A part of the buffer as columns and rows counted inwards from a corner of the box.
    [[nodiscard]] Rect mirrored(const Corner& corner, Rect part) const {
        const Rect& box = frame_.box;
        const int left = part.x - box.x;
        const int top = part.y - box.y;
        return {corner.right ? box.w - left - part.w : left, corner.bottom ? box.h - top - part.h : top, part.w,
                part.h};
    }

    /// The pixel so many columns and rows inwards from a corner.
    [[nodiscard]] Point pixel(const Corner& corner, int column, int row) const {
        const Rect& box = frame_.box;
        return {box.x + (corner.right ? box.w - 1 - column : column), box.y + (corner.bottom ? box.h - 1 - row : row)};
    }

    Framebuffer& buffer_;
    const Frame& frame_;
    int shorter_;
    int thickness_;
    bool filled_;
    double radius_;
    int block_;      ///< side of the corners' blocks
    int farWidth_;   ///< the same at the right: less by a pixel where an odd side is all arc, which the left block
    int farHeight_;  ///< has to itself; the same at the bottom
};

}  // namespace

void paintFrame(Framebuffer& buffer, const Frame& frame) {
    if (frame.box.intersected(buffer.bounds()).empty()) return;
    if (frame.thickness <= 0 && (frame.corners & kFilled) == 0) return;
    FramePainter(buffer, frame).paint();
}

}  // namespace host
