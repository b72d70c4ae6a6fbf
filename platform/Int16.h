#pragma once

#include "platform/RunTimeError.h"

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

namespace cinedisc {

/// A 16-bit signed counter or list position. Leaving its range raises run-time error 6, it never wraps.
class Int16 {
  public:
    constexpr Int16() = default;
    template <std::integral T>
    constexpr Int16(T value) : value_(checked(value)) {}

    constexpr int value() const { return value_; }

    friend constexpr Int16 operator+(Int16 a, Int16 b) { return a.value() + b.value(); }
    friend constexpr Int16 operator-(Int16 a, Int16 b) { return a.value() - b.value(); }
    constexpr Int16& operator+=(Int16 other) { return *this = *this + other; }
    constexpr Int16& operator++() { return *this += 1; }
    friend constexpr auto operator<=>(Int16, Int16) = default;

  private:
    template <std::integral T>
    static constexpr std::int16_t checked(T value) {
        if (!std::in_range<std::int16_t>(value)) throw RunTimeError::overflow();
        return static_cast<std::int16_t>(value);
    }

    std::int16_t value_ = 0;
};

}  // namespace cinedisc
