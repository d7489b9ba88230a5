#include "platform/mail/server_link.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"
#include "platform/mail/base64_lines.h"
#include "platform/mail/curl_transfer.h"

namespace skv {

namespace {

using Time = std::chrono::steady_clock::time_point;
Time now() { return std::chrono::steady_clock::now(); }

// A login takes a handful of answers, each of which may take its time.
constexpr int answersOfLogin = 8;
// Of one answer of a server while libcurl leads the conversation.
constexpr std::size_t longestAnswer = std::size_t{1} << 16U;
// A farewell is a courtesy.
constexpr std::chrono::seconds farewellTime{3};
constexpr std::size_t longestWords = 300;
// What a client says who does not want to tell the name of its machine.
constexpr const char* clientName = "%5B127.0.0.1%5D";

enum class Cleartext { never, onThisMachine, allowed };
enum class Limit { none, connecting, silence, answer };

bool tlsAtOnce(int port, const MailOptions& options) {
  return std::ranges::find(options.tlsPorts, port) != options.tlsPorts.end();
}

struct Freed {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

template <class Value>
void set(CURL* easy, CURLoption option, Value value) {
  curl_easy_setopt(easy, option, value);  // NOLINT(cppcoreguidelines-pro-type-vararg)
}

std::string inBase64(const std::string& text) {
  std::string lines(base64Length(text.size()), '\0');
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());  // NOLINT(*-cast)
  lines.resize(base64Lines({bytes, text.size()}, lines.data()));
  std::erase_if(lines, [](char c) { return c == '\r' || c == '\n'; });
  return lines;
}

}  // namespace

std::string serverWords(std::string_view line, const ServerAccess& access) {
  std::string words(trim(line));
  // As it is, and as it goes over the wire.
  for (const std::string& secret :
       {access.password, inBase64(access.password),
        inBase64(std::string(1, '\0') + access.user + '\0' + access.password)})
    for (std::size_t at; !access.password.empty() && (at = words.find(secret)) != words.npos;)
      words.replace(at, secret.size(), secret == "*" ? "" : "*");
  if (!isUtf8(words)) words = CodePage(1252).decode(words);
  std::string clean;
  for (const std::string& character : characters(words)) {
    if (clean.size() + character.size() > longestWords) break;
    const auto first = static_cast<unsigned char>(character.front());
    clean += first < ' ' || first == 0x7F ? " " : character;
  }
  return clean;
}

Outcome serverFailure(const ServerAccess& access, std::string_view what, std::string_view words) {
  std::string text = "The mail server \"" + access.host.shown() + "\" " + std::string(what);
  const std::string clean = serverWords(words, access);
  return Outcome::withText(err::mail, text + (clean.empty() ? "." : ": " + clean));
}

// One connection by libcurl, up to the login or to the end of a mail.
class CurlCall {
 public:
  CurlCall(ServerAccess theAccess, const std::string& scheme, int port, Cleartext cleartext,
           const MailOptions& theOptions, MailPulse& thePulse)
      : access(std::move(theAccess)), options(theOptions), pulse(thePulse) {
    const bool atOnce = tlsAtOnce(port, options);
    const std::string protocols = scheme + "," + scheme + "s";
    const bool smtp = scheme == "smtp";
    const std::string url = scheme + (atOnce ? "s" : "") + "://" + access.host.inUrl() + ":" +
                            std::to_string(port) + "/" + (smtp ? clientName : "");
    set(easy(), CURLOPT_URL, url.c_str());
    set(easy(), CURLOPT_PROTOCOLS_STR, protocols.c_str());
    set(easy(), CURLOPT_REDIR_PROTOCOLS_STR, protocols.c_str());
    set(easy(), CURLOPT_PROXY, "");
    set(easy(), CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    set(easy(), CURLOPT_TCP_NODELAY, 1L);
    set(easy(), CURLOPT_USE_SSL,
        static_cast<long>(cleartext == Cleartext::never ? CURLUSESSL_ALL : CURLUSESSL_TRY));
    set(easy(), CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (!options.caFile.empty()) set(easy(), CURLOPT_CAINFO, options.caFile.c_str());
    if (!access.user.empty()) {
      set(easy(), CURLOPT_USERNAME, access.user.c_str());
      set(easy(), CURLOPT_PASSWORD, access.password.c_str());
    }
    const auto longest = options.connectTime + answersOfLogin * options.silenceTime;
    set(easy(), CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(longest.count()));
    set(easy(), CURLOPT_SERVER_RESPONSE_TIMEOUT,
        static_cast<long>(std::chrono::ceil<std::chrono::seconds>(options.silenceTime).count()));
    set(easy(), CURLOPT_ERRORBUFFER, error_.data());
    onThisMachineOnly_ = cleartext == Cleartext::onThisMachine && !atOnce;
    set(easy(), CURLOPT_OPENSOCKETDATA, this);
    set(easy(), CURLOPT_OPENSOCKETFUNCTION, &CurlCall::openSocket);
    set(easy(), CURLOPT_HEADERDATA, this);
    set(easy(), CURLOPT_HEADERFUNCTION, &CurlCall::answered);
    set(easy(), CURLOPT_DEBUGDATA, this);
    set(easy(), CURLOPT_DEBUGFUNCTION, &CurlCall::seen);
    set(easy(), CURLOPT_VERBOSE, 1L);
    set(easy(), CURLOPT_XFERINFODATA, this);
    set(easy(), CURLOPT_XFERINFOFUNCTION, &CurlCall::progressed);
    set(easy(), CURLOPT_NOPROGRESS, 0L);
  }
  CurlCall(const CurlCall&) = delete;
  CurlCall& operator=(const CurlCall&) = delete;

  void connectOnly() const { set(easy(), CURLOPT_CONNECT_ONLY, 1L); }

  void deliver(const Envelope& envelope, MailSource source) {
    source_ = std::move(source);
    set(easy(), CURLOPT_MAIL_FROM, envelope.from.c_str());
    for (const std::string& to : envelope.to)
      recipients_.reset(curl_slist_append(recipients_.release(), to.c_str()));
    set(easy(), CURLOPT_MAIL_RCPT, recipients_.get());
    set(easy(), CURLOPT_UPLOAD, 1L);
    set(easy(), CURLOPT_READDATA, this);
    set(easy(), CURLOPT_READFUNCTION, &CurlCall::readMail);
    set(easy(), CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(source_.size));
    set(easy(), CURLOPT_UPLOAD_BUFFERSIZE, 1L << 18U);
    // Says its farewell here, where it is watched, and not when the handles go.
    set(easy(), CURLOPT_FORBID_REUSE, 1L);
  }

  CURLcode run() {
    started_ = heard_ = now();
    return transfer_.run([this] { return mayGoOn(); });
  }

  CURL* easy() const { return transfer_.easy; }

  // What a failed run means to the user.
  Outcome failure(CURLcode code) const {
    if (!pulse.beat()) {
      if (doubt().empty()) return MailPulse::cancelled();
      return serverFailure(access, "was not waited for" + doubt());
    }
    if (!sourceFailure_.ok()) return sourceFailure_;
    if (limit_ == Limit::connecting || code == CURLE_COULDNT_CONNECT)
      return serverFailure(access, "cannot be reached", limit_ == Limit::none ? reason() : "");
    if (limit_ == Limit::silence || code == CURLE_OPERATION_TIMEDOUT)
      return serverFailure(access, "does not answer" + doubt());
    if (limit_ == Limit::answer) return serverFailure(access, "answers without an end");
    switch (code) {
      case CURLE_COULDNT_RESOLVE_HOST:
        return serverFailure(access, "cannot be found");
      case CURLE_LOGIN_DENIED:
        return serverFailure(access, "refuses the login", refusal_);
      case CURLE_PEER_FAILED_VERIFICATION:
      case CURLE_SSL_CACERT_BADFILE:
        return serverFailure(access, "cannot prove that it is the one", reason());
      default:
        break;
    }
    if (!refusal_.empty()) return serverFailure(access, "refuses", refusal_);
    return serverFailure(access, "has broken off" + doubt(),
                         error_.front() != '\0' ? reason() : curl_easy_strerror(code));
  }

  bool unreachable(CURLcode code) const {
    return limit_ == Limit::connecting || code == CURLE_COULDNT_CONNECT;
  }
  bool onlyElsewhere(CURLcode code) const {
    return code == CURLE_COULDNT_CONNECT && refusedElsewhere_;
  }
  // A server that knows no EHLO knows no encryption either. One that offers it and then says no, or
  // is too busy to talk, is another matter.
  bool offersNoEncryption(CURLcode code) const {
    if (code == CURLE_REMOTE_ACCESS_DENIED)
      return std::ranges::any_of(std::array{"500", "502", "504"}, [this](const char* unknown) {
        return refusal_.starts_with(unknown);
      });
    return code == CURLE_USE_SSL_FAILED && !encryptionOffered_;
  }

  const ServerAccess access;
  MailOptions options;
  MailPulse& pulse;

 private:
  static CurlCall& self(void* pointer) { return *static_cast<CurlCall*>(pointer); }

  std::string_view reason() const { return error_.data(); }

  // The mail was out, and the answer was not in.
  std::string doubt() const {
    return wholeMailRead_ && refusal_.empty() ? " and may have taken the mail or not" : "";
  }

  bool mayGoOn() {
    if (!pulse.beat()) return false;
    if (limit_ != Limit::none) return false;
    curl_off_t connected = 0;
    curl_easy_getinfo(easy(), CURLINFO_CONNECT_TIME_T, &connected);
    if (connected == 0) {
      if (now() - started_ > options.connectTime) limit_ = Limit::connecting;
    } else {
      if (!connected_) heard_ = now();
      connected_ = true;
      if (now() - heard_ > options.silenceTime) limit_ = Limit::silence;
    }
    return limit_ == Limit::none && (!farewell_ || now() - heard_ < farewellTime);
  }

  static int progressed(void* pointer, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return self(pointer).mayGoOn() ? 0 : 1;
  }

  static curl_socket_t openSocket(void* pointer, curlsocktype, curl_sockaddr* address) {
    CurlCall& call = self(pointer);
    if (call.onThisMachineOnly_ && !isLoopback(address->addr)) {
      call.refusedElsewhere_ = true;
      return CURL_SOCKET_BAD;
    }
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  }

  static std::size_t answered(char* data, std::size_t size, std::size_t count, void* pointer) {
    CurlCall& call = self(pointer);
    const std::string_view line(data, size * count);
    call.answer_ += line.size();
    if (call.answer_ > longestAnswer) {
      call.limit_ = Limit::answer;
      return 0;
    }
    const bool refused = line.starts_with("-ERR") || line.starts_with('4') || line.starts_with('5');
    if (refused) call.refusal_ = line.starts_with("-ERR") ? line.substr(4) : line;
    const std::string offer = lowerAscii(line.substr(0, line.find_last_not_of(" \r\n") + 1));
    if (offer == "stls" || offer == "250-starttls" || offer == "250 starttls")
      call.encryptionOffered_ = true;
    return line.size();
  }

  static int seen(CURL*, curl_infotype type, char* data, std::size_t size, void* pointer) {
    CurlCall& call = self(pointer);
    const std::string_view text(data, size);
    if (type == CURLINFO_TEXT) {
      // libcurl throws lines without an end away and goes on waiting.
      if (text.starts_with("Excessive server response line") && ++call.excesses_ > 2)
        call.limit_ = Limit::answer;
      return 0;
    }
    call.heard_ = now();
    if (type == CURLINFO_HEADER_OUT) {
      call.answer_ = 0;
      call.farewell_ = call.farewell_ || text.starts_with("QUIT");
    }
    return 0;
  }

  static std::size_t readMail(char* buffer, std::size_t size, std::size_t count, void* pointer) {
    CurlCall& call = self(pointer);
    if (!call.pulse.beat()) return CURL_READFUNC_ABORT;
    const auto got = call.source_.read({buffer, size * count});
    if (!got.ok()) {
      call.sourceFailure_ = got.outcome();
      return CURL_READFUNC_ABORT;
    }
    call.sent_ += got.value();
    call.wholeMailRead_ = call.sent_ == call.source_.size;
    call.pulse.tell(call.sent_, call.source_.size);
    return got.value();
  }

  std::unique_ptr<curl_slist, Freed> recipients_;
  MailSource source_;
  std::uint64_t sent_ = 0;
  bool wholeMailRead_ = false;
  Outcome sourceFailure_;

  std::array<char, CURL_ERROR_SIZE> error_{};
  std::string refusal_;
  bool encryptionOffered_ = false;
  Limit limit_ = Limit::none;
  std::size_t answer_ = 0;
  int excesses_ = 0;
  Time started_, heard_;
  bool connected_ = false;
  bool farewell_ = false;
  bool onThisMachineOnly_ = false, refusedElsewhere_ = false;
  // The last member: it still calls on the others when it ends.
  const CurlTransfer transfer_;
};

namespace {

std::vector<Cleartext> waysFor(const ServerAccess& access, int port, const MailOptions& options) {
  if (tlsAtOnce(port, options)) return {Cleartext::never};
  if (access.plainAllowed) return {Cleartext::allowed};
  if (access.host.soundsLocal()) return {Cleartext::onThisMachine, Cleartext::never};
  return {Cleartext::never, Cleartext::onThisMachine};
}

// Runs the call that `prepare` makes ready, on the first port that can be reached, encrypted unless
// it may be otherwise.
template <class Prepare>
Result<std::unique_ptr<CurlCall>> runCall(const ServerAccess& access, const char* scheme,
                                          const MailOptions& options, MailPulse& pulse,
                                          Prepare prepare) {
  Outcome failure;
  for (const int port : access.ports) {
    ServerAccess shown = access;
    shown.host.port = port;
    bool reached = false;
    failure = Outcome::failure(err::mailNotEncrypted, access.host.name);
    for (const Cleartext way : waysFor(access, port, options)) {
      auto call = std::make_unique<CurlCall>(shown, scheme, port, way, options, pulse);
      if (Outcome ready = prepare(*call); !ready.ok()) return ready;
      const CURLcode code = call->run();
      if (code == CURLE_OK) return call;
      if (way == Cleartext::onThisMachine && call->onlyElsewhere(code)) continue;
      reached = !call->unreachable(code);
      if (way == Cleartext::never && !tlsAtOnce(port, options) && call->offersNoEncryption(code))
        continue;
      failure = call->failure(code);
      break;
    }
    if (reached || failure.number() == err::cancelled) break;
  }
  return failure;
}

}  // namespace

ServerLink::ServerLink(std::unique_ptr<CurlCall> call) : call_(std::move(call)) {}
ServerLink::~ServerLink() = default;

Result<std::unique_ptr<ServerLink>> ServerLink::open(const ServerAccess& access,
                                                     const MailOptions& options, MailPulse& pulse) {
  auto call = runCall(access, "pop3", options, pulse, [](const CurlCall& made) {
    made.connectOnly();
    return Outcome();
  });
  if (!call.ok()) return call.outcome();
  return std::unique_ptr<ServerLink>(new ServerLink(std::move(call).value()));
}

void ServerLink::setPatience(std::chrono::milliseconds time) { call_->options.silenceTime = time; }

Outcome ServerLink::wait(short events, Time until) {
  if (!call_->pulse.beat()) return MailPulse::cancelled();
  silent_ = now() > until;
  if (silent_) return serverFailure(call_->access, "does not answer");
  curl_socket_t socket = CURL_SOCKET_BAD;
  if (curl_easy_getinfo(call_->easy(), CURLINFO_ACTIVESOCKET, &socket) != CURLE_OK ||
      socket == CURL_SOCKET_BAD)
    return serverFailure(call_->access, "has broken off");
  pollfd watched{socket, events, 0};
  ::poll(&watched, 1, static_cast<int>(MailPulse::interval.count()));
  return {};
}

Outcome ServerLink::send(std::string_view bytes) {
  const Time until = now() + call_->options.silenceTime;
  while (!bytes.empty()) {
    std::size_t sent = 0;
    const CURLcode code = curl_easy_send(call_->easy(), bytes.data(), bytes.size(), &sent);
    if (code != CURLE_OK && code != CURLE_AGAIN)
      return serverFailure(call_->access, "has broken off");
    bytes.remove_prefix(sent);
    if (code != CURLE_AGAIN) continue;
    if (Outcome waited = wait(POLLOUT, until); !waited.ok()) return waited;
  }
  return {};
}

Result<std::size_t> ServerLink::receive(std::span<char> buffer, std::optional<Time> until) {
  const Time latest = now() + call_->options.silenceTime;
  const Time end = until ? std::min(*until, latest) : latest;
  for (;;) {
    if (!call_->pulse.beat()) return MailPulse::cancelled();
    std::size_t got = 0;
    const CURLcode code = curl_easy_recv(call_->easy(), buffer.data(), buffer.size(), &got);
    if (code == CURLE_OK && got > 0) return got;
    if (code != CURLE_AGAIN) return serverFailure(call_->access, "has broken off");
    if (Outcome waited = wait(POLLIN, end); !waited.ok()) return waited;
  }
}

Outcome sendBySmtp(const ServerAccess& access, const Envelope& envelope,
                   const std::function<Result<MailSource>()>& source, const MailOptions& options,
                   MailPulse& pulse) {
  return runCall(access, "smtp", options, pulse,
                 [&](CurlCall& call) {
                   auto mail = source();
                   if (!mail.ok()) return mail.outcome();
                   call.deliver(envelope, std::move(mail).value());
                   return Outcome();
                 })
      .outcome();
}

}  // namespace skv
