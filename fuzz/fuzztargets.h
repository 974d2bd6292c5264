#pragma once

#include <cstddef>
#include <cstdint>

// The body of every fuzz target. The fuzzer executables call one of them per input; the
// regression test calls them with the inputs that once failed and with the seed corpora.
void fuzzUkiSettings(const uint8_t *data, size_t size);
void fuzzUkiSettingsJson(const uint8_t *data, size_t size);
void fuzzUkpsSettings(const uint8_t *data, size_t size);
void fuzzArchiveData(const uint8_t *data, size_t size);
void fuzzCtCorrections(const uint8_t *data, size_t size);
void fuzzLocators(const uint8_t *data, size_t size);
void fuzzCustomChannels(const uint8_t *data, size_t size);
void fuzzSearchStatistics(const uint8_t *data, size_t size);
void fuzzCannedReply(const uint8_t *data, size_t size);
void fuzzProgramSettings(const uint8_t *data, size_t size);
void fuzzCsvFiles(const uint8_t *data, size_t size);

struct UkiProgram;
// The checks of fuzzSearchStatistics on a program built elsewhere.
void fuzzStatisticsProgram(const UkiProgram &program);
