// Mail and web as a library of its own, "skyvault-net.so", which the program loads when it first
// needs it: what they stand on is some fifty libraries, and loading those would take a third of the
// time of every start.
#pragma once

#include "platform/mail_engine.h"
#include "platform/web.h"

namespace skv {

struct NetModule {
  MailSystem& mail;
  Web& web;
};

}  // namespace skv

// Lives as long as the process.
extern "C" const skv::NetModule* skyvaultNet();
