#include "station/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tavora {

InstanceLock::InstanceLock(const std::filesystem::path& install_folder) {
    const auto file = install_folder / ".tavora.lock";
    fd_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    // A folder we can't write to can't be shared either: treat it as ours.
    held_ = fd_ < 0 || ::flock(fd_, LOCK_EX | LOCK_NB) == 0;
}

InstanceLock::~InstanceLock() {
    if (fd_ >= 0) ::close(fd_);
}

}  // namespace tavora
