// fuzz_window files|discs FIRST COUNT SEED..., or sizes, or endurance [TICKS]: gives the window damaged
// files, damaged discs, or files and discs of absurd sizes. Seeds are DICOM files and catalogues; what is
// being shown lies in the folder "current" meanwhile. A disc or file that brought a fault is kept in the
// folder "findings".

#include "app/Confinement.h"
#include "control/frames/ImageLibrary.h"
#include "fuzzing/window/DiscVisit.h"
#include "fuzzing/window/Endurance.h"
#include "fuzzing/window/SizedDiscs.h"
#include "fuzzing/window/Sizes.h"
#include "fuzzing/window/ViewVisit.h"
#include "panels/Theme.h"
#include "tests/support/DicomBuilder.h"

#include <QApplication>
#include <QDir>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using namespace cinedisc;
using namespace cinedisc::fuzzing::window;
namespace fs = std::filesystem;

constexpr std::uint64_t ceiling = 1024ull << 20;

class Run {
  public:
    explicit Run(fs::path folder) : current_(folder / "current"), findings_(folder / "findings") {
        fs::create_directories(findings_);
        peakMemory();
    }

    /// An empty folder for what is shown next. Its name tells what that was when the program crashes.
    fs::path empty(const std::string& name) {
        fs::remove_all(current_);
        shown_ = current_ / name;
        fs::create_directories(shown_);
        return shown_;
    }
    void judge(const std::string& what, const Watch& watch, bool prints) {
        ++done_;
        const auto memory = peakMemory();
        most_ = std::max(most_, memory);
        if (watch.longest().processor > longest_.processor) longest_ = watch.longest(), longestIn_ = what;
        std::string fault = watch.fault().value_or("");
        if (memory > ceiling && isCounted()) fault += " " + std::to_string(memory >> 20) + " MiB";
        if (prints || !fault.empty())
            std::printf("%-120s %7.0f ms (%s) %5llu MiB %s\n", what.c_str(),
                        1000 * watch.longest().processor.count(), watch.longest().what,
                        static_cast<unsigned long long>(memory >> 20), fault.c_str());
        std::fflush(stdout);
        if (fault.empty()) return;
        ++faults_;
        std::error_code ignored;
        fs::copy(shown_, findings_ / shown_.filename(),
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks, ignored);
    }
    int end() {
        std::printf("%d shown, %d faults; longest work %.0f ms (%s in %s), most memory %llu MiB\n", done_,
                    faults_, 1000 * longest_.processor.count(), longest_.what, longestIn_.c_str(),
                    static_cast<unsigned long long>(most_ >> 20));
        fs::remove_all(current_);
        return faults_ ? 1 : 0;
    }

  private:
    /// Under the sanitizers memory is theirs.
    static bool isCounted() {
#if defined(__SANITIZE_ADDRESS__)
        return false;
#elif defined(__has_feature)
        return !__has_feature(address_sanitizer);
#else
        return true;
#endif
    }

    fs::path current_, findings_, shown_;
    int done_ = 0, faults_ = 0;
    Watch::Work longest_;
    std::string longestIn_;
    std::uint64_t most_ = 0;
};

std::vector<std::byte> contentOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const auto all = std::as_bytes(std::span(bytes));
    return {all.begin(), all.end()};
}

std::string write(const fs::path& path, const std::vector<std::byte>& content) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
    return path.string();
}

struct Seeds {
    std::vector<Mutation::Content> files, catalogues;

    explicit Seeds(const std::vector<fs::path>& paths) {
        constexpr std::uintmax_t largest = 1 << 20;
        for (const auto& path : paths)
            if (path.extension() == ".xml")
                catalogues.push_back(contentOf(path));
            else if (fs::file_size(path) <= largest)
                files.push_back(contentOf(path));
        if (files.empty()) files.push_back(test::DicomBuilder::image(32, 32, 5).gradientPixels().build());
        if (catalogues.empty())
            catalogues.push_back(
                test::bytesOf("<disc><patient><text>A</text><study><text>B</text></study></patient></disc>"));
    }
};

void visitSizes(Run& run) {
    int number = 0;
    for (const auto& file : sizedFiles()) {
        Watch watch;
        const std::string name = "file" + std::to_string(++number);
        const auto path = write(run.empty(name) / "file.dcm", file.make());
        peakMemory();
        const auto shown = visitFile(QString::fromStdString(path), watch);
        if (shown.isPicture() != file.isShown) watch.reportFault(file.isShown ? "is not shown" : "is shown");
        run.judge(file.what + (": " + shown.notice.left(80).toStdString()), watch, true);
    }
    const Mutation none(std::vector<Mutation::Content>(1));
    for (const auto& disc : sizedDiscs()) {
        Watch watch;
        const std::string name = "disc" + std::to_string(++number);
        const auto folder = QString::fromStdString(run.empty(name).string());
        disc.make(folder);
        peakMemory();
        visitDisc(folder, none, 0, watch);
        run.judge(disc.what, watch, true);
    }
}

}  // namespace

int main(int argc, char** argv) {
    cinedisc::confineLibraries(argc, argv);
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty() || (words[0] != "sizes" && words[0] != "endurance" && words.size() < 3)) return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    applyColours(application);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    ImageLibrary::shared().lookAhead(std::chrono::milliseconds(80));
    if (words[0] == "endurance") return endures(words.size() > 1 ? std::stoi(words[1]) : 1'000'000) ? 0 : 1;
    Run run("window");
    if (words[0] == "sizes") {
        visitSizes(run);
        return run.end();
    }
    const unsigned first = unsigned(std::stoul(words[1])), count = unsigned(std::stoul(words[2]));
    const Seeds seeds({words.begin() + 3, words.end()});
    const Mutation files(seeds.files), catalogues(seeds.catalogues);
    for (unsigned number = first; number < first + count; ++number) {
        Watch watch;
        const std::string name = words[0] + std::to_string(number);
        const auto folder = run.empty(name);
        if (words[0] == "files") {
            visitFile(QString::fromStdString(write(folder / "file.dcm", files(number))), watch);
        } else {
            makeDamagedDisc(QString::fromStdString(folder.string()), files, catalogues, number);
            visitDisc(QString::fromStdString(folder.string()), files, number, watch);
        }
        run.judge(name, watch, false);
        if (number % 500 == 499) std::printf("%u\n", number + 1);
    }
    return run.end();
}
