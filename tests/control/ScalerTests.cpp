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

using test::FakeDicomFile;

/// A displayed picture as plainly as it can be said: one number a pixel and channel.
struct PlainPicture {
    int columns, rows, channels;
    std::vector<double> values;
    double at(int x, int y, int c) const {
        return values[static_cast<std::size_t>((y * columns + x) * channels + c)];
    }
};

/// Linear interpolation when enlarging, the mean under a triangle when reducing, single pixels without
/// smoothing.
std::vector<std::pair<int, double>> sharesOf(int position, int source, int scaled, Smoothing smoothing) {
    const double step = static_cast<double>(source) / scaled;
    if (smoothing == Smoothing::Nearest || source == scaled)
        return {{static_cast<int>((position + 0.5) * step), 1.0}};
    const double center = (position + 0.5) * step - 0.5;
    std::vector<std::pair<int, double>> shares;
    double sum = 0;
    const double reach = std::max(1.0, step);
    for (int k = static_cast<int>(std::floor(center - reach)); k <= center + reach; ++k) {
        if (step > 1 && (k < 0 || k >= source)) continue;
        const double share = std::max(0.0, 1 - std::abs(k - center) / reach);
        shares.emplace_back(std::clamp(k, 0, source - 1), share);
        sum += share;
    }
    for (auto& [k, share] : shares) share /= sum;
    return shares;
}

double scaledValue(const PlainPicture& picture, QSize scaled, Smoothing smoothing, int x, int y,
                   int channel) {
    double value = 0;
    for (const auto& [sy, wy] : sharesOf(y, picture.rows, scaled.height(), smoothing)) {
        for (const auto& [sx, wx] : sharesOf(x, picture.columns, scaled.width(), smoothing)) {
            value += wx * wy * picture.at(sx, sy, channel);
        }
    }
    return value;
}

/// `size` is that of the whole picture; `frame` may be a coarse one of it.
std::vector<std::uint32_t> drawn(const dicom::Frame& frame, int halvings, QSize size, const DisplayRule& rule,
                                 const CoverPlane* cover, const ScalePlan& plan) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(plan.wanted.width() * plan.wanted.height()));
    const auto drawWith = [&](const RowKernels& kernels) {
        PictureScaler scaler(kernels);
        const dicom::CoarseFrame coarse{frame, halvings};
        const FrameRows whole(frame, rule, cover, kernels);
        const CoarseRows widened(coarse, size.height(), size.width(), rule, cover, kernels);
        const RowSource* const rows[] = {&whole, &widened};
        scaler.draw(*rows[halvings > 0], plan.columns, plan.rows,
                    {reinterpret_cast<std::uint8_t*>(pixels.data()), plan.wanted.width() * 4,
                     PixelTarget::Format::Rgb32});
        return pixels;
    };
    const auto plain = drawWith(RowKernels::portable());
    EXPECT_EQ(drawWith(RowKernels::best()), plain) << "on this processor and on any";
    return pixels;
}

/// Frames of every sample type, grey, palette and colour, filled with noise.
dicom::Frame randomFrame(std::mt19937& random, FakeDicomFile& file, int columns, int rows) {
    dicom::Frame frame;
    frame.columns = file.format.columns = columns;
    frame.rows = file.format.rows = rows;
    const int kind = static_cast<int>(random() % 9);
    const auto fill = [&]<typename Sample>(Sample, int samples, double from, double to) {
        std::uniform_real_distribution<double> value(from, to);
        std::vector<Sample> noise(frame.pixelCount() * static_cast<std::size_t>(samples));
        for (auto& sample : noise) sample = static_cast<Sample>(value(random));
        frame.samples = std::move(noise);
        frame.samplesPerPixel = file.format.samplesPerPixel = samples;
    };
    file.format.bitsStored = kind == 2 || kind == 3 ? 12 : kind < 2 ? 8 : 32;
    file.format.isSigned = kind == 1 || kind == 3 || kind == 5;
    if (kind == 0) fill(std::uint8_t{}, 1, 0, 255.99);
    if (kind == 1) fill(std::int8_t{}, 1, -128, 127.99);
    if (kind == 2) fill(std::uint16_t{}, 1, 0, 4095.99);
    if (kind == 3) fill(std::int16_t{}, 1, -2048, 2047.99);
    if (kind == 4) fill(std::uint32_t{}, 1, 0, 4e9);
    if (kind == 5) fill(std::int32_t{}, 1, -2e9, 2e9);
    if (kind == 6) fill(float{}, 1, -1, 1);
    if (kind == 7) fill(std::uint8_t{}, 3, 0, 255.99);
    if (kind == 8) {
        fill(std::uint16_t{}, 1, 0, 300);
        file.format.bitsStored = 16;
        file.format.photometric = dicom::Photometric::PaletteColor;
        dicom::LookupTable table{20, 8, std::vector<std::uint16_t>(256)};
        for (auto& entry : table.entries) entry = static_cast<std::uint16_t>(random() % 256);
        file.paletteTables = dicom::Palette{table, table, table};
        std::reverse(file.paletteTables->green.entries.begin(), file.paletteTables->green.entries.end());
    }
    return frame;
}

/// Each pixel on its own, straight from the rule.
PlainPicture plainPicture(const dicom::Frame& frame, const FakeDicomFile& file, const GreyRule& rule,
                          Polarity polarity) {
    const bool palette = file.format.photometric == dicom::Photometric::PaletteColor;
    PlainPicture plain{frame.columns, frame.rows, palette ? 3 : frame.samplesPerPixel, {}};
    std::visit(
        [&](const auto& samples) {
            for (std::size_t i = 0; i < frame.pixelCount() * static_cast<std::size_t>(plain.channels); ++i) {
                const std::size_t pixel = i / static_cast<std::size_t>(plain.channels);
                const std::size_t channel = i % static_cast<std::size_t>(plain.channels);
                int value = 0;
                if (palette) {
                    const auto& tables = *file.paletteTables;
                    const auto& table = channel == 0 ? tables.red : channel == 1 ? tables.green : tables.blue;
                    value = lookUp(table, static_cast<double>(samples[pixel]));
                } else if (plain.channels == 3) {
                    value = static_cast<int>(samples[i]);
                } else {
                    value = rule(static_cast<double>(samples[i]));
                }
                if (plain.channels == 3 && polarity == Polarity::Inverted) value = 255 - value;
                plain.values.push_back(value);
            }
        },
        frame.samples);
    return plain;
}

/// A coarse picture at the size of the whole one.
PlainPicture widened(const PlainPicture& coarse, QSize size, int halvings) {
    PlainPicture whole{size.width(), size.height(), coarse.channels, {}};
    const int step = 1 << halvings;
    const auto at = [&](int x, int y, int c) {
        return coarse.at(std::min(x, coarse.columns - 1), std::min(y, coarse.rows - 1), c);
    };
    for (int y = 0; y < whole.rows; ++y)
        for (int x = 0; x < whole.columns; ++x)
            for (int c = 0; c < whole.channels; ++c) {
                const int left = x / step, top = y / step;
                const double right = static_cast<double>(x % step) / step,
                             down = static_cast<double>(y % step) / step;
                whole.values.push_back(
                    (1 - down) * ((1 - right) * at(left, top, c) + right * at(left + 1, top, c)) +
                    down * ((1 - right) * at(left, top + 1, c) + right * at(left + 1, top + 1, c)));
            }
    return whole;
}

void putOn(PlainPicture& picture, const CoverPlane& cover) {
    for (std::size_t i = 0; i < picture.values.size() && !cover.empty(); ++i) {
        const int pixel = static_cast<int>(i) / picture.channels;
        const int x = pixel % picture.columns, y = pixel / picture.columns;
        if (!cover.hidden.empty() && cover.hidden.at(y, x)) picture.values[i] = cover.grey;
        if (!cover.white.empty() && cover.white.at(y, x)) picture.values[i] = 255;
    }
}

CoverPlane randomCover(std::mt19937& random, int columns, int rows) {
    CoverPlane cover;
    cover.grey = 200;
    for (BitPlane* plane : {&cover.hidden, &cover.white}) {
        if (random() % 2) continue;
        *plane = BitPlane(rows, columns);
        // Runs, longer and shorter than a word, and single pixels.
        for (int i = 0; i < columns * rows; i += 1 + static_cast<int>(random() % 9))
            for (int end = i + static_cast<int>(random() % 3 ? 1 : random() % 150); i < end; ++i)
                if (i < columns * rows) plane->set(i / columns, i % columns);
    }
    return cover;
}

TEST(PictureScaler, DrawsWhatTheSlowVersionDraws) {
    std::mt19937 random(11);
    const auto upTo = [&](int most) { return 1 + static_cast<int>(random() % static_cast<unsigned>(most)); };
    for (int round = 0; round < 400; ++round) {
        FakeDicomFile file;
        const bool isEven = round % 10 == 0;  // keeps its colour to the bit at any scale
        const QSize size(upTo(isEven ? 4 : 140), upTo(isEven ? 900 : 40));
        const int halvings = std::max(0, upTo(7) - 4), step = 1 << halvings;
        auto frame =
            randomFrame(random, file, (size.width() + step - 1) / step, (size.height() + step - 1) / step);
        if (isEven) {
            frame.samples =
                std::vector<std::uint8_t>(frame.pixelCount() * 3, static_cast<std::uint8_t>(random()));
            frame.samplesPerPixel = file.format.samplesPerPixel = 3;
            file.format.photometric = dicom::Photometric::Rgb;
        }
        const auto polarity = random() % 2 ? Polarity::Normal : Polarity::Inverted;
        const auto smoothing = random() % 3 ? Smoothing::Smooth : Smoothing::Nearest;
        const WindowInForce window = windowOver(frameRange(frame, {}), dicom::SampleKind::Integer);
        const GreyRule rule(file.grey, window, polarity);
        const CoverPlane cover = isEven ? CoverPlane() : randomCover(random, size.width(), size.height());
        PlainPicture plain = widened(plainPicture(frame, file, rule, polarity), size, halvings);
        putOn(plain, cover);

        const bool same = random() % 4 == 0;
        const QSize scaled(same ? size.width() : upTo(random() % 4 ? 90 : 700),
                           same ? size.height() : upTo(90));
        const QPoint corner(static_cast<int>(random()) % scaled.width(),
                            static_cast<int>(random()) % scaled.height());
        const QRect wanted =
            QRect(QPoint(std::abs(corner.x()), std::abs(corner.y())), QSize(upTo(60), upTo(60)))
                .intersected(QRect(QPoint(0, 0), scaled));
        DisplayTables tables;
        const auto pixels = drawn(frame, halvings, size, tables.ruleFor(file, 0, frame, window, polarity),
                                  &cover, ScalePlan(size, scaled, wanted, smoothing));
        const bool exact = isEven || (halvings == 0 && (smoothing == Smoothing::Nearest || same));
        for (int y = 0; y < wanted.height(); ++y) {
            for (int x = 0; x < wanted.width(); ++x) {
                const std::uint32_t pixel = pixels[static_cast<std::size_t>(y * wanted.width() + x)];
                ASSERT_EQ(pixel >> 24, 255U);
                for (int c = 0; c < 3; ++c) {
                    const double expected = scaledValue(plain, scaled, smoothing, wanted.x() + x,
                                                        wanted.y() + y, c % plain.channels);
                    const int level = pixel >> (16 - 8 * c) & 255;
                    ASSERT_LE(std::abs(level - expected), exact ? 1e-6 : 1.6)
                        << size.width() << "x" << size.height() << " / " << step << " to " << scaled.width()
                        << "x" << scaled.height() << " at " << x << "," << y << " sample type "
                        << frame.samples.index();
                }
            }
        }
    }
}

TEST(DisplayTables, ChangeWithWhatTheyDependOnOnly) {
    const auto file = test::greyRun(4, 4, 2), wide = test::wideRun(4, 4, 12, [](int, int) { return 1; });
    auto frame = file->picture(0);
    dicom::GreyTransform grey;
    file->greyOfFrame = [&](int) { return grey; };
    WindowInForce window{false, {128, 256}};
    auto polarity = Polarity::Normal;
    const std::function<void()> changes[] = {
        [&] { grey.inverse = true; },
        [&] {
            grey.padding = {{1, 2}};
        },
        [&] {
            grey.rescale = dicom::Rescale{2, 0};
        },
        [&] { grey.rescale->intercept = 5; },
        [&] {
            grey.modalityLut = dicom::LookupTable{0, 8, {1, 2}};
        },
        [&] { grey.modalityLut->firstMapped = 1; },
        [&] { grey.modalityLut->bits = 9; },
        [&] { grey.modalityLut->entries[1] = 3; },
        [&] {
            grey.voiLuts = {{0, 8, {1, 2}}};
        },
        [&] { grey.voiLuts[0].entries[0] = 0; },
        [&] { window.window.width = 9; },
        [&] { polarity = Polarity::Inverted; },
        [&] { frame = wide->picture(0); },
    };
    DisplayTables tables;
    tables.ruleFor(*file, 0, frame, window, polarity);
    auto last = tables.revision();
    for (const auto& change : changes) {
        change();
        tables.ruleFor(*file, 1, frame, window, polarity);
        EXPECT_NE(tables.revision(), std::exchange(last, tables.revision())) << &change - changes;
        tables.ruleFor(*file, 0, frame, window, polarity);
        EXPECT_EQ(tables.revision(), last) << &change - changes;
    }
}

}  // namespace
}  // namespace cinedisc
