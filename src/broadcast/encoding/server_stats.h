#pragma once

#include <optional>
#include <string>

namespace tavora {

// The public status page of an Icecast server (`/status-json.xsl`), fetched with a
// short timeout; nothing when the server doesn't answer.
std::optional<std::string> FetchIcecastStatus(const std::string& host, int port,
                                              int timeout_ms = 1000);

// What the status says of one mount: its listeners and its title. -1 and empty
// when the mount isn't there.
int ListenersOf(const std::string& status, const std::string& mount);
std::string TitleOf(const std::string& status, const std::string& mount);

}  // namespace tavora
