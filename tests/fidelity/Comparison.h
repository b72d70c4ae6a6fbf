#pragma once

#include <QString>

#include <optional>

namespace cinedisc::fidelity {

constexpr int anotherSize = 256;

/// A sample file as the component shows it, against the two references: the larger of the differences of its
/// first and last frame.
struct Comparison {
    /// All of it, parted by tabulators.
    QString row() const;

    QString syntax, decoder;     ///< the reference's decoder
    int frames = 0;              ///< that the component shows
    int expectedFrames = 0;      ///< that DCMTK finds pixels for
    std::optional<int> toPlain;  ///< empty when there is no reference picture; or anotherSize
    std::optional<int> toDcmtk;
    QString notice;  ///< the component's, in place of a picture
};

Comparison compare(const QString& path);

}  // namespace cinedisc::fidelity
