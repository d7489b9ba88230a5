// Many files copied or deleted by two threads: that is mostly the system's work, and the disk's,
// which for two takes little more than half of the time.
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>

#include "platform/disk/drive_file_system.h"
#include "platform/disk/native_calls.h"

namespace skv {

namespace {

constexpr std::size_t worthAThread = 4;  // files

// The jobs of one call, by number. Each thread takes the next that nobody has taken.
class Batch {
 public:
  Batch(std::size_t count, const std::function<Outcome(std::size_t)>& job)
      : job_(job), outcomes_(count), done_(count) {}

  std::size_t count() const { return done_.size(); }
  // False when all are taken.
  bool doNext() {
    const std::size_t i = next_++;
    if (i >= count()) return false;
    outcomes_[i] = job_(i);
    done_[i] = true;
    done_[i].notify_one();
    return true;
  }
  // Leaves those that are not taken, and answers how many have been.
  std::size_t stop() { return std::min(next_.exchange(count()), count()); }

  bool isDone(std::size_t i) const { return done_[i]; }
  const Outcome& outcome(std::size_t i) const {
    done_[i].wait(false);
    return outcomes_[i];
  }

 private:
  const std::function<Outcome(std::size_t)>& job_;
  std::vector<Outcome> outcomes_;
  std::vector<std::atomic<bool>> done_;
  std::atomic<std::size_t> next_ = 0;
};

// A second thread, when there can be one. Ends with the object, after the file it is at.
class Mate {
 public:
  explicit Mate(Batch& batch) : batch_(batch) {
    try {
      thread_ = std::thread([this] {
        while (batch_.doNext()) {
        }
      });
    } catch (const std::system_error&) {
      return;  // the caller does it all
    }
  }
  ~Mate() {
    static_cast<void>(batch_.stop());
    if (thread_.joinable()) thread_.join();
  }
  Mate(const Mate&) = delete;
  Mate& operator=(const Mate&) = delete;

 private:
  Batch& batch_;
  std::thread thread_;
};

// `told` hears of each job, in their order, on the calling thread, and answers whether to go on.
void doAll(std::size_t jobs, const std::function<Outcome(std::size_t)>& job,
           const std::function<bool(const Outcome&)>& told) {
  Batch all(jobs, job);
  const Mate mate(all);
  std::size_t next = 0;
  std::size_t count = jobs;
  const auto tellNext = [&] {
    if (!told(all.outcome(next++))) count = std::min(count, all.stop());
  };
  while (all.doNext())
    while (next < count && all.isDone(next)) tellNext();
  while (next < count) tellNext();
}

}  // namespace

void DriveFileSystem::copyFiles(const std::vector<FileCopy>& copies,
                                const std::function<bool(const Outcome&)>& copied) {
  if (copies.size() < worthAThread) {
    FileSystem::copyFiles(copies, copied);
    return;
  }
  doAll(
      copies.size(), [&](std::size_t i) { return copyFile(copies[i].from, copies[i].to); }, copied);
}

void DriveFileSystem::deleteFiles(const std::vector<std::string>& paths,
                                  const std::function<bool(const Outcome&)>& deleted) {
  const auto deleteOne = [this](const std::string& path) {
    if (meansFolder(path)) return Outcome::failure(err::pathNotFound, path);
    return paths_.at(path, [](const std::string& native) {
      return errorOf([&] { return ::unlink(native.c_str()); });
    });
  };
  if (paths.size() < worthAThread) {
    for (const std::string& path : paths)
      if (!deleted(deleteOne(path))) return;
    return;
  }
  doAll(
      paths.size(), [&](std::size_t i) { return deleteOne(paths[i]); }, deleted);
}

}  // namespace skv
