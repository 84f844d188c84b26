#pragma once

#include "core/services.h"
#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/virtual_scheduler.h"
#include "runtime/random.h"
#include "test_folder.h"

namespace tavora {

// Stand-ins for every outside thing, on a fresh install folder.
struct FakeServices {
    explicit FakeServices(double now) : clock(now), loop(clock), paths(folder.path()) {}

    TestFolder folder;
    VirtualClock clock;
    VirtualScheduler loop;
    ScriptedDialogs dialogs;
    PathMap paths;
    RecordingLauncher launcher;
    Random random;
    Services services{clock, loop, dialogs, paths, launcher, random};

    std::filesystem::path home() const { return folder.path(); }
};

}  // namespace tavora
