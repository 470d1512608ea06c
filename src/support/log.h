// The only place that prints. Everything goes to standard output in one of three formats.
#pragma once

// "NEBTRACE(M) %s\n"
void LogMessage(char const* format, ...) __attribute__((format(printf, 1, 2)));
// "NEBTRACE(W) WARNING: %s\n"
void LogWarning(char const* format, ...) __attribute__((format(printf, 1, 2)));
// "NEBTRACE(W) ERROR: %s\n"
void LogError(char const* format, ...) __attribute__((format(printf, 1, 2)));
// The few texts that stand for themselves, without prefix or line end of ours.
void LogRaw(char const* format, ...) __attribute__((format(printf, 1, 2)));
