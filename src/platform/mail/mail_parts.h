// The parts of a parsed mail: which one is its text, which ones are attachments.
#pragma once

#include <gmime/gmime.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/mail/mail_pulse.h"

namespace skv {

struct GObjectFree {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using GOwned = std::unique_ptr<T, GObjectFree>;

// A stretch of a part's decoded bytes.
struct PartRange {
  std::uint64_t begin = 0, end = 0;
};

struct MailPart {
  GMimePart* part = nullptr;  // of the parsed mail, which owns it
  std::string name;           // as the mail has it, decoded
  bool uuencoded = false;     // stands in the part's text, in `range`
  PartRange range = {};
};

struct MailParts {
  GMimePart* text = nullptr;  // none: the mail has no text
  std::vector<MailPart> attachments;
};

// Ends early when the caller of the pulse wants that.
MailParts partsOf(GMimeObject* mail, MailPulse& pulse);

bool isBase64(GMimePart* part);
// The bytes of a part, from their beginning, as they were sent or decoded.
GOwned<GMimeStream> rawStream(GMimePart* part);
GOwned<GMimeStream> decodedStream(GMimePart* part);

}  // namespace skv
