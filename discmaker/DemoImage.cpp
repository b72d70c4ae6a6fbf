#include "discmaker/DemoImage.h"

#include <algorithm>

namespace cinedisc::discmaker {

namespace {

using Side = Catheter::Side;
using Access = Catheter::Access;
using Shape = Collimator::Shape;
using Views = std::vector<Projection::View>;

const Views leftViews{{-30, -22}, {-8, 38}, {45, -28}, {42, 24}, {0, -32}, {-30, 24}, {90, 0}};
const Views rightViews{{45, 0}, {28, 26}, {-30, 0}, {2, 32}, {88, 4}};

/// Puts files together patient by patient. What is said of a patient, study or series holds for the files
/// that follow.
class ImageList {
  public:
    explicit ImageList(DemoSize size) : size_(size) {}

    void patient(DemoPatient patient, Anatomy anatomy, Access access) {
        image_ = {};
        image_.patient = std::move(patient);
        image_.setup.anatomy = std::move(anatomy);
        image_.setup.access = access;
    }
    void study(std::string date, std::string time, std::string description) {
        image_.study = {image_.study.date.empty() ? 1 : image_.study.number + 1, std::move(date),
                        std::move(time), std::move(description)};
        image_.series.number = 0;
    }
    void series(std::string description, Side side) {
        image_.series = {image_.series.number + 1, std::move(description)};
        image_.number = 0;
        image_.setup.side = side;
        // The right artery is shorter: it fills sooner and takes less.
        image_.setup.injection = side == Side::Left ? ContrastFlow::Injection{0.35, 2.1, 130}
                                                    : ContrastFlow::Injection{0.35, 1.9, 165};
    }
    void runs(const Views& views, int frames = 60) {
        for (const auto& view : views) add(view, 0, frames);
    }
    /// Single frames of one run, a few heart beats apart.
    void stills(Projection::View view, int count) {
        for (int i = 0; i < count; ++i) add(view, 24 + 8 * i, 1);
    }
    Angiogram::Setup& setup() { return image_.setup; }
    std::vector<DemoImage> take() { return std::move(images_); }

  private:
    void add(Projection::View view, int firstFrame, int frames) {
        ++image_.number;
        auto image = image_;
        image.setup.view = view;
        image.setup.seed = 1 + images_.size();
        image.firstFrame = firstFrame;
        image.frames = frames;
        if (size_ == DemoSize::Tiny) {
            image.setup.size /= 16;
            image.frames = std::min(frames, 3);
        }
        images_.push_back(std::move(image));
    }

    DemoSize size_;
    DemoImage image_;
    std::vector<DemoImage> images_;
};

void addTwoStudies(ImageList& disc) {
    const Anatomy diseased{
        5, 1.0, {{Lesion::Site::Anterior, 0.30, 0.68, 8}, {Lesion::Site::Right, 0.42, 0.45, 9}}};
    disc.patient({"LINDSTRÖM^ÅSA", "CD-100417", "19510317", "F"}, diseased, Access::Femoral);
    disc.study("20231114", "092000", "Coronary angiography");
    disc.series("Left coronary artery", Side::Left);
    disc.runs(leftViews);
    disc.series("Right coronary artery", Side::Right);
    disc.runs(rightViews);
    disc.study("20240522", "134500", "Coronary angiography, follow-up");
    disc.setup().anatomy.lesions.erase(disc.setup().anatomy.lesions.begin());
    disc.setup().access = Access::Radial;
    disc.series("LCA RAO 30 CAUD 22", Side::Left);
    disc.runs({leftViews[0]});
}

void addLargeMatrix(ImageList& disc) {
    const Anatomy winding{9, 1.08, {{Lesion::Site::Circumflex, 0.13, 0.55, 7}}};
    disc.patient({"КОВАЛЁВА^ОЛЬГА^ПЕТРОВНА", "CD-100523", "19620905", "F"}, winding, Access::Radial);
    disc.study("20240307", "110500", "Коронарография");
    disc.series("LCA AP CRAN 36", Side::Left);
    const auto usual = disc.setup();
    auto& setup = disc.setup();
    setup.size = 1024;
    setup.bits = 12;
    setup.noise = 1.2;
    setup.margins = {0.07, 0.11};
    disc.runs({{0, 36}});
    setup = usual;
    setup.shutter = Shape::Circular;
    setup.margins = {0.02, 0.02};
    disc.series("RCA LAO 30 CRAN 24", Side::Right);
    disc.runs({{30, 24}});
}

void addStills(ImageList& disc) {
    const Anatomy slender{
        12, 0.95, {{Lesion::Site::Descending, 0.25, 0.6, 6}, {Lesion::Site::Diagonal, 0.2, 0.7, 6}}};
    disc.patient({"ΠΑΠΑΔΟΠΟΥΛΟΣ^ΝΙΚΟΣ", "CD-100788", "19480630", "M"}, slender, Access::Femoral);
    disc.study("20240115", "083000", "Στεφανιογραφία");
    const auto left = [&disc](std::string description, Projection::View view, int count) {
        disc.series(std::move(description), Side::Left);
        disc.stills(view, count);
    };
    const auto right = [&disc](std::string description, Projection::View view, int count) {
        disc.series(std::move(description), Side::Right);
        disc.stills(view, count);
    };
    left("LCA RAO 30 CAUD 22", leftViews[0], 3);
    left("LCA RAO 8 CRAN 38", leftViews[1], 4);
    left("LCA LAO 45 CAUD 28", leftViews[2], 3);
    left("LCA LAO 42 CRAN 24", leftViews[3], 3);
    right("RCA LAO 45", rightViews[0], 3);
    disc.study("20240702", "101500", "Στεφανιογραφία");
    disc.setup().shutter = Shape::Circular;
    right("RCA LAO 28 CRAN 26", rightViews[1], 3);
    left("LCA CAUD 32", leftViews[4], 2);
}

void addSlowFrames(ImageList& disc) {
    const Anatomy healthy{23, 1.0, {}};
    disc.patient({"MUÑOZ GARCÍA^JOSÉ^^Dr.", "CD-100901", "19700211", "M"}, healthy, Access::Radial);
    disc.study("20240619", "154000", "Coronariografía");
    auto& setup = disc.setup();
    setup.frameRate = 10;
    setup.heartRate = 66;
    setup.shutter = Shape::Circular;
    setup.margins = {0.01, 0.01};
    disc.series("Coronaria izquierda", Side::Left);
    disc.runs({{-28, -24}, {-4, 36}});
}

}  // namespace

std::vector<DemoImage> demoImages(DemoSize size) {
    ImageList disc(size);
    addTwoStudies(disc);
    addLargeMatrix(disc);
    addStills(disc);
    addSlowFrames(disc);
    return disc.take();
}

}  // namespace cinedisc::discmaker
