#pragma once

#include <filesystem>

namespace tavora {

// Tells whether another station runs on the same install folder. The lock is
// an advisory lock on a file, which the system drops when the process ends,
// so a run that crashed never leaves it stuck.
class InstanceLock {
  public:
    explicit InstanceLock(const std::filesystem::path& install_folder);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // False when another process holds the lock. A second instance that the
    // operator lets go on runs without it, beside the first.
    bool held() const { return held_; }

  private:
    int fd_ = -1;
    bool held_ = false;
};

}  // namespace tavora
