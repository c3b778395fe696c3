#include "display/snapshots.h"

#include <cerrno>
#include <string>

#include "spectrum/bitmap_file.h"
#include "text/formats.h"
#include "text/paths.h"

namespace velt {
namespace {

PictureView ViewOf(const Raster& picture) {
  return {picture.Width(), picture.Height(), picture.Pixels()};
}

}  // namespace

Snapshots::Snapshots(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {
  DisplayControls& form = parts_.form;
  connections_ += form.mnusavebmp.clicked.Listen([this] { SaveBMP(); });
  connections_ += form.mnucopy.clicked.Listen([this] { CopySpectrum(); });
  connections_ += form.mnuopenbmp.clicked.Listen([this] { mnuopenbmp_Click(); });
  connections_ += form.Scope.mouseUp.Listen([this](int button) {
    if (button == 2 && parts_.options.analysis.zokaMode == 0) CopySpectrum();
  });
}

void Snapshots::SaveBMP() {
  const LocalTime now = ports_.clock.Now();
  std::string time;
  for (const int part : {now.hour, now.minute, now.second}) {
    time += (time.empty() ? "" : ".") + AtLeastTwoDigits(part);
  }
  const std::string name = "VELTSA_" + parts_.platform.DateStamp() + "_" + time;
  parts_.messages.Show("Saving...\\BMP\\" + name + ".bmp....");
  const Raster picture = Picture();
  // Somebody may have tidied up since the start.
  if (!ports_.files.IsFolder(Folder())) ports_.files.MakeFolder(Folder());
  int error = ports_.files.Publish(Folder() / (name + ".bmp"), BitmapFile(picture));
  const char* problem = "Error saving spectrum display bmp";
  if (error == 0) {
    problem = "Error saving spectrum display png";
    const std::string png = ports_.pictures.Png(ViewOf(picture));
    error = png.empty() ? ENOMEM : ports_.files.Publish(Folder() / (name + ".png"), png);
  }
  if (error == 0) return;
  ports_.prompts.Tell({"Error nr:" + std::to_string(error), problem, BoxIcon::Exclamation}, {});
}

void Snapshots::CopySpectrum() {
  const Raster picture = Picture();
  ports_.pictures.CopyToClipboard(ViewOf(picture));
  parts_.messages.Show("Spectrum image copied to the Clipboard");
}

void Snapshots::mnuopenbmp_Click() {
  ports_.launcher.OpenDocument(PathText(Folder()));
}

Raster Snapshots::Picture() const {
  Raster picture = parts_.tick.Shown();
  picture.Resize(parts_.form.Scope.scaleWidth, parts_.form.Scope.scaleHeight,
                 parts_.options.analysis.background);
  return picture;
}

}  // namespace velt
