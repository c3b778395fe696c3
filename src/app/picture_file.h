// Pictures as PNG files.
#pragma once

class QImage;

namespace velt {

class OutputFile;

// Fills the opened file and puts it into place. Returns the system's error number, 0 for success.
int WritePicture(const QImage& picture, OutputFile& file);

}  // namespace velt
