#include "fuzzing/window/Endurance.h"

#include "app/Form1.h"
#include "control/ezDICOMX.h"
#include "platform/widgets/EventGuard.h"
#include "tests/support/DicomBuilder.h"
#include "tests/support/DiscBuilder.h"

#include <QAbstractButton>
#include <QEventLoop>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace cinedisc::fuzzing::window {

namespace {

struct Held {
    std::uint64_t memory = 0;  ///< bytes
    std::ptrdiff_t files = 0;

    static Held now() {
        std::uint64_t pages = 0, resident = 0;
        std::ifstream("/proc/self/statm") >> pages >> resident;
        const std::filesystem::directory_iterator open("/proc/self/fd");
        return {resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)),
                std::distance(begin(open), end(open))};
    }
};

QByteArray run(int frames) {
    const auto bytes = test::DicomBuilder::image(64, 64, frames, 16, 12).gradientPixels().build();
    return {reinterpret_cast<const char*>(bytes.data()), qsizetype(bytes.size())};
}

}  // namespace

bool endures(int ticks) {
    const test::SeriesPlan series{"", QList<int>(10, 12)};
    QList<test::PatientPlan> patients;
    for (int patient = 0; patient < 4; ++patient) {
        test::StudyPlan study{"Study1", QList<test::SeriesPlan>(5, series)};
        for (int i = 0; i < 5; ++i) study.series[i].folder = QString("Series%1").arg(i + 1);
        patients.append({QString("Patient %1").arg(patient), {study}});
    }
    const test::DiscBuilder disc(patients, run);
    Form1 form(disc.path());
    form.resize(form.minimumSizeHint());
    form.show();
    const auto press = [&](const char* name) { form.findChild<QAbstractButton*>(name)->click(); };
    auto* view = form.findChild<ezDICOMX*>("ezDicom");
    qint64 drawn = 0;
    QObject::connect(view, &ezDICOMX::frameDrawn, &form, [&] { ++drawn; });
    press("Open");
    press("Command2");
    press("Option11");
    press("cmdPlay");
    const int part = std::max(ticks / 10, 1);
    Held first, last;
    std::ptrdiff_t files = 0;
    double most = 0, least = 0;
    int tick = 0;
    QEventLoop loop;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, &loop, [&] {
        ++tick;
        EventGuard::run([&] { form.behaviour().cine.Timer4_Timer(); });
        if (tick % 997 == 0) press("cmdNextSeries"), press("cmdPlay");
        if (tick % 9973 == 0) press("Command2"), press("cmdPlay");
        if (tick % part != 0) return;
        last = Held::now();
        if (first.memory == 0) first = last;
        const double grown = double(last.memory) / double(first.memory) - 1;
        most = std::max(most, grown), least = std::min(least, grown), files = std::max(files, last.files);
        std::printf("%9d ticks, %9lld frames drawn: %llu KiB, %td open files\n", tick,
                    static_cast<long long>(drawn), static_cast<unsigned long long>(last.memory >> 10),
                    last.files);
        std::fflush(stdout);
        if (tick >= ticks) loop.quit();
    });
    clock.start(0);
    loop.exec();
    std::printf("memory %+.1f %% to %+.1f %% of that after the first tenth, at most %td files more\n",
                100 * least, 100 * most, files - first.files);
    return most < 0.05 && files <= first.files + 2 && drawn > 0;
}

}  // namespace cinedisc::fuzzing::window
