#pragma once

namespace tavora {

class Clock;
class EventLoop;
class Dialogs;
class PathMap;
class Launcher;
class Random;

// The outside things the rules use, passed in by whichever front end runs
// the station: real ones for the desktop and headless station, stand-ins for
// the simulator and tests.
struct Services {
    Clock& clock;
    EventLoop& loop;
    Dialogs& dialogs;
    PathMap& paths;
    Launcher& launcher;
    Random& random;
};

}  // namespace tavora
