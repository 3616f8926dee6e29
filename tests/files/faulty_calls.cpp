#include "files/faulty_calls.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace scratch {

Fault fault;

/// The system's call, unless it is to fail now.
template <typename Result = int, typename... Arguments>
Result callOrFail(std::string_view name, long number, Arguments... arguments) {
    if ((name != fault.call && fault.call != "any") || fault.after-- > 0 || fault.times-- <= 0)
        return static_cast<Result>(::syscall(number, arguments...));
    errno = fault.error;
    return -1;
}

}  // namespace scratch

using scratch::callOrFail;

// These stand before the C library's, for the standard library too.
extern "C" {
ssize_t read(int file, void* into, size_t bytes) { return callOrFail<ssize_t>("read", SYS_read, file, into, bytes); }
ssize_t pwrite(int file, const void* from, size_t bytes, off_t at) {
    return callOrFail<ssize_t>("pwrite", SYS_pwrite64, file, from, bytes, at);
}
int open(const char* file, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t);
    va_end(more);
    return callOrFail("open", SYS_open, file, flags, mode);
}
int rename(const char* from, const char* to) noexcept { return callOrFail("rename", SYS_rename, from, to); }
int link(const char* from, const char* to) noexcept { return callOrFail("link", SYS_link, from, to); }
int unlink(const char* file) noexcept { return callOrFail("unlink", SYS_unlink, file); }
int fchmod(int file, mode_t mode) noexcept { return callOrFail("fchmod", SYS_fchmod, file, mode); }
int fdatasync(int file) { return callOrFail("fdatasync", SYS_fdatasync, file); }
int fsync(int file) { return callOrFail("fsync", SYS_fsync, file); }
int ftruncate(int file, off_t bytes) noexcept { return callOrFail("ftruncate", SYS_ftruncate, file, bytes); }
int fallocate(int file, int mode, off_t at, off_t bytes) {
    return callOrFail("fallocate", SYS_fallocate, file, mode, at, bytes);
}
int flock(int file, int operation) noexcept { return callOrFail("flock", SYS_flock, file, operation); }
}
