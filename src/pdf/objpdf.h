#pragma once
// What the order forms and the protocols share when they write a PDF: the start of the
// document and the breaking of long texts into lines.

#include "pdf/pdfcreator.h"

#include <cstdint>
#include <string>
#include <string_view>

// Sets the title, centimetres, A4, no margin, portrait, no ASCII85, and opens the file.
// False when the file could not be opened; the caller then ends without a message.
bool ObjPdfOpen(clsPDFCreator &Pdf, const std::string &FileName, std::string_view Title);

// Breaks every "~"-line of Text that is longer than Width characters: the cut goes back
// from Width to the nearest blank (a line without one is cut at Width), the part before
// it becomes a line and the rest goes on after the blank. Lines are joined by "~".
// Text is UTF-8; Width counts characters, not bytes.
std::string WrapText(std::string_view Text, int16_t Width);
