#include "discmaker/encoding/HuffmanCode.h"

#include <algorithm>
#include <numeric>

namespace cinedisc::discmaker {

namespace {

struct Node {
    std::uint64_t weight;
    std::vector<int> leaves;
};

}  // namespace

HuffmanCode::HuffmanCode(const Counts& counts) {
    const std::uint64_t total = std::accumulate(counts.begin(), counts.end(), std::uint64_t{0});
    // Lifting rare categories to a thousandth of the total keeps every code within 16 bits: code lengths grow
    // at most as the Fibonacci numbers do.
    const std::uint64_t least = total / 1024 + 1;
    std::vector<Node> nodes;
    for (int category = 0; category < categories; ++category) {
        const auto count = counts[static_cast<std::size_t>(category)];
        if (count > 0) nodes.push_back({std::max<std::uint64_t>(count, least), {category}});
    }
    // A stand-in leaf takes the longest code, which is the one that is all ones.
    constexpr int reserved = categories;
    nodes.push_back({1, {reserved}});

    std::array<int, categories + 1> depth{};
    const auto lighter = [](const Node& a, const Node& b) { return a.weight < b.weight; };
    while (nodes.size() > 1) {
        std::stable_sort(nodes.begin(), nodes.end(), lighter);
        for (int side = 0; side < 2; ++side)
            for (int leaf : nodes[static_cast<std::size_t>(side)].leaves)
                ++depth[static_cast<std::size_t>(leaf)];
        nodes[0].weight += nodes[1].weight;
        nodes[0].leaves.insert(nodes[0].leaves.end(), nodes[1].leaves.begin(), nodes[1].leaves.end());
        nodes.erase(nodes.begin() + 1);
    }

    for (int category = 0; category < categories; ++category)
        if (depth[static_cast<std::size_t>(category)] > 0)
            ordered_.push_back(static_cast<std::uint8_t>(category));
    std::stable_sort(ordered_.begin(), ordered_.end(), [&](auto a, auto b) { return depth[a] < depth[b]; });

    std::uint32_t next = 0;
    int bits = 0;
    for (auto category : ordered_) {
        next <<= depth[category] - bits;
        bits = depth[category];
        lengths_[category] = bits;
        codes_[category] = next++;
    }
}

std::array<std::uint8_t, 16> HuffmanCode::codesPerLength() const {
    std::array<std::uint8_t, 16> result{};
    for (auto category : ordered_) ++result[static_cast<std::size_t>(lengths_[category] - 1)];
    return result;
}

}  // namespace cinedisc::discmaker
