#include "control/picture/ViewState.h"
#include "control/pipeline/CoarseRows.h"
#include "control/pipeline/DisplayTables.h"
#include "control/pipeline/PaletteTable.h"
#include "control/pipeline/WindowChoice.h"
#include "tests/control/FakeDicomFile.h"
#include "tests/fidelity/Comparison.h"
#include "tests/fidelity/ReferenceFile.h"
#include "tests/support/DicomBuilder.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace cinedisc {
namespace {

using dicom::GreyTransform;
using dicom::Shutter;
using Function = dicom::Window::Function;

TEST(Fidelity, ShowsFilesAsTheStandardsFormulasDo) {
    const QString folder = qEnvironmentVariable("CINEDISC_SAMPLES");
    if (folder.isEmpty()) GTEST_SKIP() << "no samples here";
    QStringList unreadable;
    for (const auto& file : QDir(folder).entryInfoList({"*.dcm"}, QDir::Files, QDir::Name)) {
        SCOPED_TRACE(qPrintable(file.fileName()));
        const auto compared = fidelity::compare(file.filePath());
        RecordProperty(file.fileName().toStdString(), compared.row().toStdString());
        if (compared.frames == 0) unreadable += file.fileName();
        if (compared.frames == 0) continue;
        EXPECT_EQ(compared.frames, compared.expectedFrames);
        EXPECT_TRUE(compared.toPlain == 0 || compared.toPlain == 1) << compared.toPlain.value_or(-2);
        const int toDcmtk = compared.toDcmtk.value_or(0);
        EXPECT_TRUE(toDcmtk == 0 || toDcmtk == 1) << "differs from DCMTK's rendering by " << toDcmtk;
    }
    EXPECT_EQ(unreadable, QStringList({"ExplVR_LitEndNoMeta.dcm", "MR_truncated.dcm", "chrKoreanMulti.dcm",
                                       "meta_missing_tsyntax.dcm", "no_meta.dcm"}));
}

/// Writes files of which all that decides about their pixels is as chance has it.
class RandomFile {
  public:
    explicit RandomFile(unsigned seed) : random_(seed) {
        addPixels();
        if (isGrey()) addGreyRules();
        if (kind_ == Kind::Palette) addPalette();
        if (any(2) == 0 && std::min(rows_, columns_) == side) addShutter();
        for (const std::uint16_t group : {0x6000, 0x6002, 0x6004}) {
            if (any(2) == 0) addOverlay(group);
        }
    }
    void writeTo(const QString& path) const { file_.writeTo(path.toStdU16String()); }
    /// Greys half way between two are rounded before they are inverted, or after.
    int mostDifference() const { return isInverse_ ? 1 : 0; }
    bool isGrey() const { return kind_ == Kind::Grey || kind_ == Kind::Float; }
    bool hasWindow() const { return hasWindow_; }
    /// The same file asking for the other polarity, or for another window.
    void invert() {
        isInverse_ = !isInverse_;
        file_.text({0x0028, 0x0004}, "CS", isInverse_ ? "MONOCHROME1" : "MONOCHROME2");
    }
    void putWindow(double center, double width) {
        file_.text({0x0028, 0x1050}, "DS", std::to_string(center));
        file_.text({0x0028, 0x1051}, "DS", std::to_string(width));
    }

  private:
    enum class Kind { Grey, Palette, Colour, Float };
    static constexpr int side = 48;

    int any(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    std::string decimal(double from, double to) {
        return std::to_string(std::uniform_real_distribution(from, to)(random_));
    }
    std::string list(std::initializer_list<int> values) {
        std::string text;
        for (const int value : values) text += (text.empty() ? "" : "\\") + std::to_string(value);
        return text;
    }
    test::Bytes noise(int size) {
        test::Bytes bytes(static_cast<std::size_t>(size));
        const unsigned mask = any(2) ? 255 : 63;
        for (auto& byte : bytes) byte = static_cast<std::byte>(random_() & mask);
        return bytes;
    }
    std::vector<std::int64_t> table(int count, int bits) {
        std::vector<std::int64_t> entries(static_cast<std::size_t>(count));
        for (auto& entry : entries) entry = any(1 << bits);
        return entries;
    }

    void addPixels() {
        kind_ =
            std::array{Kind::Grey, Kind::Grey, Kind::Grey, Kind::Palette, Kind::Colour, Kind::Float}[any(6)];
        allocated_ = kind_ == Kind::Float ? 32 : kind_ == Kind::Colour ? 8 : 8 << any(2);
        stored_ = kind_ == Kind::Colour || any(3) == 0 ? 8 : 1 + any(allocated_);
        isSigned_ = (kind_ == Kind::Grey || kind_ == Kind::Palette) && any(3) == 0;
        const int frames = kind_ == Kind::Float ? 1 : 3;
        if (any(3) == 0) rows_ = 1 + any(60), columns_ = 1 + any(200);
        file_ = test::DicomBuilder::image(rows_, columns_, frames, allocated_, stored_);
        if (any(3) == 0) file_.transferSyntax(any(2) ? "1.2.840.10008.1.2" : "1.2.840.10008.1.2.2");
        if (any(3) == 0) file_.text({0x0028, 0x0034}, "IS", list({1 + any(3), 1 + any(3)}));
        file_.numbers({0x0028, 0x0103}, "US", {isSigned_});
        // Of projections the modality step is left out.
        if (any(4))
            file_.text({0x0008, 0x0060}, "CS", "CT")
                .text({0x0008, 0x0016}, "UI", "1.2.840.10008.5.1.4.1.1.2");
        if (kind_ == Kind::Colour) {
            file_.numbers({0x0028, 0x0002}, "US", {3}).numbers({0x0028, 0x0006}, "US", {any(2)});
            file_.text({0x0028, 0x0004}, "CS", "RGB");
        }
        const int samples = rows_ * columns_ * frames * (kind_ == Kind::Colour ? 3 : 1);
        if (kind_ != Kind::Float) {
            file_.pixels(noise((samples * allocated_ / 8 + 1) / 2 * 2), allocated_ > 8 ? "OW" : "OB");
            return;
        }
        std::vector<double> values(static_cast<std::size_t>(samples));
        for (auto& value : values) value = std::uniform_real_distribution(-9.0, 9.0)(random_);
        file_.reals({0x7FE0, 0x0008}, "OF", values);
        for (const std::uint16_t element : {0x0101, 0x0102, 0x0103}) file_.remove({0x0028, element});
    }
    void addGreyRules() {
        const auto lut = [&](dicom::Tag sequence, int first, int bits) {
            const int entries = 2 + any(300);
            test::DicomItem item;
            item.numbers({0x0028, 0x3002}, "US", {entries, first, bits});
            item.numbers({0x0028, 0x3006}, "US", table(entries, bits));
            file_.sequence(sequence, {item});
        };
        isInverse_ = any(3) == 0;
        if (isInverse_) file_.text({0x0028, 0x0004}, "CS", "MONOCHROME1");
        const double span = kind_ == Kind::Float ? 9 : std::exp2(stored_);
        hasWindow_ = any(3) > 0;
        if (hasWindow_) {
            const double narrowest = kind_ == Kind::Float ? 1 : std::min(8.0, span);
            file_.text({0x0028, 0x1050}, "DS", decimal(-span, 2 * span));
            file_.text({0x0028, 0x1051}, "DS", any(5) ? decimal(narrowest, span * 2) : "1");
            file_.text({0x0028, 0x1056}, "CS", std::array{"LINEAR", "LINEAR_EXACT", "SIGMOID"}[any(3)]);
        }
        if (kind_ == Kind::Float) return;
        // Without a window, the least and the greatest value of the first frame give it.
        if (any(4) == 0 && hasWindow_)
            lut({0x0028, 0x3000}, any(100), 12);
        else if (any(2))
            file_.text({0x0028, 0x1052}, "DS", decimal(-500, 500))
                .text({0x0028, 0x1053}, "DS", decimal(-2, 4));
        if (any(3) == 0) {
            lut({0x0028, 0x3010}, any(200), 8 + any(9));
            hasWindow_ = false;  // the table comes first
        }
        if (stored_ < 4 || any(3)) return;
        const int padding = any(1 << (stored_ - 1)), limit = any(1 << (stored_ - 1));
        file_.numbers({0x0028, 0x0120}, "US", {padding});
        if (any(2)) file_.numbers({0x0028, 0x0121}, "US", {limit});
    }
    void addPalette() {
        file_.text({0x0028, 0x0004}, "CS", "PALETTE COLOR");
        const int bits = 8 << any(2);
        for (const std::uint16_t color : {1, 2, 3}) {
            const int entries = 2 + any(300);
            const auto element = [&](int of) { return static_cast<std::uint16_t>(of + color); };
            file_.numbers({0x0028, element(0x1100)}, "US", {entries, any(20), bits});
            file_.numbers({0x0028, element(0x1200)}, "US", table(entries, bits));
        }
    }
    /// All shapes hold the middle of the picture.
    void addShutter() {
        std::string shapes;
        for (const char* shape : {"RECTANGULAR", "CIRCULAR", "POLYGONAL", "BITMAP"})
            if (any(2)) shapes += (shapes.empty() ? "" : "\\") + std::string(shape);
        file_.text({0x0018, 0x1600}, "CS", shapes.empty() ? "RECTANGULAR" : shapes);
        for (const std::uint16_t edge : {0x1602, 0x1606})
            file_.text({0x0018, edge}, "IS", list({any(30) - 9}));
        for (const std::uint16_t edge : {0x1604, 0x1608})
            file_.text({0x0018, edge}, "IS", list({26 + any(30)}));
        file_.text({0x0018, 0x1610}, "IS", list({15 + any(18), 15 + any(18)}));
        file_.text({0x0018, 0x1612}, "IS", list({14 + any(20)}));
        const int notch = 22 - any(20);
        file_.text({0x0018, 0x1620}, "IS",
                   list({1 + any(9), 20, 30 + any(9), 45, 46, 45, 46, any(9), 26 + any(9), notch}));
        file_.numbers({0x0018, 0x1622}, "US", {any(65536)}).numbers({0x0018, 0x1623}, "US", {0x6002});
    }
    void addOverlay(std::uint16_t group) {
        const bool isEmbedded = group == 0x6000 && kind_ == Kind::Grey && allocated_ == 16 && stored_ < 16;
        const int rows = isEmbedded ? rows_ : 4 * (1 + any(15)),
                  columns = isEmbedded ? columns_ : 4 * (1 + any(15));
        const int ofFrames = !isEmbedded && any(3) == 0 ? 2 : 1;
        file_.numbers({group, 0x0010}, "US", {rows}).numbers({group, 0x0011}, "US", {columns});
        file_.text({group, 0x0040}, "CS", "G");
        file_.numbers({group, 0x0050}, "SS", {isEmbedded ? 1 : any(60) - 9, isEmbedded ? 1 : any(60) - 9});
        file_.numbers({group, 0x0100}, "US", {isEmbedded ? 16 : 1});
        file_.numbers({group, 0x0102}, "US", {isEmbedded ? stored_ + any(16 - stored_) : 0});
        if (isEmbedded) return;
        if (ofFrames > 1) {
            file_.text({group, 0x0015}, "IS", "2");
            file_.numbers({group, 0x0051}, "US", {1 + any(3)});
        }
        file_.binary({group, 0x3000}, "OW", noise(rows * columns / 8 * ofFrames));
    }

    std::mt19937 random_;
    test::DicomBuilder file_;
    Kind kind_ = Kind::Grey;
    int rows_ = side, columns_ = side, allocated_ = 8, stored_ = 8;
    bool isSigned_ = false, isInverse_ = false, hasWindow_ = false;
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

/// The largest difference of a part of a scaled picture to the one worked out pixel by pixel.
double differenceOf(const QImage& shown, const QRect& part, QSize scaled, const QImage& plain,
                    Smoothing smoothing) {
    double largest = 0;
    for (int y = 0; y < shown.height(); ++y) {
        const auto rows = sharesOf(part.y() + y, plain.height(), scaled.height(), smoothing);
        for (int x = 0; x < shown.width(); ++x) {
            double expected[3]{};
            for (const auto& [column, ofColumn] :
                 sharesOf(part.x() + x, plain.width(), scaled.width(), smoothing))
                for (const auto& [row, ofRow] : rows)
                    for (int c = 0; c < 3; ++c)
                        expected[c] += ofColumn * ofRow * (plain.pixel(column, row) >> (16 - 8 * c) & 255);
            for (int c = 0; c < 3; ++c)
                largest =
                    std::max(largest, std::abs((shown.pixel(x, y) >> (16 - 8 * c) & 255) - expected[c]));
        }
    }
    return largest;
}

/// With the kernels of this processor and with those of any; nothing beside the wanted pixels.
void expectThatAllKernelsDrawTheSame(const ViewState& view, const ScalePlan& plan) {
    const auto& frame = *view.picture.frame();
    const dicom::CoarseFrame reduced{frame, 2};
    DisplayTables tables;
    const auto& rule = tables.ruleFor(view.picture.file()->dicom(), view.picture.currentFrame() - 1, frame,
                                      view.picture.window(), Polarity::Inverted);
    const int width = plan.wanted.width(), height = plan.wanted.height();
    QImage drawn[4];
    for (QImage& image : drawn) {
        const auto& kernels = (&image - drawn) % 2 ? RowKernels::best() : RowKernels::portable();
        const FrameRows exact(frame, rule, view.picture.cover(), kernels);
        const CoarseRows coarse(reduced, plan.source.height(), plan.source.width(), rule,
                                view.picture.cover(), kernels);
        const RowSource* const rows[] = {&exact, &coarse};
        image = QImage(width + 3, height, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        const QImage untouched = image.copy(width, 0, 3, height);
        PictureScaler(kernels).draw(*rows[(&image - drawn) / 2], plan.columns, plan.rows,
                                    {image.bits(), image.bytesPerLine(), PixelTarget::Format::Rgb32});
        EXPECT_EQ(image.copy(width, 0, 3, height), untouched);
    }
    EXPECT_EQ(drawn[0], drawn[1]);
    EXPECT_EQ(drawn[2], drawn[3]);
}

/// Directly into the window's pixels where that can be, and from what was kept.
void expectPainted(ViewState& view, const QImage& shown, const std::function<void(QPainter&)>& prepare) {
    const QRect visible = view.placement().visible();
    QImage expected;
    const auto first = prepare || shown.width() % 2 ? QImage::Format_RGB32 : QImage::Format_RGB888;
    for (const auto& [paint, format] : {std::pair{&PictureRenderer::paint, first},
                                        {&PictureRenderer::paint, QImage::Format_RGB32},
                                        {&PictureRenderer::paintPreview, QImage::Format_RGB32}}) {
        QImage image(760, 360, format);
        image.fill(qRgb(255, 0, 255));
        image.setDevicePixelRatio(view.pixelRatio);
        QPainter painter(&image);
        painter.translate(4, 8);
        if (prepare) prepare(painter);
        EXPECT_EQ((view.renderer.*paint)(painter, view.pixelRatio, view.placement(), view.smoothing),
                  visible);
        painter.end();
        image.convertTo(QImage::Format_RGB32);
        if (expected.isNull()) expected = image;
        if (!prepare && expected == image) {
            EXPECT_EQ(image.copy({visible.topLeft() + QPoint(4, 8) * view.pixelRatio, visible.size()}),
                      shown);
        }
        EXPECT_EQ(image, expected);
    }
}

TEST(Picture, IsThatOfTheStandardsFormulasWhateverTheFileAtAnyScale) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("Ärzte 冠動脈 &lt;.dcm"), asking = folder.filePath("asking.dcm");
    const std::function<void(QPainter&)> prepares[] = {
        {},
        [](QPainter& painter) { painter.setClipRect(9, 9, 15, 15); },
        [](QPainter& painter) { painter.scale(2, 2); },
        [](QPainter& painter) { painter.scale(-1, 1); },
        [](QPainter& painter) { painter.rotate(90); },
        [](QPainter& painter) { painter.setOpacity(0.5); }};
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        RandomFile file(seed), asked(seed);
        file.writeTo(path);
        std::mt19937 random(seed);
        const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
        ViewState view(ImageLibrary::shared());
        view.picture.load(path);
        ASSERT_GT(view.picture.frameCount(), 0);
        view.picture.show(1 + any(view.picture.frameCount()));
        if (any(2) && file.isGrey()) {
            view.picture.polarity = -1;
            asked.invert();
        }
        if (any(2) && file.hasWindow()) {
            const double center = any(4000) / 8., width = 1 + any(4000) / 8.;
            view.picture.putWindowCenter(center);
            view.picture.putWindowWidth(width);
            asked.putWindow(center, width);
        }
        asked.writeTo(asking);
        fidelity::ReferenceFile reference(asking.toStdString());
        const QImage plain = fidelity::plainPicture(reference, view.picture.currentFrame() - 1);
        const QImage whole = view.renderer.wholePicture();
        EXPECT_LE(differenceOf(whole, whole.rect(), whole.size(), plain, Smoothing::Smooth),
                  asked.mostDifference() + 1.3);
        for (int round = 0; round < 3; ++round) {
            view.pixelRatio = std::array{1., 1.25, 1.5, 2.}[static_cast<std::size_t>(any(4))];
            view.deviceSize = QSize(1 + any(any(9) ? 180 : 700), 1 + any(150));
            view.zoom.putBestFit(any(4) == 0);
            view.zoom.putPercent(any(4) ? 1 + any(300) : 100);
            view.smoothing = any(3) ? Smoothing::Smooth : Smoothing::Nearest;
            view.panBy({any(100) - 50., any(100) - 50.});
            const Placement place = view.placement();
            const QRect visible = place.visible(), part = visible.translated(-place.picture.topLeft());
            const QImage shown = view.renderer.part(place, visible, view.smoothing);
            ASSERT_EQ(shown.size(), visible.size());
            const bool isExact = view.smoothing == Smoothing::Nearest || place.picture.size() == plain.size();
            EXPECT_LE(differenceOf(shown, part, place.picture.size(), plain, view.smoothing),
                      asked.mostDifference() + (isExact ? 0 : 1.3));
            expectThatAllKernelsDrawTheSame(
                view, ScalePlan(plain.size(), place.picture.size(), part, view.smoothing));
            expectPainted(view, shown, prepares[static_cast<std::size_t>(any(6))]);
        }
    }
}

// Moved as far as it was dragged, and never lost.
TEST(Picture, LiesWhereItWasPutAtTheSizeAskedFor) {
    std::mt19937 random(3);
    const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    for (int round = 0; round < 3000; ++round) {
        const QSize square(1 + any(any(2) ? 60 : 70000), 1 + any(900)), view(1 + any(700), 1 + any(700));
        const bool fits = any(3) == 0;
        const int percent =
            std::array{any(30), any(700), 2000000000, -any(9)}[static_cast<std::size_t>(any(4))];
        const double fitting =
            std::min(double(view.width()) / square.width(), double(view.height()) / square.height());
        const double most = double(1 << 30) / std::max(square.width(), square.height());
        const double scale = std::min(most, fits ? fitting : std::max(percent, 1) / 100.);
        ViewZoom zoom;
        zoom.putPercent(percent);
        zoom.putBestFit(fits);
        const QRect placed = zoom.place(square, view).picture;
        EXPECT_EQ(placed.width(), std::max(1., std::round(square.width() * scale)));
        EXPECT_EQ(placed.height(), std::max(1., std::round(square.height() * scale)));
        const QPointF off = QRectF(placed).center() - QPointF(view.width(), view.height()) / 2;
        EXPECT_LE(std::max(std::abs(off.x()), std::abs(off.y())), 0.5);
        const QPoint by(any(500) - 250, any(500) - 250);
        zoom.pan(by, square, view);
        const QRect moved = zoom.place(square, view).picture;
        const auto expectMoved = [](int from, int to, int length, int room, int wanted) {
            const double half = std::max(1., std::min(length, room) / 2.);
            EXPECT_NEAR(to, std::clamp<double>(from + wanted, half - length, room - half), 1);
        };
        expectMoved(placed.x(), moved.x(), placed.width(), view.width(), by.x());
        expectMoved(placed.y(), moved.y(), placed.height(), view.height(), by.y());
    }
    const std::tuple<QSize, double, QSize> squares[] = {
        {{100, 50}, 16, {1600, 50}},  {{100, 50}, 16.1, {100, 50}},         {{100, 50}, 1 / 16., {100, 800}},
        {{100, 50}, 0.06, {100, 50}}, {{100, 50}, std::nan(""), {100, 50}}, {{3, 1}, 1.1, {3, 1}}};
    for (const auto& [stored, aspect, square] : squares)
        EXPECT_EQ(squareSize(stored.width(), stored.height(), aspect), square) << aspect;
}

TEST(GreyRule, KeepsNumbersThatAreNoneAndEntriesThatAreTooWideWithinTheGreys) {
    const WindowInForce window{false, {0.5, 1, Function::LinearExact}};
    for (const auto polarity : {Polarity::Normal, Polarity::Inverted}) {
        GreyTransform grey;
        EXPECT_EQ(GreyRule(grey, window, polarity)(std::nan("")), 0);
        EXPECT_EQ(GreyRule(grey, window, polarity)(HUGE_VAL), polarity == Polarity::Normal ? 255 : 0);
        grey.rescale = dicom::Rescale{0, 0};
        EXPECT_EQ(GreyRule(grey, window, polarity)(HUGE_VAL), 0);
    }
    GreyTransform odd;
    odd.voiLuts = {{0, 8, {0, 0x1FF, 0xFF}}};
    EXPECT_EQ(GreyRule(odd, {true, {}}, Polarity::Normal)(2), 127) << "more bits than it announces";
}

TEST(FrameRange, LeavesPaddingAndNumbersThatAreNoneOut) {
    dicom::Frame frame;
    frame.samples = std::vector<std::int16_t>{-9, 7, 90};
    EXPECT_EQ(frameRange(frame, {{-9, 90}}), ValueRange());
    frame.samples = std::vector<float>{NAN, 0.5F, -HUGE_VALF, 2, HUGE_VALF};
    EXPECT_EQ(frameRange(frame, {}), (ValueRange{0.5, 2}));
    GreyTransform grey;
    grey.modalityLut = {2, 8, {5, 1, 9, 3}};
    EXPECT_EQ(modalityRange(grey, {0, 3}), (ValueRange{1, 5}));
    EXPECT_EQ(modalityRange(grey, {4, 9}), (ValueRange{3, 9}));
}

TEST(PaletteTable, TakesAllOfNarrowEntriesThatAreAnnouncedAsWide) {
    const dicom::LookupTable narrow{0, 16, {0, 128, 255}}, least{0, 16, {0, 256}};
    EXPECT_EQ(PaletteTable({narrow, narrow, narrow}, {}, false).entries(0)[1], 128);
    EXPECT_EQ(PaletteTable({least, least, least}, {}, false).entries(0)[1], 1);
}

TEST(OwnWindow, IsTheFirstUsableWindowOrTheTable) {
    EXPECT_EQ(windowOver({5, 5}, dicom::SampleKind::Float).window.width, 1);
    GreyTransform grey;
    EXPECT_FALSE(ownWindow(grey));
    grey.windows = {{50, 0}, {60, 0.5}, {NAN, 9}, {70, 100}, {80, 9}};
    ASSERT_TRUE(ownWindow(grey));
    EXPECT_EQ(ownWindow(grey)->window.center, 70);
    grey.windows.insert(grey.windows.begin(), {0.5, 0.25, Function::Sigmoid});
    EXPECT_EQ(ownWindow(grey)->window.width, 0.25);
    grey.voiLuts = {{0, 16, {}}, {-100, 12, std::vector<std::uint16_t>(200)}};
    EXPECT_TRUE(ownWindow(grey)->byTable);
    EXPECT_EQ(ownWindow(grey)->window.center, 0);
    EXPECT_EQ(ownWindow(grey)->window.width, 200);
}

TEST(WindowChoice, LeavesATableInForceWhenItsOwnValuesArePutBackAndIgnoresWhatCannotBeUsed) {
    const std::tuple<Function, bool, double, bool> cases[] = {
        {Function::Linear, true, 49.5, false},    {Function::Linear, true, 51, true},
        {Function::Linear, false, 50, true},      {Function::Linear, false, 0.99, false},
        {Function::Linear, false, 1, true},       {Function::LinearExact, false, 0.01, true},
        {Function::LinearExact, false, 0, false}, {Function::Sigmoid, false, HUGE_VAL, false}};
    for (const auto& [function, byTable, width, isMade] : cases) {
        const WindowInForce own{byTable, {50, 50, function}};
        WindowChoice choice;
        choice.putCenter(own, NAN);
        choice.putWidth(own, width);
        EXPECT_EQ(choice.isMade(), isMade) << width;
        EXPECT_EQ(choice.over(own).window.width, isMade ? width : 50);
        const bool keepsTable = byTable && !isMade;
        EXPECT_EQ(choice.over(own).byTable, keepsTable) << width;
        choice.putCenter(own, 50.5);
        EXPECT_EQ(choice.over(own).window.center, keepsTable ? 50 : 50.5);
    }
}

TEST(Shutter, ThatWouldHideEverythingHidesNothing) {
    const std::tuple<Shutter::Rectangle, Shutter::Circle, bool> cases[] = {
        {{9, 3, 1, 8}, {500, 500, 10}, false}, {{9, 3, 1, 8}, {5, 5, 0}, false},
        {{9, 3, 1, 8}, {5, 5, 2}, true},       {{5, 5, 1, 8}, {5, 5, 0}, true},
        {{1, 8, 5, 5}, {5, 5, 0}, true},       {{1, 8, 5, 4}, {5, 5, 0}, false}};
    for (const auto& [rectangle, circle, hides] : cases)
        EXPECT_NE(hiddenByShutter({rectangle, circle, {}, {}, {}}, 10, 10).empty(), hides);
}

// Of one frame's rule nothing may be left over for the next.
TEST(DisplayTables, AreMadeAnewOnceForWhateverChangesTheGrey) {
    const auto file = test::greyRun(2, 2, 2);
    auto& grey = file->grey;
    WindowInForce window{false, {50, 50, Function::Linear}};
    auto polarity = Polarity::Normal;
    const dicom::LookupTable table{0, 8, {1, 2}};
    const auto value = [](int, int, int, int) { return 7; };
    const std::function<void()> changes[] = {
        [] {},
        [&] { grey.inverse = true; },
        [&] { grey.padding = std::pair(3, 4); },
        [&] { grey.rescale.emplace().slope = 2; },
        [&] { grey.rescale->intercept = 5; },
        [&] { grey.modalityLut = table; },
        [&] { grey.modalityLut->firstMapped = 1; },
        [&] { grey.modalityLut->bits = 9; },
        [&] { grey.modalityLut->entries[1] = 7; },
        [&] { grey.voiLuts = {table}; },
        [&] { grey.voiLuts[0].entries[1] = 7; },
        [&] { window.window.center = 51; },
        [&] { polarity = Polarity::Inverted; },
        [&] { file->picture = test::pictureOf<std::uint16_t>(2, 2, 1, value); },
        [&] { file->picture = test::pictureOf<std::uint16_t>(2, 2, 3, value); },
    };
    DisplayTables tables;
    for (const auto& change : changes) {
        const auto before = tables.revision();
        change();
        for (const int frame : {0, 1, 1}) tables.ruleFor(*file, frame, file->picture(0), window, polarity);
        EXPECT_EQ(tables.revision(), before + 1) << &change - changes;
    }
}

TEST(Cover, IsMadeAndCountedFrameByFrameOnlyWhenItChanges) {
    const auto file = test::greyRun(4, 4, 3);
    const auto store = std::make_shared<FrameStore>();
    EXPECT_EQ(ImageFile(file, {}, store).frame(0)->cover, nullptr);
    for (const auto& [allocated, bytes] : {std::pair{8, 1U}, {16, 2U}, {32, 4U}, {64, 8U}}) {
        file->format.bitsAllocated = allocated;
        EXPECT_EQ(ImageFile(file, {}, store).decodedFrameBytes(), 16 * bytes);
    }
    file->format.bitsAllocated = 8;
    dicom::Overlay overlay;
    overlay.rows = overlay.columns = 2;
    overlay.bits = {1, 1, 1};
    file->overlayPlanes = {overlay};
    EXPECT_TRUE(coverOf(*file, 0).empty()) << "too few bits";
    file->overlayPlanes[0].bits.push_back(1);
    ImageFile same(file, {}, store);
    ASSERT_TRUE(same.frame(0)->cover);
    EXPECT_EQ(same.frame(0)->cover, same.frame(1)->cover);
    EXPECT_EQ(same.frame(1)->byteSize(), sizeof(DecodedFrame) + 16);

    file->overlayPlanes[0].multiFrame = true;
    file->bitsOf = [](const dicom::Overlay&, int frame) {
        return std::vector<std::uint8_t>(frame == 1 ? 4 : 0, 1);
    };
    ImageFile image(file, {}, store);
    // Rows of bits take whole words: of 16 pixels, and of overlays without or with a shutter.
    EXPECT_EQ(image.decodedFrameBytes(), 16U + 2 * 4 * 8);
    EXPECT_EQ(image.frame(1)->byteSize(), sizeof(DecodedFrame) + 16 + 4 * 8);
    EXPECT_TRUE(image.frame(2)->cover->empty());
}

}  // namespace
}  // namespace cinedisc
