#include "platform/mail/email_portal.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <thread>

#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"
#include "platform/mail/mail_parts.h"

namespace skv {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* object = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Email";
// The user may be asked for a mail program.
constexpr std::chrono::minutes answerTime{10};
constexpr int callTime = 25'000;          // ms
constexpr unsigned severalAddresses = 3;  // the version that takes them

struct VariantFree {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, VariantFree>;

// The session's bus, never one that would be started for the question.
std::string busAddress() {
  std::string address = environmentValue("DBUS_SESSION_BUS_ADDRESS");
  const std::string folder = environmentValue("XDG_RUNTIME_DIR");
  std::error_code error;
  if (!address.empty() || !folder.starts_with('/') ||
      !std::filesystem::is_socket(folder + "/bus", error))
    return address;
  char* escaped = g_dbus_address_escape_value((folder + "/bus").c_str());
  std::string path = std::string("unix:path=") + escaped;
  g_free(escaped);
  return path;
}

// Talks to the bus in a main context of its own, so that nothing of the window runs in here but by
// Yield. That context is the thread's default only while a call begins.
class PortalCall {
 public:
  explicit PortalCall(MailPulse& pulse)
      : pulse_(pulse), context_(g_main_context_new()), stop_(g_cancellable_new()) {}
  ~PortalCall() {
    if (bus_ && responses_ != 0) g_dbus_connection_signal_unsubscribe(bus_.get(), responses_);
    if (bus_) g_dbus_connection_close(bus_.get(), nullptr, nullptr, nullptr);
    bus_.reset();
    while (g_main_context_iteration(context_, FALSE) != 0) {
    }
    g_main_context_unref(context_);
  }
  PortalCall(const PortalCall&) = delete;
  PortalCall& operator=(const PortalCall&) = delete;

  PortalAnswer compose(const ComposedMail& mail) {
    const unsigned version = connect() ? portalVersion() : 0;
    if (stopped_) return PortalAnswer::stopped;
    if (version == 0) return PortalAnswer::none;
    if (mail.addresses.size() > 1 && version < severalAddresses) return PortalAnswer::none;
    const auto request = ask(mail);
    if (stopped_) return PortalAnswer::unknown;  // the portal may have heard of it
    if (!request) return PortalAnswer::none;
    const auto deadline = Clock::now() + answerTime;
    wait([&] { return answers_.contains(*request) || Clock::now() > deadline || closed(); });
    const auto answer = answers_.find(*request);
    if (answer == answers_.end()) return PortalAnswer::unknown;
    if (answer->second == 0) return PortalAnswer::taken;
    return answer->second == 1 ? PortalAnswer::declined : PortalAnswer::none;
  }

 private:
  // A call whose answer comes to `context_`.
  class Begun {
   public:
    explicit Begun(GMainContext* context) : context_(context) {
      g_main_context_push_thread_default(context_);
    }
    ~Begun() { g_main_context_pop_thread_default(context_); }
    Begun(const Begun&) = delete;
    Begun& operator=(const Begun&) = delete;

   private:
    GMainContext* context_;
  };

  static void take(GObject*, GAsyncResult* result, gpointer self) {
    g_object_ref(result);
    static_cast<PortalCall*>(self)->result_.reset(result);
  }

  // Lets the window live until it is so.
  template <class Condition>
  void wait(Condition met) {
    while (!met()) {
      if (!stopped_ && !pulse_.beat()) {
        stopped_ = true;
        g_cancellable_cancel(stop_.get());
      }
      if (g_main_context_iteration(context_, FALSE) != 0) continue;
      if (stopped_ && !underWay_) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  GOwned<GAsyncResult> resultOf() {
    underWay_ = true;
    wait([this] { return result_ != nullptr; });
    underWay_ = false;
    return std::move(result_);
  }

  bool connect() {
    const std::string address = busAddress();
    if (address.empty()) return false;
    {
      const Begun begun(context_);
      g_dbus_connection_new_for_address(
          address.c_str(),
          static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
          nullptr, stop_.get(), &PortalCall::take, this);
    }
    const auto result = resultOf();
    bus_.reset(g_dbus_connection_new_for_address_finish(result.get(), nullptr));
    return bus_ != nullptr;
  }

  bool closed() const { return g_dbus_connection_is_closed(bus_.get()) != 0; }

  Variant call(const char* callInterface, const char* method, GVariant* arguments,
               const char* answer, GUnixFDList* files) {
    {
      const Begun begun(context_);
      g_dbus_connection_call_with_unix_fd_list(
          bus_.get(), service, object, callInterface, method, arguments, G_VARIANT_TYPE(answer),
          G_DBUS_CALL_FLAGS_NONE, callTime, files, stop_.get(), &PortalCall::take, this);
    }
    const auto result = resultOf();
    return Variant(g_dbus_connection_call_with_unix_fd_list_finish(bus_.get(), nullptr,
                                                                   result.get(), nullptr));
  }

  // 0: there is no portal for mails.
  unsigned portalVersion() {
    const Variant answer = call("org.freedesktop.DBus.Properties", "Get",
                                g_variant_new("(ss)", interface, "version"), "(v)", nullptr);
    if (!answer) return 0;
    GVariant* inner = nullptr;
    g_variant_get(answer.get(), "(v)", &inner);
    const Variant version(inner);
    if (!g_variant_is_of_type(version.get(), G_VARIANT_TYPE_UINT32)) return 0;
    return g_variant_get_uint32(version.get());
  }

  static void respond(GDBusConnection*, const gchar*, const gchar* path, const gchar*, const gchar*,
                      GVariant* parameters, gpointer self) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ua{sv})"))) return;
    guint32 code = 0;
    g_variant_get(parameters, "(ua{sv})", &code, nullptr);
    static_cast<PortalCall*>(self)->answers_[path] = code;
  }

  // The path of the request, whose answer may come before it.
  std::optional<std::string> ask(const ComposedMail& mail) {
    {
      const Begun begun(context_);
      responses_ = g_dbus_connection_signal_subscribe(
          bus_.get(), service, "org.freedesktop.portal.Request", "Response", nullptr, nullptr,
          G_DBUS_SIGNAL_FLAGS_NONE, &PortalCall::respond, this, nullptr);
    }
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    const auto addText = [&options](const char* key, const std::string& text) {
      g_variant_builder_add(&options, "{sv}", key, g_variant_new_string(text.c_str()));
    };
    GVariantBuilder handles, addresses;
    g_variant_builder_init(&handles, G_VARIANT_TYPE("ah"));
    g_variant_builder_init(&addresses, G_VARIANT_TYPE_STRING_ARRAY);
    const GOwned<GUnixFDList> files(g_unix_fd_list_new());
    bool complete = true;
    for (const std::string& path : mail.attachments) {
      const Descriptor file = openFile(path, O_PATH);
      const int handle =
          file.valid() ? g_unix_fd_list_append(files.get(), file.get(), nullptr) : -1;
      complete = complete && handle >= 0;
      g_variant_builder_add(&handles, "h", handle);
    }
    for (const std::string& address : mail.addresses)
      g_variant_builder_add(&addresses, "s", address.c_str());
    if (mail.addresses.size() == 1) {
      addText("address", mail.addresses.front());
      g_variant_builder_clear(&addresses);
    } else {
      g_variant_builder_add(&options, "{sv}", "addresses", g_variant_builder_end(&addresses));
    }
    addText("subject", mail.subject);
    addText("body", mail.body);
    g_variant_builder_add(&options, "{sv}", "attachment_fds", g_variant_builder_end(&handles));
    GVariant* arguments = g_variant_ref_sink(g_variant_new("(sa{sv})", "", &options));
    const Variant owned(arguments);
    if (!complete) return std::nullopt;

    const Variant answer = call(interface, "ComposeEmail", arguments, "(o)", files.get());
    if (!answer) return std::nullopt;
    const char* path = nullptr;
    g_variant_get(answer.get(), "(&o)", &path);
    return std::string(path);
  }

  MailPulse& pulse_;
  GMainContext* context_;
  GOwned<GCancellable> stop_;
  GOwned<GDBusConnection> bus_;
  GOwned<GAsyncResult> result_;
  guint responses_ = 0;
  std::map<std::string, unsigned> answers_;  // by the request's path
  bool underWay_ = false, stopped_ = false;
};

}  // namespace

PortalAnswer composeByPortal(const ComposedMail& mail, MailPulse& pulse) {
  return PortalCall(pulse).compose(mail);
}

}  // namespace skv
