#include "discmaker/DiscImage.h"

#include "discmaker/DiscError.h"
#include "discmaker/FileCopy.h"
#include "platform/NaturalOrder.h"

#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <fstream>
#include <utility>
#include <vector>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr const char* imageWriter = "xorriso";

QString text(const fs::path& path) { return QString::fromStdString(path.string()); }

/// Each file with its weight: the heaviest comes first.
std::string weights(const fs::path& disc) {
    std::vector<std::pair<int, QString>> files;
    for (const auto& entry : fs::recursive_directory_iterator(disc)) {
        if (!entry.is_regular_file()) continue;
        const auto name = entry.path().lexically_relative(disc);
        const auto top = *name.begin();
        const int rank = top == "CD.xml" ? 0 : top == "Dicom" ? 2 : top == "Other" ? 3 : 1;
        files.emplace_back(rank, QString::fromStdString(name.generic_string()));
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : naturalLess(a.second, b.second);
    });
    std::string result;
    auto weight = files.size();
    for (const auto& [rank, name] : files)
        result += std::to_string(weight--) + " /" + name.toStdString() + "\n";
    return result;
}

}  // namespace

void requireImageCanBeWritten(const fs::path& image) {
    if (QStandardPaths::findExecutable(imageWriter).isEmpty())
        throw DiscError("--iso needs the program xorriso, which is not installed");
    if (!fs::exists(image)) return;
    constexpr std::streamoff volumeMark = 16 * 2048 + 1;
    std::ifstream stream(image, std::ios::binary);
    std::string mark(5, '\0');
    stream.seekg(volumeMark).read(mark.data(), static_cast<std::streamsize>(mark.size()));
    if (mark != "CD001") throw DiscError(image.string() + " is there and no image of a disc");
}

void writeDiscImage(const fs::path& disc, const fs::path& image, const std::string& volumeName,
                    const fs::path& scratch) {
    auto part = image;
    part += ".makedisc-new";
    fs::remove(part);  // which the image writer of a run that was broken off may still have open
    writeText(scratch, weights(disc));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(imageWriter, {"-as", "mkisofs", "-quiet", "-r", "-J", "-joliet-long", "-iso-level", "3",
                                "-V", QString::fromStdString(volumeName), "-o", text(part),
                                "--sort-weight-list", text(scratch), text(disc)});
    const bool ended = process.waitForFinished(-1);
    if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        std::error_code ignored;
        fs::remove(part, ignored);
        throw DiscError("cannot write " + image.string() + ": " +
                        process.readAll().simplified().right(500).toStdString());
    }
    fs::remove(scratch);
    fs::rename(part, image);
}

}  // namespace cinedisc::discmaker
