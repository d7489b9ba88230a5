#include "platform/zip/pack_ahead.h"

#include <libdeflate.h>

#include <algorithm>
#include <chrono>

#include "platform/zip/archive_file.h"
#include "platform/zip/worker_threads.h"

namespace skv {

namespace {

constexpr std::uint64_t mostHeld = std::uint64_t{24} << 20U;

// While a file is packed it is there twice.
std::uint64_t workingSize(std::uint64_t size) { return 2 * size; }

}  // namespace

PackAhead::~PackAhead() {
  {
    const std::scoped_lock lock(mutex_);
    stop_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

std::size_t PackAhead::add(std::string path, std::uint64_t size) {
  tasks_.push_back({std::move(path), size, 0});
  return tasks_.size() - 1;
}

void PackAhead::makePortions() {
  constexpr std::size_t mostFiles = 128;
  constexpr std::uint64_t mostBytes = std::uint64_t{256} << 10U;
  for (std::size_t i = 0; i < tasks_.size(); ++i) {
    const std::uint64_t size = tasks_[i].size;
    if (portions_.empty() || portions_.back().count == mostFiles ||
        portions_.back().bytes + size > mostBytes)
      portions_.push_back({.first = i});
    ++portions_.back().count;
    portions_.back().bytes += size;
  }
}

void PackAhead::start() {
  chooseLevels(files_, level_, tasks_);
  makePortions();
  startWorkers(threads_, portions_.size(), [this] { work(); });
}

PackedFile PackAhead::take(std::size_t number, const std::function<void()>& meanwhile) {
  constexpr auto look = std::chrono::milliseconds(20);
  if (number >= takenFirst_ + taken_.size()) {
    Portion& portion = portions_[portionsTaken_];
    takenFirst_ = portion.first;
    if (threads_.empty()) {
      Deflater deflater;
      taken_ = pack(portion, deflater);
    } else {
      std::unique_lock lock(mutex_);
      wanted_ = portionsTaken_;
      changed_.notify_all();
      while (!changed_.wait_for(lock, look, [&] { return portion.ready; })) {
        lock.unlock();
        meanwhile();
        lock.lock();
      }
      taken_ = std::move(portion.packed);
      for (const PackedFile& file : taken_) held_ -= file.data.size();
      changed_.notify_all();
    }
    ++portionsTaken_;
  }
  PackedFile file = std::move(taken_[number - takenFirst_]);
  if (file.thrown) std::rethrow_exception(file.thrown);
  return file;
}

bool PackAhead::mayBegin() const {
  // The portion that is waited for is packed however much lies ready, as nothing of that can leave
  // before it.
  return held_ + workingSize(portions_[next_].bytes) <= mostHeld || next_ <= wanted_;
}

void PackAhead::work() {
  Deflater deflater;
  for (;;) {
    Portion* portion = nullptr;
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return stop_ || next_ >= portions_.size() || mayBegin(); });
      if (stop_ || next_ >= portions_.size()) return;
      portion = &portions_[next_++];
      held_ += workingSize(portion->bytes);
    }
    std::vector<PackedFile> packed = pack(*portion, deflater);
    const std::scoped_lock lock(mutex_);
    for (const PackedFile& file : packed) held_ += file.data.size();
    held_ -= workingSize(portion->bytes);
    portion->packed = std::move(packed);
    portion->ready = true;
    changed_.notify_all();
  }
}

std::vector<PackedFile> PackAhead::pack(const Portion& portion, Deflater& deflater) const {
  std::vector<PackedFile> packed(portion.count);
  for (std::size_t i = 0; i < portion.count; ++i) {
    const FileToPack& task = tasks_[portion.first + i];
    PackedFile& file = packed[i];
    try {
      file.outcome = guarded(task.path, [&] {
        file = pack(task, deflater);
        return file.outcome;
      });
    } catch (...) {
      file.thrown = std::current_exception();
    }
  }
  return packed;
}

PackedFile PackAhead::pack(const FileToPack& task, Deflater& deflater) const {
  PackedFile file;
  const auto content = files_.readFile(task.path);
  if (!content.ok()) {
    file.outcome = content.outcome();
    return file;
  }
  const std::string& bytes = content.value();
  file.size = bytes.size();
  file.crc = libdeflate_crc32(0, bytes.data(), bytes.size());
  if (task.level > 0) file.data = deflater.pack(bytes, task.level);
  file.deflated = !file.data.empty() && file.data.size() < bytes.size();
  if (!file.deflated) file.data.assign(bytes.begin(), bytes.end());
  return file;
}

}  // namespace skv
