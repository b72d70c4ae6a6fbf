#pragma once

#include "discmaker/DiscPlan.h"
#include "discmaker/ImageRecord.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

/// Groups files by patient, study and series and sorts them: patients by name, studies by date, series by
/// number and time of acquisition; in a series with runs the files by time and instance number, in one of
/// single images by instance number and time. What all has a place is sorted by that alone. What is missing
/// sorts last; what is equal stays in the order given.
///
/// A patient is an ID, a name and a birth date; a file without birth date is of the one patient that it fits.
/// Without an ID each study is a patient of its own. Files that lack another identifier are kept together by
/// what else they tell.
DiscPlan planDisc(std::span<const ImageRecord> records, const std::string& title);

/// Splits a plan into several, each of at most `capacity` bytes, between studies and in the given order; the
/// titles then tell "1 of 2". `sizeOf` gives the bytes that content `number` takes. A study that is too large
/// for any disc raises DiscError.
std::vector<DiscPlan> splitPlan(const DiscPlan& plan, std::uint64_t capacity,
                                const std::function<std::uint64_t(std::size_t number)>& sizeOf);

/// `prefix` and `number` with leading zeros: at least as many digits as the largest of its folder needs, so
/// that every way of listing gives the same order.
std::string numbered(const std::string& prefix, std::size_t number, std::size_t largest, std::size_t digits,
                     const std::string& suffix = {});

}  // namespace cinedisc::discmaker
