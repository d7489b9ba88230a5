// Boxes that tell of failures: a step that failed, the desktop's refusals.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// The checkpoint of an operation: shows a failure in the "Error #" box and answers true, which
// tells the caller to leave.
bool ReportError(App& app, const Outcome& outcome);

// What could not be done, and on the line below it why.
void tellFailure(App& app, const std::string& what, const Outcome& failure);

// Said of a text that no stored file can hold; `lacking`: what CodePage::lacking answers of it.
std::string cannotBeStored(const std::string& lacking);
// Why a text cannot be stored, with the characters at fault: what CodePage::lacking answers of it.
std::string notStorable(const std::string& text, const std::string& lacking);

// Opens a document or an address with the desktop's program for it; a failure is told in a box.
void ShellOpen(App& app, const std::string& target);

}  // namespace skv
