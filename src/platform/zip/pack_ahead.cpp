#include "platform/zip/pack_ahead.h"

#include <libdeflate.h>

#include <algorithm>
#include <chrono>
#include <system_error>

#include "platform/zip/archive_file.h"

namespace skv {

namespace {

constexpr unsigned workers = 2;
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

void PackAhead::start() {
  chooseLevels(files_, level_, tasks_);
  const auto wanted = std::min<std::size_t>(workers, tasks_.size());
  threads_.reserve(wanted);
  for (std::size_t i = 0; i < wanted; ++i) {
    try {
      threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      break;  // what could not be started the others do, or take() itself
    }
  }
}

PackedFile PackAhead::take(std::size_t number, const std::function<void()>& meanwhile) {
  constexpr auto look = std::chrono::milliseconds(20);
  if (threads_.empty()) {
    Deflater deflater;
    return pack(tasks_[number], deflater);
  }
  std::unique_lock lock(mutex_);
  wanted_ = number;
  changed_.notify_all();
  while (!changed_.wait_for(lock, look, [&] { return ready_.contains(number); })) {
    lock.unlock();
    meanwhile();
    lock.lock();
  }
  PackedFile file = std::move(ready_.extract(number).mapped());
  held_ -= file.data.size();
  changed_.notify_all();
  if (file.thrown) std::rethrow_exception(file.thrown);
  return file;
}

bool PackAhead::mayBegin() const {
  // The file that is waited for is packed however much lies ready, as nothing of that can leave
  // before it.
  return held_ + workingSize(tasks_[next_].size) <= mostHeld || next_ <= wanted_;
}

void PackAhead::work() {
  Deflater deflater;
  for (;;) {
    std::size_t number = 0;
    std::uint64_t working = 0;
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return stop_ || next_ >= tasks_.size() || mayBegin(); });
      if (stop_ || next_ >= tasks_.size()) return;
      number = next_++;
      working = workingSize(tasks_[number].size);
      held_ += working;
    }
    PackedFile file;
    try {
      file.outcome = guarded(tasks_[number].path, [&] {
        file = pack(tasks_[number], deflater);
        return file.outcome;
      });
    } catch (...) {
      file.thrown = std::current_exception();
    }
    const std::scoped_lock lock(mutex_);
    held_ += file.data.size();
    held_ -= working;
    ready_.emplace(number, std::move(file));
    changed_.notify_all();
  }
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
  file.deflated = task.level > 0;
  if (file.deflated)
    file.data = deflater.pack(bytes, task.level);
  else
    file.data.assign(bytes.begin(), bytes.end());
  return file;
}

}  // namespace skv
