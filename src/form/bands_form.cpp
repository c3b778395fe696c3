#include "form/bands_form.h"

namespace velt {
namespace {

constexpr int32_t kBands = 10;

}  // namespace

BandsForm::BandsForm()
    : Window(*this, "Setup Pre-defined Frequencies and Labels"),
      txtFreqCaption(*this, kBands, "Text1"),
      txtFrequencies(*this, kBands, ""),
      Label1(*this, kBands, "Hz"),
      lblMessage(*this),
      lblProblem(*this),
      cmdImport(*this, "Import CSV..."),
      cmdExport(*this, "Export CSV..."),
      Command1(*this, "OK"),
      Command2(*this, "Cancel") {}

}  // namespace velt
