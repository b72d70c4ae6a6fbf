#pragma once

#include "discmaker/angiogram/Angiogram.h"

#include <string>
#include <vector>

namespace cinedisc::discmaker {

struct DemoPatient {
    std::string name, id, birthDate, sex;
};
struct DemoStudy {
    int number = 1;
    std::string date, time, description;
};
struct DemoSeries {
    int number = 1;
    std::string description;
};

/// One file of the demo disc: whose it is and what it shows.
struct DemoImage {
    DemoPatient patient;
    DemoStudy study;
    DemoSeries series;
    int number = 1;  ///< within the series
    Angiogram::Setup setup;
    int firstFrame = 0;  ///< of the injection
    int frames = 60;     ///< 1 for a still
};

/// How large the demo disc's pictures are. Tiny ones are for trying out everything around them.
enum class DemoSize { Full, Tiny };

/// Everything on the demo disc, in the order of its catalogue.
std::vector<DemoImage> demoImages(DemoSize size);

}  // namespace cinedisc::discmaker
