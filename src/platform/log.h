#pragma once

/// Writes one formatted line to the platform log; shown when the log level is at least `level`.
[[gnu::format(printf, 5, 6)]] void lumora_print_log2(int level, const char* file, int line, const char* function,
                                                     const char* format, ...);
