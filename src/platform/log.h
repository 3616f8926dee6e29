#pragma once

/// Writes one formatted line, of at most 1,023 bytes, to the platform log: with file and line on standard error when
/// the log level is at least `level`.
[[gnu::format(printf, 5, 6)]] void lumora_print_log2(int level, const char* file, int line, const char* function,
                                                     const char* format, ...);
