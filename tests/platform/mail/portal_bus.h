// A session bus of its own with a portal for mails on it, which does what the test says.
#pragma once

#include <gio/gio.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace skv::test {

class PortalBus {
 public:
  // What the portal is to do, before it is asked.
  unsigned version = 3;
  int response = 0;  // of the user's mail program; -1: none ever comes
  bool refuses = false;
  bool respondsFirst = false;  // before the call for which it responds is answered

  PortalBus();
  ~PortalBus();
  PortalBus(const PortalBus&) = delete;
  PortalBus& operator=(const PortalBus&) = delete;

  const std::string& address() const { return address_; }
  // Of the last mail, to be read when the call has ended: "key=value" for each option but the
  // attachments, in their order, and the content of each attachment.
  std::vector<std::string> options, attachments;
  std::atomic<int> asked = 0;

 private:
  static void called(GDBusConnection* bus, const gchar* sender, const gchar* path,
                     const gchar* interface, const gchar* method, GVariant* arguments,
                     GDBusMethodInvocation* call, gpointer self);
  static GVariant* property(GDBusConnection* bus, const gchar* sender, const gchar* path,
                            const gchar* interface, const gchar* name, GError** error,
                            gpointer self);
  void take(GVariant* arguments, GDBusMethodInvocation* call);
  void serve();

  std::string address_;
  GSubprocess* daemon_ = nullptr;
  GMainContext* context_ = nullptr;
  std::atomic<bool> ready_ = false, ending_ = false;
  std::thread thread_;
};

}  // namespace skv::test
