#include "platform/log.h"

#include <cstdarg>
#include <cstdio>

#include "platform/host/toolkit.h"

void lumora_print_log2(int level, const char* file, int line, const char* function, const char* format, ...) {
    char message[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);

    host::Toolkit& kit = host::toolkit();
    kit.trace.call("lumora_print_log2", level, file, line, function, message);
    if (level <= kit.options.logLevel) std::fprintf(stderr, "%s:%d: %s\n", file, line, message);
}
