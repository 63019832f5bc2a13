#pragma once
// Tables as text with commas between the cells (RFC 4180): a cell in quotes may hold
// commas, line ends, and quotes written twice; lines end with CR, LF or both. A
// byte-order mark is skipped. Nothing is refused: a quote that is never closed runs to
// the end of the text.

#include <cstdint>

#include "Platform/MemoryManager.h"

using CsvRow = VxVector<VxString>;
using CsvRows = VxVector<CsvRow>;

// Rows may differ in length; an empty line is a row of one empty cell.
CsvRows Csv_Parse(const char* text, uint32_t size);
