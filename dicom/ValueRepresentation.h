#pragma once

#include "dicom/DataSet.h"

namespace cinedisc::dicom {

/// Whether these two letters are a value representation of PS3.5 section 6.2.
bool isKnownVr(Vr letters);
/// Whether explicit encodings give the length 32 bits, after two reserved bytes (PS3.5 section 7.1.2).
bool hasLongLength(Vr letters);
/// Bytes that big endian turns round together: 1 for text and plain bytes.
int unitSize(Vr letters);
/// Whether values are text in the data set's specific character set.
bool usesCharacterSet(Vr letters);
/// Whether values are text of any kind.
bool isText(Vr letters);
/// The representation of those elements that the program itself reads, for encodings that do not state it; UN
/// for all others. The full dictionary is far too slow to load for opening a file.
Vr usualVr(Tag tag);
/// What an element is to be read as: its own representation, or the usual one when that is not stated.
Vr effectiveVr(const Element& element);

}  // namespace cinedisc::dicom
