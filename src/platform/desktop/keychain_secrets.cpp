#include "platform/desktop/keychain_secrets.h"

#include <qt6keychain/keychain.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QEventLoop>
#include <QTimer>
#include <functional>
#include <optional>

namespace skv {

namespace {

constexpr auto serviceName = QLatin1String("FSSkyvault");

// Whether anybody on the session's bus keeps passwords, or would be started for it. Without a bus
// QtKeychain's own look takes its time, and may start programs.
bool anybodyKeepsPasswords() {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected() || bus.interface() == nullptr) return false;
  const QStringList running = bus.interface()->registeredServiceNames();
  const QStringList startable = bus.interface()->activatableServiceNames();
  for (const char* name :
       {"org.freedesktop.secrets", "org.kde.kwalletd6", "org.kde.kwalletd5", "org.kde.kwalletd"})
    if (running.contains(QLatin1String(name)) || startable.contains(QLatin1String(name)))
      return true;
  return false;
}

Outcome noService() {
  return Outcome::withText(err::deviceUnavailable, "No service of this desktop keeps passwords.");
}

Outcome outcomeOf(const QKeychain::Job& job) {
  const std::string reason = job.errorString().toStdString();
  switch (job.error()) {
    case QKeychain::NoError:
    case QKeychain::EntryNotFound:
      return {};
    case QKeychain::NoBackendAvailable:
      return Outcome::failure(err::deviceUnavailable, reason);
    default:
      return Outcome::failure(err::permissionDenied, reason);
  }
}

// What a job has come to, when it has ended in time. It deletes itself; one that is slower goes on
// without its caller, and what it answers is not waited for.
template <class Job>
Outcome run(Job* job, std::string_view name, std::chrono::milliseconds patience,
            const std::function<void(Job&)>& take = {}) {
  job->setInsecureFallback(false);
  job->setKey(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
  QEventLoop waiting;
  std::optional<Outcome> answer;
  QObject::connect(job, &QKeychain::Job::finished, &waiting, [&] {
    answer = outcomeOf(*job);
    if (answer->ok() && take) take(*job);
    waiting.quit();
  });
  QTimer::singleShot(patience, &waiting, &QEventLoop::quit);
  job->start();
  if (!answer) waiting.exec(QEventLoop::ExcludeUserInputEvents);
  return answer.value_or(Outcome::withText(
      err::permissionDenied,
      "The desktop's service for passwords did not answer. If it asks to be unlocked, do that and "
      "try again."));
}

}  // namespace

Result<std::string> KeychainSecrets::read(std::string_view name) {
  if (!anybodyKeepsPasswords()) return noService();
  std::string password;
  const Outcome outcome =
      run<QKeychain::ReadPasswordJob>(new QKeychain::ReadPasswordJob(serviceName), name, patience_,
                                      [&password](const QKeychain::ReadPasswordJob& job) {
                                        password = job.textData().toStdString();
                                      });
  if (!outcome.ok()) return outcome;
  return password;
}

Outcome KeychainSecrets::write(std::string_view name, std::string_view password) {
  if (!anybodyKeepsPasswords()) return noService();
  if (password.empty()) return run(new QKeychain::DeletePasswordJob(serviceName), name, patience_);
  auto* job = new QKeychain::WritePasswordJob(serviceName);
  job->setTextData(QString::fromUtf8(password.data(), static_cast<qsizetype>(password.size())));
  return run(job, name, patience_);
}

}  // namespace skv
