// The one entry of the library; compiled into it and into nothing else.
#include "platform/mail/curl_mail_engine.h"
#include "platform/mail/curl_web.h"
#include "platform/mail/net_module.h"

extern "C" __attribute__((visibility("default"))) const skv::NetModule* skyvaultNet() {
  static skv::CurlMailSystem mail;
  static skv::CurlWeb web;
  static const skv::NetModule module{mail, web};
  return &module;
}
