#include "tests/fidelity/ComponentPicture.h"
#include "tests/fidelity/DcmtkPicture.h"
#include "tests/fidelity/PlainPipeline.h"

#include <QDirIterator>
#include <QImage>
#include <QGuiApplication>

#include <cstdio>

using namespace cinedisc::fidelity;

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    if (argc < 2) return 2;
    QDir folder(argv[1]);
    for (const auto& name : folder.entryList({"*.dcm"}, QDir::Files, QDir::Name)) {
        const auto path = folder.filePath(name);
        ReferenceFile file(path.toStdString());
        const auto ours = componentPicture(path);
        std::printf("%s | %s | %d/%d | %s", qPrintable(name), file.syntaxUid().c_str(), ours.frames,
                    file.hasPixels() ? file.frames() : 0, qPrintable(ours.notice));
        if (ours.frames > 0) {
            for (bool first : {true, false}) {
                const auto& mine = first ? ours.first : ours.last;
                const int f = first ? 0 : ours.frames - 1;
                const auto plain = plainPicture(file, f), dcmtk = dcmtkPicture(file, f);
                if (argc > 2 && name.startsWith(argv[2])) {
                    for (const auto& [w, px] : {std::pair("ours", &mine), std::pair("plain", &plain), std::pair("dcmtk", &dcmtk)})
                        if (!px->empty()) QImage(px->rgb.data(), px->columns, px->rows, px->columns * 3, QImage::Format_RGB888).save(QString("/tmp/fid_%1_%2.png").arg(name, w));
                }
                std::printf(" | plain %d", plain.empty() ? -2 : largestDifference(mine, plain));
                std::printf(" dcmtk %d", dcmtk.empty() ? -2 : largestDifference(mine, dcmtk));
            }
        }
        std::printf("\n");
    }
}
