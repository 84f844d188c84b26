#include "platform/mci.h"

#include <cstdio>

namespace tavora::mci {

std::string error_text(int code) {
    switch (code) {
        case kOk:
            return "The specified command was carried out.";
        case kUnrecognizedKeyword:
            return "The driver cannot recognize the specified command parameter.";
        case kUnrecognizedCommand:
            return "The driver cannot recognize the specified command.";
        case kHardware:
            return "The CD drive could not read the disc. Make sure the disc is clean.";
        case kInvalidDeviceName:
            return "The specified device is not open or is not recognized by MCI.";
        case kCannotLoadDriver:
            return "There is no CD drive on this machine, or it cannot be opened.";
        case kBadInteger:
            return "The specified integer is invalid for this command.";
        case kMissingParameter:
            return "The specified command requires a parameter.";
        case kDeviceNotReady:
            return "The device is not ready. Make sure there is an audio CD in the drive.";
        case kOutOfRange:
            return "The specified parameter is out of range for the specified command.";
        case kDuplicateAlias:
            return "The specified alias is already being used in this application.";
        case kNotAudio:
            return "The disc in the drive is not an audio CD.";
        default:
            return "Unknown MCI error " + std::to_string(code) + ".";
    }
}

std::string msf_text(long frames) {
    if (frames < 0) frames = 0;
    char text[16];
    std::snprintf(text, sizeof text, "%02ld:%02ld:%02ld", frames / (60 * kFramesPerSecond) % 100,
                  frames / kFramesPerSecond % 60, frames % kFramesPerSecond);
    return text;
}

std::string tmsf_text(int track, long frames) {
    char text[8];
    std::snprintf(text, sizeof text, "%02d:", track % 100);
    return text + msf_text(frames);
}

}  // namespace tavora::mci
