// Many files copied by two threads: copying is mostly the system's work, which two processors do in
// little more than half of the time.
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
  // Leaves those that are not taken.
  void stop() { next_ = copies_.size(); }

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
    copies_.stop();
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
                                const std::function<void(const Outcome&)>& copied) {
  if (copies.size() < worthAThread) {
    FileSystem::copyFiles(copies, copied);
    return;
  }
  Copies all(*this, copies);
  const Mate mate(all);
  std::size_t told = 0;
  while (all.copyNext())
    while (told < copies.size() && all.isDone(told)) copied(all.outcome(told++));
  while (told < copies.size()) copied(all.outcome(told++));
}

}  // namespace skv
