#pragma once

#include <QString>

#include <optional>

namespace cinedisc::fidelity {

/// A sample file as the component shows it, against the two references: the larger of the differences of its
/// first and last frame.
struct Comparison {
    QString syntaxUid;
    QString decoder;  ///< of the reference
    bool isLossless = true;
    int frames = 0;              ///< that the component shows
    int expectedFrames = 0;      ///< that DCMTK's header announces, 0 without pixels
    QString notice;              ///< the component's, in place of a picture
    std::optional<int> toPlain;  ///< empty when there is no reference picture; -1 for another size
    std::optional<int> toDcmtk;
};

Comparison compare(const QString& path);

}  // namespace cinedisc::fidelity
