// The box in which a user reads what a mail brings, before anything is done with it.
#pragma once

#include <cstdint>
#include <string>

#include "core/app.h"

namespace skv {

enum class NoteFor { reading, installing };

// Who sends what, and `text`, which the sender has written, as plain text. `file`: what is to be
// installed, "" for nothing. Answers whether the user wants it; only `installing` asks.
bool showNote(App& app, const MailMessage& mail, std::string text, const std::string& file,
              NoteFor use);

// " (about 3.2 MB)"; "" for 0.
std::string inWords(std::uint64_t bytes);

}  // namespace skv
