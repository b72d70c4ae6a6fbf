#include "fuzzing/Targets.h"

#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

TEST(Fuzzing, NothingAtAllAndFormerFindingsAreHarmless) {
    for (const auto& target : fuzzing::targets) {
        target.run({});
        QDirIterator files(CINEDISC_FINDINGS + ('/' + QString(target.name)), QDir::Files);
        while (files.hasNext()) {
            SCOPED_TRACE(qPrintable(files.next()));
            QFile file(files.filePath());
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            target.run(std::as_bytes(std::span(bytes.data(), static_cast<std::size_t>(bytes.size()))));
        }
    }
}

}  // namespace
}  // namespace cinedisc
