#include "tests/fidelity/DcmtkEncoding.h"

#include <dcmtk/dcmdata/dcfilefo.h>
#include <dcmtk/dcmdata/dcrleerg.h>
#include <dcmtk/dcmjpeg/djencode.h>
#include <dcmtk/dcmjpls/djencode.h>

#include <stdexcept>

namespace cinedisc::fidelity {

void encode(const std::string& path, E_TransferSyntax syntax) {
    static const bool registered = [] {
        DcmRLEEncoderRegistration::registerCodecs();
        DJEncoderRegistration::registerCodecs();
        DJLSEncoderRegistration::registerCodecs();
        return true;
    }();
    (void)registered;
    DcmFileFormat file;
    const bool done = file.loadFile(path.c_str()).good() && file.loadAllDataIntoMemory().good() &&
                      file.getDataset()->chooseRepresentation(syntax, nullptr).good() &&
                      file.saveFile(path.c_str(), syntax).good();
    if (!done) throw std::runtime_error("DCMTK does not encode " + path);
}

}  // namespace cinedisc::fidelity
