#include "control/pipeline/CoarseRows.h"
#include "control/pipeline/DisplayTables.h"
#include "control/pipeline/PictureScaler.h"
#include "control/pipeline/ScalePlan.h"
#include "tests/control/FakeDicomFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace cinedisc {
namespace {

/// Displayed greys or colours as plainly as they can be held.
struct PlainPicture {
    QSize size;
    int channels = 1;
    std::vector<double> values;
    double at(int x, int y, int c) const {
        return values[static_cast<std::size_t>((y * size.width() + x) * channels + c)];
    }
};

using Shares = std::vector<std::pair<int, double>>;

/// Linear interpolation when enlarging, the mean under a triangle when reducing, single pixels without
/// smoothing.
Shares sharesOf(int position, int source, int scaled, Smoothing smoothing) {
    const double step = static_cast<double>(source) / scaled;
    if (smoothing == Smoothing::Nearest || source == scaled)
        return {{static_cast<int>((position + 0.5) * step), 1.0}};
    const double center = (position + 0.5) * step - 0.5, reach = std::max(1.0, step);
    Shares shares;
    double sum = 0;
    for (int k = static_cast<int>(std::floor(center - reach)); k <= center + reach; ++k) {
        if (step > 1 && (k < 0 || k >= source)) continue;
        shares.emplace_back(std::clamp(k, 0, source - 1), std::max(0.0, 1 - std::abs(k - center) / reach));
        sum += shares.back().second;
    }
    for (auto& [k, share] : shares) share /= sum;
    return shares;
}

/// Between the samples of a coarse picture.
Shares sharesOfCoarse(int position, int count, int halvings) {
    const int step = 1 << halvings, here = position / step;
    const double beyond = static_cast<double>(position % step) / step;
    return {{std::min(here, count - 1), 1 - beyond}, {std::min(here + 1, count - 1), beyond}};
}

double mixed(const PlainPicture& picture, const Shares& columns, const Shares& rows, int channel) {
    double value = 0;
    for (const auto& [y, ofRow] : rows)
        for (const auto& [x, ofColumn] : columns) value += ofRow * ofColumn * picture.at(x, y, channel);
    return value;
}

/// Frames of the samples that kernels are made for, filled with noise.
dicom::Frame randomFrame(std::mt19937& random, test::FakeDicomFile& file, QSize size, bool isEven) {
    dicom::Frame frame{size.height(), size.width(), 1, {}};
    file.format.rows = size.height(), file.format.columns = size.width();
    const int kind = isEven ? 4 : static_cast<int>(random() % 5);
    file.format.samplesPerPixel = frame.samplesPerPixel = kind == 4 ? 3 : 1;
    file.format.bitsStored = kind == 2 || kind == 3 ? 12 : 8;
    file.format.isSigned = kind == 1 || kind == 3;
    const auto fill = [&]<typename Sample>(Sample) {
        std::vector<Sample> noise(frame.pixelCount() * static_cast<std::size_t>(frame.samplesPerPixel),
                                  static_cast<Sample>(random()));
        for (auto& sample : noise)
            if (!isEven) sample = static_cast<Sample>(random());
        frame.samples = std::move(noise);
    };
    if (kind == 1) fill(std::int8_t{});
    if (kind == 2) fill(std::uint16_t{});
    if (kind == 3) fill(std::int16_t{});
    if (kind == 0 || kind == 4) fill(std::uint8_t{});
    return frame;
}

/// Each pixel on its own, straight from the rule; values that the stored bits cannot hold show as the
/// nearest.
PlainPicture plainPicture(const dicom::Frame& frame, const GreyRule& rule, ValueRange range,
                          Polarity polarity) {
    PlainPicture plain{{frame.columns, frame.rows}, frame.samplesPerPixel, {}};
    const auto add = [&](double sample) {
        const double color = polarity == Polarity::Inverted ? 255 - sample : sample;
        plain.values.push_back(plain.channels == 3 ? color : rule(std::clamp(sample, range.low, range.high)));
    };
    std::visit([&](const auto& samples) { std::ranges::for_each(samples, add); }, frame.samples);
    return plain;
}

void putOn(PlainPicture& picture, const CoverPlane& cover) {
    for (std::size_t i = 0; i < picture.values.size(); ++i) {
        const int pixel = static_cast<int>(i) / picture.channels;
        const int x = pixel % picture.size.width(), y = pixel / picture.size.width();
        if (!cover.hidden.empty() && cover.hidden.at(y, x)) picture.values[i] = cover.grey;
        if (!cover.white.empty() && cover.white.at(y, x)) picture.values[i] = 255;
    }
}

CoverPlane randomCover(std::mt19937& random, QSize size) {
    CoverPlane cover;
    cover.grey = 200;
    const int columns = size.width(), pixels = columns * size.height();
    for (BitPlane* plane : {&cover.hidden, &cover.white}) {
        if (random() % 2) continue;
        *plane = BitPlane(size.height(), columns);
        // Runs, longer and shorter than a word, and single pixels.
        for (int i = 0; i < pixels; i += 1 + static_cast<int>(random() % 9))
            for (int end = i + static_cast<int>(random() % 3 ? 1 : random() % 150); i < end; ++i)
                if (i < pixels) plane->set(i / columns, i % columns);
    }
    return cover;
}

/// With the kernels of this processor and with those of any; nothing beside the wanted pixels.
std::vector<std::uint32_t> drawn(const dicom::CoarseFrame& frame, QSize size, const DisplayRule& rule,
                                 const CoverPlane& cover, const ScalePlan& plan) {
    constexpr std::uint32_t untouched = 0x12345678;
    const int stride = plan.wanted.width() + 3;
    std::vector<std::uint32_t> byKernels[2];
    for (auto& pixels : byKernels) {
        const auto& kernels = &pixels == byKernels ? RowKernels::portable() : RowKernels::best();
        pixels.assign(static_cast<std::size_t>(stride * plan.wanted.height()), untouched);
        const FrameRows whole(frame.frame, rule, &cover, kernels);
        const CoarseRows widened(frame, size.height(), size.width(), rule, &cover, kernels);
        const RowSource* const rows[] = {&whole, &widened};
        PictureScaler(kernels).draw(
            *rows[frame.halvings > 0], plan.columns, plan.rows,
            {reinterpret_cast<std::uint8_t*>(pixels.data()), stride * 4, PixelTarget::Format::Rgb32});
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            const bool isWanted = i % static_cast<std::size_t>(stride) + 3 < static_cast<std::size_t>(stride);
            EXPECT_EQ(isWanted ? pixels[i] >> 24 : pixels[i], isWanted ? 255U : untouched);
        }
    }
    EXPECT_EQ(byKernels[0], byKernels[1]);
    return byKernels[0];
}

TEST(PictureScaler, DrawsWhatTheSlowVersionDraws) {
    std::mt19937 random(11);
    const auto upTo = [&](int most) { return 1 + static_cast<int>(random() % static_cast<unsigned>(most)); };
    int lines = 0;
    for (int round = 0; round < 500; ++round) {
        test::FakeDicomFile file;
        const bool isEven = round % 10 == 0;  // keeps its colour to the bit at any scale
        const QSize size(upTo(isEven ? 4 : 140), upTo(isEven ? 900 : 40));
        const int halvings = std::max(0, upTo(7) - 4), step = 1 << halvings;
        const QSize stored((size.width() + step - 1) / step, (size.height() + step - 1) / step);
        const dicom::CoarseFrame frame{randomFrame(random, file, stored, isEven), halvings};
        const auto polarity = random() % 2 ? Polarity::Normal : Polarity::Inverted;
        const auto smoothing = random() % 3 ? Smoothing::Smooth : Smoothing::Nearest;
        const auto range = expressibleRange(file.format);
        WindowInForce window = windowOver(range, dicom::SampleKind::Integer);
        window.window.width /= upTo(4);
        window.window.function = static_cast<dicom::Window::Function>(random() % 3);
        const CoverPlane cover = isEven ? CoverPlane() : randomCover(random, size);

        const GreyRule rule(file.grey, window, polarity);
        const auto coarse = plainPicture(frame.frame, rule, range, polarity);
        PlainPicture plain{size, coarse.channels, {}};
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                for (int c = 0; c < plain.channels; ++c)
                    plain.values.push_back(mixed(coarse, sharesOfCoarse(x, stored.width(), halvings),
                                                 sharesOfCoarse(y, stored.height(), halvings), c));
        putOn(plain, cover);

        const bool same = random() % 4 == 0;
        const QSize scaled = same ? size : QSize(upTo(random() % 4 ? 120 : 700), upTo(90));
        const QRect wanted = QRect(upTo(scaled.width()) - 1, upTo(scaled.height()) - 1, upTo(100), upTo(60))
                                 .intersected(QRect(QPoint(0, 0), scaled));
        DisplayTables tables;
        const auto& tabled = tables.ruleFor(file, 0, frame.frame, window, polarity);
        lines += tabled.table && tabled.table->linear();
        const auto pixels = drawn(frame, size, tabled, cover, ScalePlan(size, scaled, wanted, smoothing));
        const bool exact = isEven || (halvings == 0 && (smoothing == Smoothing::Nearest || same));
        for (int y = 0; y < wanted.height(); ++y) {
            const auto rows = sharesOf(wanted.y() + y, size.height(), scaled.height(), smoothing);
            for (int x = 0; x < wanted.width(); ++x) {
                const auto columns = sharesOf(wanted.x() + x, size.width(), scaled.width(), smoothing);
                const auto pixel = pixels[static_cast<std::size_t>(y * (wanted.width() + 3) + x)];
                for (int c = 0; c < 3; ++c) {
                    const double expected = mixed(plain, columns, rows, c % plain.channels);
                    const int level = pixel >> (16 - 8 * c) & 255;
                    ASSERT_LE(std::abs(level - expected), exact ? 1e-6 : 1.6)
                        << "round " << round << " at " << x << "," << y << " in "
                        << frame.frame.samples.index();
                }
            }
        }
    }
    EXPECT_GT(lines, 200) << "the usual windows are worked out rather than looked up";
}

}  // namespace
}  // namespace cinedisc
