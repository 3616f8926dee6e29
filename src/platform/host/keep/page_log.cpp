#include "platform/host/keep/page_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <boost/crc.hpp>
#include <cerrno>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/host/files/picture_file.h"

namespace host {

namespace {

namespace fs = std::filesystem;

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint32_t kMark = 0x314C4F43;  // "COL1"
constexpr std::size_t kRecordHead = 2 * sizeof(std::uint32_t);

std::uint32_t checksum(Bytes bytes) {
    boost::crc_32_type sum;
    sum.process_bytes(bytes.data(), bytes.size());
    return sum.checksum();
}

void put(std::vector<std::uint8_t>& into, const void* from, std::size_t count) {
    into.resize(into.size() + count);
    std::memcpy(into.data() + into.size() - count, from, count);
}

template <typename Value>
void put(std::vector<std::uint8_t>& into, const Value& value) {
    put(into, &value, sizeof value);
}

/// What a log begins with.
struct Start {
    std::uint32_t mark = kMark;
    std::uint32_t number = 0;
    bitmap_s shape{};
};

/// What stands before the bytes of a row that differs.
struct RowChange {
    std::uint16_t row = 0;
    std::uint16_t first = 0;
    std::uint16_t count = 0;
};

/// Takes a value, or that many bytes, from the front; nothing when there are too few.
template <typename Value>
std::optional<Value> take(Bytes& from) {
    if (from.size() < sizeof(Value)) return std::nullopt;
    Value value;
    std::memcpy(&value, from.data(), sizeof value);
    from = from.subspan(sizeof value);
    return value;
}

std::optional<Bytes> take(Bytes& from, std::size_t count) {
    if (from.size() < count) return std::nullopt;
    const Bytes taken = from.first(count);
    from = from.subspan(count);
    return taken;
}

/// The payload of the next record; nothing when it is cut or damaged.
std::optional<Bytes> takeRecord(Bytes& from) {
    const auto length = take<std::uint32_t>(from);
    const auto sum = take<std::uint32_t>(from);
    const auto payload = length && sum ? take(from, *length) : std::nullopt;
    return payload && checksum(*payload) == *sum ? payload : std::nullopt;
}

/// Appends how a row differs from the one before it.
void putChange(std::vector<std::uint8_t>& payload, int y, Bytes row, Bytes before) {
    if (std::memcmp(row.data(), before.data(), row.size()) == 0) return;
    const auto first = std::mismatch(row.begin(), row.end(), before.begin()).first - row.begin();
    const auto same = std::mismatch(row.rbegin(), row.rend(), before.rbegin()).first - row.rbegin();
    const auto count = std::ssize(row) - same - first;
    put(payload,
        RowChange{static_cast<std::uint16_t>(y), static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(count)});
    put(payload, row.data() + first, static_cast<std::size_t>(count));
}

/// Makes the page before this record into the record's page. False when the record contradicts itself.
bool applyChanges(bitmap_s& page, Bytes changes) {
    while (!changes.empty()) {
        const auto change = take<RowChange>(changes);
        if (!change || change->row >= page.height || change->first + change->count > page.scanline) return false;
        const auto bytes = take(changes, change->count);
        if (!bytes) return false;
        std::copy(bytes->begin(), bytes->end(), bitmapRow(page, change->row) + change->first);
    }
    return true;
}

/// All of the file, empty when it is not there; with the reason in `error` when it cannot be read to its end.
std::string contentOf(const fs::path& file, std::string& error) {
    const FileHandle handle(untilDone([&] { return ::open(file.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (!handle.isOpen()) {
        if (errno != ENOENT) error = std::strerror(errno);
        return {};
    }
    std::string content;
    std::array<char, 1 << 16> part{};
    for (;;) {
        const ssize_t count = untilDone([&] { return ::read(handle.get(), part.data(), part.size()); });
        if (count < 0) error = std::strerror(errno);
        if (count <= 0) return content;
        content.append(part.data(), static_cast<std::size_t>(count));
    }
}

/// Null when no picture has that shape.
BitmapPtr whitePage(const bitmap_s& shape) {
    if (shape.depth != 8 && shape.depth != 24) return nullptr;
    if (std::int64_t{shape.width} * shape.height > kMostPicturePixels) return nullptr;
    BitmapPtr page = makeBitmap(shape.width, shape.height, shape.depth);
    if (page != nullptr) std::fill_n(bitmap_pixels(page.get()), pixelBytes(*page), std::uint8_t{0xFF});
    return page;
}

}  // namespace

PageLog::PageLog(const fs::path& file, std::uint32_t number, std::string_view about, const bitmap_s& shape,
                 std::string& reason)
    : file_(untilDone([&] { return ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600); })),
      last_(whitePage(shape)) {
    std::vector<std::uint8_t> payload;
    put(payload, Start{kMark, number, shape});
    put(payload, about.data(), about.size());
    if (!file_.isOpen() || last_ == nullptr) reason = std::strerror(errno);
    if (!isOpen() || last_ == nullptr || !append(payload, reason)) file_.reset();
}

bool PageLog::add(SharedPage page, bool asLoaded, std::uint64_t most, std::string& reason) {
    std::vector<std::uint8_t> payload{static_cast<std::uint8_t>(asLoaded ? 1 : 0)};
    for (int y = 0; y < page->height; ++y)
        putChange(payload, y, {bitmapRow(*page, y), page->scanline}, {bitmapRow(*last_, y), last_->scanline});
    if (size_ + kRecordHead + payload.size() > most) {
        reason = "it is full";
        return false;
    }
    if (!append(payload, reason)) return false;
    last_ = std::move(page);
    return true;
}

FileHandle PageLog::duplicate() const { return FileHandle(::fcntl(file_.get(), F_DUPFD_CLOEXEC, 0)); }

bool PageLog::append(const std::vector<std::uint8_t>& payload, std::string& reason) {
    std::vector<std::uint8_t> record;
    record.reserve(kRecordHead + payload.size());
    put(record, static_cast<std::uint32_t>(payload.size()));
    put(record, checksum(payload));
    put(record, payload.data(), payload.size());
    // Where it fails, the next record is written over what there is of this one.
    const bool written = writeAt(file_.get(), static_cast<off_t>(size_), record);
    if (written) size_ += record.size();
    if (!written) reason = std::strerror(errno);
    return written;
}

LoggedPage readPageLog(const fs::path& file) {
    LoggedPage logged;
    const std::string content = contentOf(file, logged.error);
    if (!logged.error.empty()) return logged;
    Bytes rest(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
    std::optional<Bytes> about = takeRecord(rest);
    const auto start = about ? take<Start>(*about) : std::nullopt;
    if (!start || start->mark != kMark) return logged;
    logged.number = start->number;
    logged.about.assign(about->begin(), about->end());
    BitmapPtr page = whitePage(start->shape);
    if (page == nullptr) {
        logged.error = "there is not enough memory for its page";
        return logged;
    }
    bool any = false;
    for (auto record = takeRecord(rest); record && !record->empty(); record = takeRecord(rest)) {
        if (!applyChanges(*page, record->subspan(1))) break;
        logged.asLoaded = record->front() != 0;
        any = true;
    }
    if (any) logged.page = std::move(page);
    return logged;
}

}  // namespace host
