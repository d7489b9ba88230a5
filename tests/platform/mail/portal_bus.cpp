#include "platform/mail/portal_bus.h"

#include <gio/gunixfdlist.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace skv::test {

namespace {

constexpr const char* description =
    "<node><interface name='org.freedesktop.portal.Email'>"
    "<method name='ComposeEmail'><arg type='s' direction='in'/><arg type='a{sv}' direction='in'/>"
    "<arg type='o' direction='out'/></method>"
    "<property name='version' type='u' access='read'/></interface></node>";
constexpr const char* request = "/org/freedesktop/portal/desktop/request/1";

// By the descriptor's name, as one that may not be read itself opens the file for the reader.
std::string contentOf(int file) {
  std::string content;
  gchar* bytes = nullptr;
  gsize length = 0;
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  if (g_file_get_contents(path.c_str(), &bytes, &length, nullptr) != 0)
    content.assign(bytes, length);
  g_free(bytes);
  return content;
}

}  // namespace

PortalBus::PortalBus() {
  daemon_ = g_subprocess_new(G_SUBPROCESS_FLAGS_STDOUT_PIPE, nullptr, "/usr/bin/dbus-daemon",
                             "--session", "--nofork", "--nopidfile", "--print-address", nullptr);
  if (daemon_ == nullptr) {
    ADD_FAILURE() << "The tests need the package dbus-daemon.";
    return;
  }
  GDataInputStream* told = g_data_input_stream_new(g_subprocess_get_stdout_pipe(daemon_));
  gchar* line = g_data_input_stream_read_line(told, nullptr, nullptr, nullptr);
  if (line != nullptr) address_ = line;
  g_free(line);
  g_object_unref(told);
  context_ = g_main_context_new();
  thread_ = std::thread([this] { serve(); });
  while (!ready_) ::usleep(1000);
}

PortalBus::~PortalBus() {
  ending_ = true;
  if (thread_.joinable()) thread_.join();
  if (context_ != nullptr) g_main_context_unref(context_);
  if (daemon_ == nullptr) return;
  g_subprocess_force_exit(daemon_);
  g_subprocess_wait(daemon_, nullptr, nullptr);
  g_object_unref(daemon_);
}

void PortalBus::serve() {
  g_main_context_push_thread_default(context_);
  GDBusConnection* bus = g_dbus_connection_new_for_address_sync(
      address_.c_str(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr);
  if (bus == nullptr) {
    ready_ = true;
    g_main_context_pop_thread_default(context_);
    return;
  }
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(description, nullptr);
  const GDBusInterfaceVTable table{&PortalBus::called, &PortalBus::property, nullptr, {}};
  g_dbus_connection_register_object(bus, "/org/freedesktop/portal/desktop", node->interfaces[0],
                                    &table, this, nullptr, nullptr);
  GVariant* owned = g_dbus_connection_call_sync(
      bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
      g_variant_new("(su)", "org.freedesktop.portal.Desktop", 0U), nullptr, G_DBUS_CALL_FLAGS_NONE,
      -1, nullptr, nullptr);
  EXPECT_NE(owned, nullptr);
  if (owned != nullptr) g_variant_unref(owned);
  ready_ = true;
  while (!ending_)
    if (g_main_context_iteration(context_, FALSE) == 0) ::usleep(1000);
  g_dbus_connection_close_sync(bus, nullptr, nullptr);
  g_dbus_node_info_unref(node);
  g_object_unref(bus);
  g_main_context_pop_thread_default(context_);
}

GVariant* PortalBus::property(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                              const gchar*, GError**, gpointer self) {
  return g_variant_new_uint32(static_cast<PortalBus*>(self)->version);
}

void PortalBus::called(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                       GVariant* arguments, GDBusMethodInvocation* call, gpointer self) {
  static_cast<PortalBus*>(self)->take(arguments, call);
}

void PortalBus::take(GVariant* arguments, GDBusMethodInvocation* call) {
  options.clear();
  attachments.clear();
  GUnixFDList* files = g_dbus_message_get_unix_fd_list(g_dbus_method_invocation_get_message(call));
  GVariantIter* all = nullptr;
  g_variant_get(arguments, "(sa{sv})", nullptr, &all);
  const gchar* key = nullptr;
  GVariant* value = nullptr;
  while (g_variant_iter_loop(all, "{&sv}", &key, &value) != 0) {
    if (std::string(key) != "attachment_fds") {
      gchar* text = g_variant_print(value, FALSE);
      options.push_back(std::string(key) + "=" + text);
      g_free(text);
      continue;
    }
    for (gsize at = 0; at < g_variant_n_children(value); ++at) {
      gint32 handle = 0;
      g_variant_get_child(value, at, "h", &handle);
      const int file = g_unix_fd_list_get(files, handle, nullptr);
      attachments.push_back(contentOf(file));
      ::close(file);
    }
  }
  g_variant_iter_free(all);
  ++asked;
  if (refuses)
    return g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.Failed", "no");
  GDBusConnection* bus = g_dbus_method_invocation_get_connection(call);
  const auto respond = [&] {
    if (response < 0) return;
    g_dbus_connection_emit_signal(
        bus, nullptr, request, "org.freedesktop.portal.Request", "Response",
        g_variant_new("(ua{sv})", static_cast<guint32>(response), nullptr), nullptr);
  };
  g_object_ref(bus);
  if (respondsFirst) respond();
  g_dbus_method_invocation_return_value(call, g_variant_new("(o)", request));
  if (!respondsFirst) respond();
  g_object_unref(bus);
}

}  // namespace skv::test
