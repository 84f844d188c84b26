#pragma once

#include <string>

namespace tavora {

// MCI's codes for the failures the CD player meets; 0 is success.
namespace mci {
inline constexpr int kOk = 0;
inline constexpr int kUnrecognizedKeyword = 259;
inline constexpr int kUnrecognizedCommand = 261;
inline constexpr int kHardware = 262;
inline constexpr int kInvalidDeviceName = 263;
inline constexpr int kCannotLoadDriver = 266;
inline constexpr int kBadInteger = 270;
inline constexpr int kMissingParameter = 273;
inline constexpr int kDeviceNotReady = 276;
inline constexpr int kOutOfRange = 282;
inline constexpr int kDuplicateAlias = 289;  // the rules pass this one over
inline constexpr int kNotAudio = 512;        // the driver's own: a data disc or track

// `mciGetErrorString`: the sentence for a code.
std::string error_text(int code);

// CD times at 75 frames a second: "mm:ss:ff" for a length, and
// "tt:mm:ss:ff" for a position in a track, two digits each.
inline constexpr int kFramesPerSecond = 75;
std::string msf_text(long frames);
std::string tmsf_text(int track, long frames);
}  // namespace mci

// `mciSendString` for the one device the station opens: a command string in,
// the reply text and a code out. Rule thread only.
class Mci {
  public:
    virtual ~Mci() = default;
    virtual int mciSendString(const std::string& command, std::string& reply) = 0;
};

}  // namespace tavora
