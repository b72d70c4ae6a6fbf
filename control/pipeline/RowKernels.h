#pragma once

#include "control/pipeline/AxisTable.h"
#include "control/pipeline/RowSource.h"

#include <cstdint>

namespace cinedisc {

// The inner loops of drawing: plain loops over one row, without a branch inside. Scaled rows hold greys times
// 256.

void lookUpRow(const std::uint8_t* indices, const std::uint8_t* table, std::uint8_t* into, int count);
void lookUpRow(const std::uint16_t* indices, const std::uint8_t* table, std::uint8_t* into, int count);
void coverRow(const std::uint8_t* keep, const std::uint8_t* paint, std::uint8_t* row, int count);
void invertRow(std::uint8_t* row, int count);
void splitColors(const std::uint8_t* pixels, const RowSource::Channels& into, int count);

/// Picks single pixels: a row scaled without smoothing.
void pickRow(const std::uint8_t* row, const AxisTable& columns, std::uint8_t* into);
/// A row of greys scaled to the visible columns.
void scaleRow(const std::uint8_t* row, const AxisTable& columns, std::uint16_t* into);
/// The weighted sum of `taps` scaled rows, as greys.
void mixRows(const std::uint16_t* const* rows, const std::uint16_t* weights, int taps, std::uint8_t* into,
             int count);

/// Greys or colours as 32-bit pixels 0xFFRRGGBB.
void packGrey(const std::uint8_t* grey, std::uint32_t* into, int count);
void packColor(const RowSource::Channels& colors, std::uint32_t* into, int count);

}  // namespace cinedisc
