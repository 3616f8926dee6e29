#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/files/file_handle.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

using SharedPage = std::shared_ptr<const bitmap_s>;

/// One page of a picture after the other, in a file that only grows: what stands in it survives the program, also one
/// that is killed while it writes. A file is a row of records, each of them
///
///     length of the payload, CRC-32 of the payload (32 bits each), payload
///
/// The first payload tells which picture this is. Each later one is a page as the difference from the page before it,
/// the first from a white one: a byte of 1 when it is the page as it was loaded, else 0; then, for each row that
/// differs, the row, the first byte and the number of bytes (16 bits each), and the bytes. Numbers are in the machine's
/// own order.
class PageLog {
public:
    /// Begins the file anew, with a number that tells the newer of two, and words of the owner's about the picture.
    /// Not open, with the reason in `reason`, on failure.
    PageLog(const std::filesystem::path& file, std::uint32_t number, std::string_view about, const bitmap_s& shape,
            std::string& reason);

    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }

    /// Appends the page, which has the shape of the first. False, with the reason in `reason`, on failure or where the
    /// file would be larger than `most` bytes; it then ends with the page before.
    [[nodiscard]] bool add(SharedPage page, bool asLoaded, std::uint64_t most, std::string& reason);

    /// Bytes of the file.
    [[nodiscard]] std::uint64_t size() const { return size_; }
    /// A descriptor of the file, to sync it by; the caller closes it.
    [[nodiscard]] FileHandle duplicate() const;

private:
    [[nodiscard]] bool append(const std::vector<std::uint8_t>& payload, std::string& reason);

    FileHandle file_;
    std::uint64_t size_ = 0;
    SharedPage last_;
};

/// The last page in a log that was written whole.
struct LoggedPage {
    std::uint32_t number = 0;
    std::string about;
    BitmapPtr page;  ///< null when the log holds none
    bool asLoaded = false;
    std::string error{};  ///< why the log cannot be read; empty when it is read, or not there
};

/// Reads a log up to the first record that is cut or damaged. No page when there is none.
[[nodiscard]] LoggedPage readPageLog(const std::filesystem::path& file);

}  // namespace host
