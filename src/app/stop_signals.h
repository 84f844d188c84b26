#pragma once

namespace tavora {

// SIGINT and SIGTERM only raise a flag: the station is stopped on its rule
// thread, which looks at the flag.
void catch_stop_signals();
bool stop_requested();

}  // namespace tavora
