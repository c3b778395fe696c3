// Pictures as PNG files.
#pragma once

class QImage;

namespace velt {

class OutputFile;

// A picture that is full of noise is hardly smaller for taking four times as long.
enum class PngEffort { Usual, Little };

// Fills the opened file and puts it into place. Returns the system's error number, 0 for success.
int WritePicture(const QImage& picture, OutputFile& file, PngEffort effort = PngEffort::Usual);

}  // namespace velt
