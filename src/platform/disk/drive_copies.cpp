// Many files copied by two threads: copying is mostly the system's work, which two processors do in
// little more than half of the time.
#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>

#include "platform/disk/drive_file_system.h"

namespace skv {

namespace {

constexpr std::size_t worthAThread = 4;  // files

// The copies of one call. Each thread takes the next that nobody has taken.
class Copies {
 public:
  Copies(DriveFileSystem& files, const std::vector<FileCopy>& copies)
      : files_(files), copies_(copies), outcomes_(copies.size()), done_(copies.size()) {}

  // False when all are taken.
  bool copyNext() {
    const std::size_t i = next_++;
    if (i >= copies_.size()) return false;
    outcomes_[i] = files_.copyFile(copies_[i].from, copies_[i].to);
    done_[i] = true;
    done_[i].notify_one();
    return true;
  }
  // Leaves those that are not taken, and answers how many have been.
  std::size_t stop() { return std::min(next_.exchange(copies_.size()), copies_.size()); }

  bool isDone(std::size_t i) const { return done_[i]; }
  const Outcome& outcome(std::size_t i) const {
    done_[i].wait(false);
    return outcomes_[i];
  }

 private:
  DriveFileSystem& files_;
  const std::vector<FileCopy>& copies_;
  std::vector<Outcome> outcomes_;
  std::vector<std::atomic<bool>> done_;
  std::atomic<std::size_t> next_ = 0;
};

// A second thread, when there can be one. Ends with the object, after the file it is at.
class Mate {
 public:
  explicit Mate(Copies& copies) : copies_(copies) {
    try {
      thread_ = std::thread([this] {
        while (copies_.copyNext()) {
        }
      });
    } catch (const std::system_error&) {
      return;  // the caller does it all
    }
  }
  ~Mate() {
    static_cast<void>(copies_.stop());
    if (thread_.joinable()) thread_.join();
  }
  Mate(const Mate&) = delete;
  Mate& operator=(const Mate&) = delete;

 private:
  Copies& copies_;
  std::thread thread_;
};

}  // namespace

void DriveFileSystem::copyFiles(const std::vector<FileCopy>& copies,
                                const std::function<bool(const Outcome&)>& copied) {
  if (copies.size() < worthAThread) {
    FileSystem::copyFiles(copies, copied);
    return;
  }
  Copies all(*this, copies);
  const Mate mate(all);
  std::size_t told = 0;
  std::size_t count = copies.size();
  const auto tellNext = [&] {
    if (!copied(all.outcome(told++))) count = std::min(count, all.stop());
  };
  while (all.copyNext())
    while (told < count && all.isDone(told)) tellNext();
  while (told < count) tellNext();
}

}  // namespace skv
