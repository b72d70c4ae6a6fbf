#include "dicom/SegmentedPalette.h"

#include "dicom/Bytes.h"

namespace cinedisc::dicom {

namespace {

enum Opcode { Discrete = 0, Linear = 1, Indirect = 2 };

class Expander {
  public:
    Expander(std::span<const std::byte> data, std::size_t wordSize, std::size_t most)
        : data_(data), wordSize_(wordSize), most_(most) {}

    std::vector<std::uint16_t> run() {
        while (segment(mayRefer)) {
        }
        return std::move(entries_);
    }

  private:
    static constexpr bool mayRefer = true, mayNotRefer = false;

    bool hasWords(std::size_t count) const { return data_.size() >= at_ + count * wordSize_; }
    std::uint16_t word() {
        const auto value = static_cast<std::uint16_t>(loadNumber(&data_[at_], static_cast<int>(wordSize_)));
        at_ += wordSize_;
        return value;
    }

    /// Whether there may be another segment behind this one.
    bool segment(bool indirectAllowed) {
        if (!hasWords(2) || entries_.size() >= most_) return false;
        const std::uint16_t opcode = word(), length = word();
        if (opcode == Discrete) return discrete(length);
        if (opcode == Linear) return linear(length);
        return opcode == Indirect && indirectAllowed && indirect(length);
    }

    bool discrete(std::size_t length) {
        for (std::size_t i = 0; i < length && entries_.size() < most_; ++i) {
            if (!hasWords(1)) return false;
            entries_.push_back(word());
        }
        return true;
    }

    bool linear(std::size_t length) {
        if (!hasWords(1) || entries_.empty()) return false;
        const std::int64_t from = entries_.back(), to = word();
        const auto steps = static_cast<std::int64_t>(length);
        for (std::int64_t i = 1; i <= steps && entries_.size() < most_; ++i) {
            const std::int64_t doubled = 2 * (to - from) * i + (to >= from ? steps : -steps);
            entries_.push_back(static_cast<std::uint16_t>(from + doubled / (2 * steps)));
        }
        return true;
    }

    /// Repeats segments that stand further in front, at an offset in bytes.
    bool indirect(std::size_t segments) {
        const std::size_t offsetWords = 4 / wordSize_;
        if (!hasWords(offsetWords)) return false;
        std::size_t target = 0;
        for (std::size_t i = 0; i < offsetWords; ++i) target |= std::size_t{word()} << (8 * wordSize_ * i);
        const std::size_t behind = at_;
        at_ = target < data_.size() ? target : data_.size();
        for (std::size_t i = 0; i < segments && segment(mayNotRefer); ++i) {
        }
        at_ = behind;
        return true;
    }

    std::span<const std::byte> data_;
    std::size_t wordSize_;
    std::size_t most_;
    std::size_t at_ = 0;
    std::vector<std::uint16_t> entries_;
};

}  // namespace

std::vector<std::uint16_t> expandSegments(std::span<const std::byte> data, std::size_t wordSize,
                                          std::size_t most) {
    return Expander(data, wordSize, most).run();
}

}  // namespace cinedisc::dicom
