// A recovery file of any records, whole or not, gives a page or none.
#include <boost/crc.hpp>

#include "fuzz/fuzz.h"
#include "platform/host/keep/kept_picture.h"
#include "platform/host/keep/page_log.h"
#include "support/temporary_folder.h"

namespace {

std::string number(std::uint32_t value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const TemporaryFolder folder;
    FuzzInput input(bytes, size);
    std::string file;
    while (!input.rest.empty()) {
        // One in eight checksums is wrong; the first record begins as real ones do.
        const bool whole = input.number() % 8 != 0;
        const std::string start = file.empty() ? "COL1" : "";
        const std::string payload = start + std::string(input.text(input.number()));
        boost::crc_32_type sum;
        sum.process_bytes(payload.data(), payload.size());
        file += number(static_cast<std::uint32_t>(payload.size())) + number(sum.checksum() + (whole ? 0 : 1)) + payload;
    }
    const host::LoggedPage logged = host::readPageLog(folder.write("log", file));
    const auto picture = host::KeptPicture::fromWords(logged.about);
    assert(!picture || host::KeptPicture::fromWords(picture->inWords())->inWords() == picture->inWords());
    return 0;
}
