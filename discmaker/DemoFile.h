#pragma once

#include "discmaker/DemoImage.h"
#include "discmaker/ImageRecord.h"

#include <filesystem>

namespace cinedisc::discmaker {

/// What the catalogue takes from the demo file's header.
ImageRecord demoRecord(const DemoImage& image);

/// Simulates the image and writes it as an X-ray angiographic image (PS3.3 A.14), JPEG Lossless. Raises
/// DiscError when the file cannot be written.
void writeDemoFile(const DemoImage& image, const std::filesystem::path& path);

}  // namespace cinedisc::discmaker
