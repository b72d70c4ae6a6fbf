#pragma once

#include "bench/CineRecorder.h"

#include <cstddef>
#include <vector>

namespace cinedisc::bench {

/// Frames a second of the first pass and of the later ones, frames dropped, what a tick takes.
void reportPlaying(const std::vector<CineRecorder::Tick>& ticks, double begun, std::size_t firstPass);

/// Shows each frame anew, standing still, and counts the ticks that left something else in the window.
void reportWrongPictures(const WindowDriver& driver, const CineRecorder& recorder);

/// Numbers of the ticks that changed the file.
std::vector<std::size_t> fileChanges(const std::vector<CineRecorder::Tick>& ticks);
/// The tick of each change against the slowest of the ten before it.
void reportNeighbours(const std::vector<CineRecorder::Tick>& ticks);

/// Ticks that pass until a label shows its text, the strip has moved by the wheel, a click has had its
/// effect.
void reportAnswers(const WindowDriver& driver, CineRecorder& recorder, int times);

/// The most memory that the process ever had.
void reportMemory();

}  // namespace cinedisc::bench
